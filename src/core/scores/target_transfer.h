#pragma once
// The two progress windows of the target setup window: frmRetrieving reads the fourteen parameters
// of one target into the boxes, after looking the target up when the operator named it by number;
// frmLM_Send writes the twelve writable ones from the boxes. Both start half a second after they
// open, run on the application's clock, keep painting and show their step.

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "authoring/window.h"
#include "links/reply_wait.h"
#include "links/target_parameters.h"
#include "links/progress_machine.h"

namespace halvane {

class frmLM_Setup;

// What the two share: the setup window and its radio, the clock, and how a transfer stops.
class TargetTransfer : public Window, public ProgressMachine {
  public:
    static constexpr std::chrono::milliseconds kFirstTick{500};

    std::optional<TimePoint> nextDeadline() const override;
    void onTime(TimePoint now) override;
    // The window is done: finished, or stopped with the operator told why.
    bool closed() const override { return m_closed; }
    bool stopped() const { return m_stopped; }
    // The window goes: its radio stops listening.
    void Unload();

  protected:
    explicit TargetTransfer(frmLM_Setup& setup);
    // Starts the clock: the first step is due half a second from `now`.
    void startClock(TimePoint now);
    // One step, due now; returns when the next is due, or nothing when the transfer is over.
    virtual std::optional<TimePoint> step(TimePoint now) = 0;
    // Ends the transfer and tells the operator `text` (critical: a device or link failed).
    void stop(const std::string& text, bool critical);
    void finish() { m_closed = true; }
    // Sends a frame on the serial line; false, with the transfer stopped and the operator told, when
    // it cannot go out.
    bool sendSerial(std::string_view frame);

    frmLM_Setup& m_setup;
    ReplyWait m_wait;
    TimePoint m_askedAt{};  // when the question the wait is for went out
    std::optional<TimePoint> m_due;

  private:
    bool m_busy = false;  // inside a step or a message: the clock must not come back in
    bool m_closed = false;
    bool m_stopped = false;
};

class frmRetrieving : public TargetTransfer {
  public:
    static constexpr const char* Caption = "Downloading";
    static constexpr const char* Label1 = "Retrieving data from LM";
    static constexpr const char* Label2 = "Please Wait";
    static constexpr std::chrono::milliseconds kReplyBudget{1000};

    // `lookup`: the digits of a target number to look up first, when the operator gave one.
    frmRetrieving(frmLM_Setup& setup, std::optional<std::string> lookup);
    void Load(TimePoint now);

    // The lookup found no target: the read did not run.
    bool notFound() const { return m_notFound; }
    // How many of the reads had a whole reply: none means a silent or a wrong target.
    int replies() const { return m_replies; }
    std::pair<int, int> progress() const override;
    std::string progressText() const override;

  private:
    std::optional<TimePoint> step(TimePoint now) override;
    std::optional<TimePoint> sendLookup(TimePoint now);
    std::optional<TimePoint> endLookup(TimePoint now);
    std::optional<TimePoint> sendRead(TimePoint now);
    void applyReply();
    // Waits for the reply to what was just sent; the line is dropped first.
    TimePoint awaitReply(TimePoint now);

    std::optional<std::string> m_lookup;
    bool m_lookingUp = false;
    bool m_notFound = false;
    int m_step = 0;  // the read under way, 1..14; 0 before the first
    int m_replies = 0;
    bool m_waiting = false;
    target::SerialTexts m_serialReply;
    std::string m_valueText;  // the last reply's value, kept over a silence
};

class frmLM_Send : public TargetTransfer {
  public:
    static constexpr const char* Caption = "Send to LM";
    static constexpr const char* Label1 = "Sending data to LM";
    static constexpr const char* Label2 = "Please Wait";
    static constexpr std::chrono::milliseconds kPause{100};

    explicit frmLM_Send(frmLM_Setup& setup) : TargetTransfer(setup) {}
    void Load(TimePoint now) { startClock(now); }

    std::pair<int, int> progress() const override;
    std::string progressText() const override;

  private:
    std::optional<TimePoint> step(TimePoint now) override;
    // The value byte of a box on one link; false, with the transfer stopped, when it has none.
    bool value(const target::Parameter& p, Carrier link, target::Value& out);

    int m_step = 0;  // writes done
};

}  // namespace halvane
