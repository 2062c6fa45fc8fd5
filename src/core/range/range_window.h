#pragma once
// What the run window and the live window share: the range view, the window's own port and the Wi-Fi
// link, the position store, and the hit score buttons, which read every target's count over the radio
// and show it on its tile.
//
// A poll of hit scores keeps the window alive: it runs on the application's clock, reads its replies
// from the port it wrote to (or the Wi-Fi link), shows which target it asks, and stops on Esc or Exit
// with the scores read so far kept. A click on either hit score button during a poll is ignored.

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "authoring/control.h"
#include "authoring/shared_state.h"
#include "authoring/window.h"
#include "authoring/window_position.h"
#include "links/hit_score_poll.h"
#include "links/timed_machine.h"
#include "links/wifi_link.h"
#include "range/range_port.h"
#include "range/range_view.h"

namespace halvane {

class Operator;

class RangeWindow : public Window, public TimedMachine {
  public:
    using WifiSend = RangePort::WifiSend;

    Control BtnGetHitScores;
    Control BtnClearHitScores;
    Control picScrollBox{"", true, true, 0, 2000, 0, 0};
    bool PortError = false;
    WindowPlacement placement;

    RangeView& view() { return m_view; }
    const RangeView& view() const { return m_view; }

    virtual void Load() = 0;
    // Places the controls for a window of this size, in twips.
    virtual void Resize(float widthTwips, float heightTwips) = 0;
    // Asks each target in turn for its hit count and shows it on its tile.
    void BtnGetHitScores_Click(TimePoint now);
    // Tells every target to zero its count, and empties every tile's score.
    void BtnClearHitScores_Click(TimePoint now);
    void BtnExit_Click();
    // Esc stops a poll; with no poll under way it leaves the window as Exit does.
    void Escape();
    void QueryUnload();
    virtual void Unload();

    bool polling() const { return m_poll.running(); }
    // "Reading hit scores: target 3 of 20 (Esc stops)" while a poll runs, else "".
    std::string pollProgress() const;

    // A chunk from the Wi-Fi link, as it came; the caller hands over what the link receives while the
    // window is up.
    void onSocketData(std::string_view chunk) { m_poll.onSocket(chunk); }
    // The Wi-Fi link the window's frames go to, watched by a poll: a query still waiting for the
    // connection gets its time again, and a link that could not connect ends the poll (the link has
    // told the operator), rather than a message for every target.
    void setWifiLink(const WifiLink* link) { m_wifiLink = link; }
    // Told when the window changed of itself (the clock, a lost line, a poll), for its view.
    void setChangeObserver(std::function<void()> observer) { m_changeObserver = std::move(observer); }
    bool closed() const { return m_closed; }

    std::optional<TimePoint> nextDeadline() const override;
    void onTime(TimePoint now) override;

  protected:
    RangeWindow(SharedState& state, SerialPort& port, const PortNames& names, WifiSend wifi, Operator& op,
                PositionStore& positions, RangeWindowKind kind, const char* positionTag, Control getHits,
                Control clearHits);

    // Starts listening to the window's port; the load of each window calls it first.
    void listenToPort();
    // The range's box follows the window, unless the port failed.
    void fitScrollBox(float widthTwips, float heightTwips);
    // The window's own clock, beside the poll's.
    virtual std::optional<TimePoint> ownDeadline() const { return std::nullopt; }
    virtual void ownTime(TimePoint) {}
    // The port lost its line (it vanished, or would not take the frames): told once by each window in
    // its own words.
    virtual void lineLost() = 0;
    void flush();
    void changed() const;

    SharedState& m_state;
    RangePort m_port;
    Operator& m_operator;
    PositionStore& m_positions;
    RangeView m_view;
    bool m_closed = false;

  private:
    void handleLineLost();
    // False, with the operator told why, when the scores cannot be read or shown here.
    bool hitScoresPossible();
    HitScorePoll::Road road() const;
    bool wifiRoad() const;
    void query(int target, TimePoint now);
    void showScore(int target);

    const char* m_positionTag;
    HitScorePoll m_poll;
    const WifiLink* m_wifiLink = nullptr;
    std::function<void()> m_changeObserver;
};

}  // namespace halvane
