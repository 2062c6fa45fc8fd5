#include "range/range_running.h"

#include <utility>

#include "authoring/about_box.h"
#include "authoring/operator.h"
#include "text/conversions.h"
#include "text/fault.h"

namespace halvane {

frmRangeRunning::frmRangeRunning(SharedState& state, const ProgramGrid& grid, SerialPort& port,
                                 const PortNames& names, WifiSend wifi, Operator& op,
                                 PositionStore& positions)
    : RangeWindow(state, port, names, std::move(wifi), op, positions, RangeWindowKind::Run, kPositionTag,
                  {"Get Hit Scores", true, true, 960, 1440, 1575, 375},
                  {"Clear Hit Scores", true, true, 4560, 1440, 1575, 375}),
      m_grid(grid) {}

void frmRangeRunning::Load() {
    listenToPort();
    BtnConnect.Enabled = m_state.RadioUSB || m_state.TypeVMR4000;
    placement.Tag = kPositionTag;
    RestoreWindowPos(placement, m_positions);
    CurRow = 0;
    // With the bottom-left layout the hit score buttons keep their design state, whatever the settings.
    if (!m_state.StartBottom) showHitScoreButtons(m_state, BtnGetHitScores, BtnClearHitScores);
    m_view.build();
}

void frmRangeRunning::Resize(float widthTwips, float heightTwips) {
    const float w = widthTwips;
    if (w > Label1.Width) {
        Label1.Left = w / 2 - Label1.Width / 2;
        BtnStart.Left = w / 2 - BtnStart.Width - 600;
        BtnStop.Left = w / 2 - BtnStop.Width / 2;
        BtnExit.Left = w / 2 + 600;
        Label2.Left = w / 2 + 100;
        txtTimer.Left = w / 2 - txtTimer.Width - 100;
        lblPaused.Left = w / 2 - lblPaused.Width / 2;
        BtnGetHitScores.Left = w / 4 - BtnGetHitScores.Width / 2;
        BtnClearHitScores.Left = 3 * w / 4 - BtnClearHitScores.Width / 2;
    }
    // The range's box follows the window, except after a failed Connect, until a later one succeeds.
    // (It follows from the first opening on, not only once a position has been stored.)
    fitScrollBox(widthTwips, heightTwips);
}

void frmRangeRunning::BtnConnect_Click() {
    if (BtnConnect.Caption != "Connect") {
        m_port.close();
        BtnConnect.Caption = "Connect";
        return;
    }
    const RangePort::Opening opening = m_port.open();
    PortError = opening == RangePort::Opening::Failed;
    if (PortError) return;
    if (opening == RangePort::Opening::Opened && m_state.TypeVMR4000) {
        for (const auto& frame : lineControllerOpening(false)) m_port.queueSerial(frame);
    }
    BtnConnect.Caption = "Disconnect";
    flush();
}

void frmRangeRunning::lineLost() {
    if (BtnConnect.Caption == "Connect") return;
    BtnConnect.Caption = "Connect";
    m_port.close();
    const bool wasBusy = std::exchange(m_busy, true);
    m_operator.critical(
        m_port.lostMessage("The run goes on without it; Connect again when the line is back."), kAppTitle);
    m_busy = wasBusy;
    changed();
}

void frmRangeRunning::BtnStart_Click(TimePoint now) {
    // The start second is checked before anything changes: a row above the heading names no second.
    const double typed = text::Val(txtTimer.Caption);
    const auto start = text::toInt16(typed);
    if (typed < -1) {
        m_operator.tell("The start second \"" + txtTimer.Caption +
                            "\" is not a second of this Program: type 0 to " +
                            std::to_string(m_state.NumSeconds) + ".",
                        kAppTitle);
        return;
    }
    txtTimerLocked = true;
    NextTick = now;
    Timer1Enabled = true;
    CurRow = start.value_or(0);
    if (CurRow >= m_state.NumSeconds) CurRow = 0;
    BtnStop.Enabled = true;
    BtnStop.Caption = "Pause";
    lblPaused.Visible = false;
    onTime(now);
}

void frmRangeRunning::BtnStop_Click() {
    if (BtnStop.Caption == "Pause") {
        BtnStop.Caption = "Stop";
        lblPaused.Visible = true;
    } else {
        CurRow = 0;
        BtnStop.Caption = "Pause";
        BtnStop.Enabled = false;
        txtTimer.Caption = text::Str(static_cast<std::int64_t>(CurRow));
    }
    txtTimerLocked = false;
    Timer1Enabled = false;
}

void frmRangeRunning::Unload() {
    Timer1Enabled = false;
    RangeWindow::Unload();
}

std::optional<TimePoint> frmRangeRunning::ownDeadline() const {
    return Timer1Enabled && !m_busy ? NextTick : std::nullopt;
}

void frmRangeRunning::ownTime(TimePoint now) {
    // A message box inside a step runs the event loop: the clock must not come back in meanwhile.
    if (m_busy) return;
    m_busy = true;
    const long before = m_steps;
    try {
        while (Timer1Enabled && NextTick && now >= *NextTick) {
            RunStep(now);
            *NextTick += kStep;
            if (m_stepObserver) m_stepObserver();
        }
    } catch (const Fault& fault) {
        // A step that cannot be played stops the run where it stands; the tiles and the grid stay.
        m_port.discard();
        Timer1Enabled = false;
        BtnStop.Enabled = false;
        BtnStop.Caption = "Pause";
        m_operator.critical("The run stopped at second " + text::CStr(CurRow - 1) + ": " + fault.what(),
                            kAppTitle);
    }
    m_busy = false;
    if (m_steps != before) changed();
}

frmRangeRunning::RunState frmRangeRunning::runState() const {
    if (Timer1Enabled) return RunState::Running;
    if (BtnStop.Caption == "Stop")
        return txtTimerLocked ? RunState::PausedByProgram : RunState::PausedByOperator;
    if (lblPaused.Visible) return RunState::Stopped;
    return txtTimerLocked ? RunState::Finished : RunState::Ready;
}

void frmRangeRunning::RunStep(TimePoint now) {
    ++m_steps;
    ++CurRow;
    if (CurRow > m_state.NumSeconds + 1) {
        CurRow = 0;
        BtnStop.Enabled = false;
        Timer1Enabled = false;
        return;
    }
    txtTimer.Caption = text::Str(static_cast<std::int64_t>(CurRow - 1));
    if (m_state.UseGroups)
        groupSteps();
    else
        targetSteps(now);
}

void frmRangeRunning::targetSteps(TimePoint now) {
    for (int i = 1; i <= m_state.NumTargets; ++i) {
        const std::string& cell = m_grid.TextMatrix(CurRow, i);
        if (cell == "Pause") {
            flush();
            pauseSteps();
            return;
        }
        const auto action = wire::actionOfWord(cell);
        if (!action || m_view.face(i) == *action) continue;
        send(*action, i, now);
        m_view.setFace(i, *action);
    }
    flush();
}

// Group steps only paint, and paint the tile the layout left in CurTile, once for every target of the
// group: no frame goes out in group mode.
void frmRangeRunning::groupSteps() {
    for (int g = 1; g <= m_state.NumGroups; ++g) {
        const std::string& cell = m_grid.TextMatrix(CurRow, g);
        if (cell == "Pause") {
            pauseSteps();
            return;
        }
        const auto action = wire::actionOfWord(cell);
        if (!action) continue;
        for (int j = 1; j <= m_state.NumTargets; ++j)
            if (m_state.GroupNum[static_cast<std::size_t>(j)] == g) m_view.setFace(m_view.CurTile, *action);
    }
}

void frmRangeRunning::pauseSteps() {
    BtnStop.Caption = "Stop";
    txtTimer.Caption = text::CStr(text::Val(txtTimer.Caption) + 1);
    Timer1Enabled = false;
    lblPaused.Visible = true;
}

void frmRangeRunning::send(wire::Action action, int target, TimePoint now) {
    m_port.queue(targetActionFrames(action, target, Carriers::from(m_state), m_port.isOpen()), now);
}

}  // namespace halvane
