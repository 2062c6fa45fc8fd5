#include "range/range_window.h"

#include <utility>

#include "authoring/about_box.h"
#include "authoring/operator.h"

namespace halvane {

RangeWindow::RangeWindow(SharedState& state, SerialPort& port, const PortNames& names, WifiSend wifi,
                         Operator& op, PositionStore& positions, RangeWindowKind kind,
                         const char* positionTag, Control getHits, Control clearHits)
    : BtnGetHitScores(std::move(getHits)),
      BtnClearHitScores(std::move(clearHits)),
      m_state(state),
      m_port(state, port, names, std::move(wifi), op),
      m_operator(op),
      m_positions(positions),
      m_view(state, kind),
      m_positionTag(positionTag),
      m_poll(state.ReplyHex, {[this](int target, TimePoint now) { query(target, now); },
                              [this] { return wifiRoad() && m_wifiLink->framesWaiting(); },
                              [this](int target) { showScore(target); }, [this] { changed(); }}) {}

void RangeWindow::listenToPort() {
    m_port.listen([this](std::string_view bytes) { m_poll.onSerial(bytes); }, [this] { handleLineLost(); });
}

void RangeWindow::fitScrollBox(float widthTwips, float heightTwips) {
    if (!PortError && heightTwips > 2000 && widthTwips > 150) {
        picScrollBox.Height = heightTwips - 2500;
        picScrollBox.Width = widthTwips - 150;
    }
}

HitScorePoll::Road RangeWindow::road() const {
    if (m_state.RadioUSB) return HitScorePoll::Road::SerialRadio;
    if (m_state.RadioWiFi) return HitScorePoll::Road::Socket;
    return HitScorePoll::Road::NoCarrier;
}

bool RangeWindow::wifiRoad() const {
    return m_wifiLink && road() == HitScorePoll::Road::Socket;
}

bool RangeWindow::hitScoresPossible() {
    const auto& tiles = m_view.tiles();
    // The live window hides the scores of a range in groups; otherwise every tile needs its score box.
    const bool shown = !tiles.empty() && (tiles.front().hitsText ||
                                          (m_view.kind() == RangeWindowKind::Live && m_state.UseGroups));
    if (!shown) {
        m_operator.tell(
            "This range view has no place for hit scores: they are read for LM Series targets without "
            "groups. Nothing was sent.",
            kAppTitle);
        return false;
    }
    if (road() == HitScorePoll::Road::SerialRadio && !m_port.isOpen()) {
        m_operator.critical("Comm Port " + std::to_string(m_state.ComPort) +
                                " is not open, so the targets cannot be asked. Connect first.",
                            kAppTitle);
        return false;
    }
    return true;
}

void RangeWindow::BtnGetHitScores_Click(TimePoint now) {
    if (polling() || !hitScoresPossible()) return;
    m_port.dropInput();
    m_port.dropOutput();
    m_poll.start(road(), static_cast<int>(m_view.tiles().size()), now);
    changed();
}

void RangeWindow::query(int target, TimePoint now) {
    // Whatever came after the last target's time is dropped, so it is never read as this one's reply.
    m_port.dropInput();
    if (const auto frame = hitScoreQueryFrame(target, Carriers::from(m_state))) m_port.queue({*frame}, now);
    flush();
}

void RangeWindow::showScore(int target) {
    m_view.CurTile = static_cast<std::int16_t>(target);
    m_view.DrawHitsZero();
    if (wifiRoad() && m_wifiLink->state() != TcpSocket::Connected && !m_wifiLink->framesWaiting())
        m_poll.abandon();
    changed();
}

void RangeWindow::BtnClearHitScores_Click(TimePoint now) {
    if (polling() || !hitScoresPossible()) return;
    m_port.dropInput();
    m_port.dropOutput();
    if (const auto frame = clearHitScoresFrame(Carriers::from(m_state))) m_port.queue({*frame}, now);
    flush();
    // The scores go whether or not the frame got anywhere.
    for (int i = 1; i <= static_cast<int>(m_view.tiles().size()); ++i) {
        m_state.ReplyHex[static_cast<std::size_t>(i)].clear();
        m_view.CurTile = static_cast<std::int16_t>(i);
        m_view.DrawHitsRaw();
    }
    changed();
}

std::string RangeWindow::pollProgress() const {
    if (!polling()) return {};
    return "Reading hit scores: target " + std::to_string(m_poll.target()) + " of " +
           std::to_string(m_poll.count()) + " (Esc stops)";
}

void RangeWindow::BtnExit_Click() {
    m_poll.abandon();
    m_closed = true;
}

void RangeWindow::Escape() {
    if (polling()) {
        m_poll.abandon();
        changed();
        return;
    }
    BtnExit_Click();
}

void RangeWindow::QueryUnload() {
    placement.Tag = m_positionTag;
    SaveWindowPos(placement, m_positions);
}

void RangeWindow::Unload() {
    // The targets stay as they are: nothing is sent on the way out.
    m_poll.abandon();
    m_port.stopListening();
    m_port.close();
}

std::optional<TimePoint> RangeWindow::nextDeadline() const {
    const auto own = ownDeadline();
    const auto poll = m_poll.nextDeadline();
    if (own && poll) return std::min(*own, *poll);
    return own ? own : poll;
}

void RangeWindow::onTime(TimePoint now) {
    m_poll.onTime(now);
    ownTime(now);
}

void RangeWindow::flush() {
    if (!m_port.flush()) handleLineLost();
}

void RangeWindow::handleLineLost() {
    m_poll.abandon();
    lineLost();
}

void RangeWindow::changed() const {
    if (m_changeObserver) m_changeObserver();
}

}  // namespace halvane
