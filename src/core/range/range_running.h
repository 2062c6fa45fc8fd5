#pragma once
// frmRangeRunning: plays the Program of the main window's grid in real time, one grid row a second,
// turning each row's cells into target commands and showing each target's face on its tile.
//
// The window never touches a clock: it is fed the time (BtnStart_Click, onTime) and says when it
// next wants it (nextDeadline). The schedule is absolute on the monotonic clock: the first step at
// once on Start, then one a second after it; after a stall the steps that fell due run one after
// another, so the Program never drifts.

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "authoring/control.h"
#include "authoring/program_grid.h"
#include "authoring/shared_state.h"
#include "links/command_frames.h"
#include "links/port_names.h"
#include "links/serial_port.h"
#include "range/range_window.h"

namespace halvane {

class Operator;

class frmRangeRunning : public RangeWindow {
  public:
    static constexpr std::chrono::seconds kStep{1};
    static constexpr const char* kPositionTag = "Range Running";

    // `port` is the window's own serial port (MSComm1), closed until Connect.
    frmRangeRunning(SharedState& state, const ProgramGrid& grid, SerialPort& port, const PortNames& names,
                    WifiSend wifi, Operator& op, PositionStore& positions);

    static constexpr const char* Caption = "Range";
    Control Label1{"Click on Start to Run Program", true, true, 1200, 240, 3255, 375};
    Control BtnConnect{"Connect", true, true, 120, 720, 975, 495};
    Control BtnStart{"Start", true, true, 1920, 720, 975, 495};
    Control BtnStop{"Pause", false, true, 3120, 720, 975, 495};
    Control BtnExit{"Exit", true, true, 4320, 720, 975, 495};
    Control lblPaused{"Paused", true, false, 3120, 1200, 855, 375};
    Control txtTimer{"", true, true, 2760, 1560, 495, 285};
    Control Label2{"Seconds", true, true, 3720, 1560, 1095, 375};
    // txtTimer reads as a label (no border, the window's colour, locked) while a run holds it.
    bool txtTimerLocked = false;
    bool Timer1Enabled = false;

    std::int16_t CurRow = 0;
    std::optional<TimePoint> NextTick;

    // Events of the window.
    void Load();
    void Resize(float widthTwips, float heightTwips);
    void BtnConnect_Click();
    void BtnStart_Click(TimePoint now);
    void BtnStop_Click();
    void Unload() override;

    // Where the run stands, as the state table names it, read from what the window shows.
    enum class RunState { Ready, Running, PausedByOperator, PausedByProgram, Stopped, Finished };
    RunState runState() const;
    // Told after every step, the last (which ends the run) and a Pause included.
    void setStepObserver(std::function<void()> observer) { m_stepObserver = std::move(observer); }
    // Steps run since the window opened, for progress and tests.
    long stepsRun() const { return m_steps; }

  private:
    // The clock: the steps that have fallen due by `now` run, in order.
    std::optional<TimePoint> ownDeadline() const override;
    void ownTime(TimePoint now) override;
    // The port lost its line while connected: told once, and the window stands disconnected; the run
    // goes on.
    void lineLost() override;
    void RunStep(TimePoint now);
    void targetSteps(TimePoint now);
    void groupSteps();
    void pauseSteps();
    void send(wire::Action action, int target, TimePoint now);

    const ProgramGrid& m_grid;
    std::function<void()> m_stepObserver;
    bool m_busy = false;  // inside a step or a message of the window's own
    long m_steps = 0;
};

}  // namespace halvane
