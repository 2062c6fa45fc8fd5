// The run window on a virtual clock: its states, its schedule, and the frames each second sends.

#include <gtest/gtest.h>

#include <sstream>

#include "range/range_running.h"
#include "range_window_fixture.h"

namespace halvane::testing {
namespace {

using namespace std::chrono_literals;

const TimePoint t0 = TimePoint{} + 1000h;

class RangeRunning : public RangeWindowFixture {
  protected:
    // A Program of `rows` seconds, one string of words per second ("Friend Down Foe"), "-" for empty.
    void program(int targets, std::vector<std::string> rows) {
        state.NumTargets = static_cast<std::int16_t>(targets);
        state.NumCols = 10;
        state.NumSeconds = static_cast<std::int16_t>(rows.size() - 1);
        state.StartBottom = false;
        grid.setCols(targets + 1);
        grid.setRows(static_cast<int>(rows.size()) + 1);
        for (std::size_t r = 0; r < rows.size(); ++r) {
            std::istringstream words(rows[r]);
            std::string word;
            for (int c = 1; words >> word; ++c)
                grid.setTextMatrix(static_cast<int>(r) + 1, c, word == "-" ? "" : word);
        }
        window = std::make_unique<frmRangeRunning>(state, grid, port, names, wifiSend(), op, positions);
        window->Load();
    }
    void connect() {
        names.setDevice(state.ComPort, "/dev/run");
        port.present.insert("/dev/run");
        window->BtnConnect_Click();
    }
    // What the window shows, as the rows of the state table have it.
    std::string look() const {
        const auto& w = *window;
        return std::string(w.Timer1Enabled ? "on" : "off") + " " + w.BtnStop.Caption +
               (w.BtnStop.Enabled ? "" : "(disabled)") + (w.lblPaused.Visible ? " Paused" : "") +
               (w.txtTimerLocked ? " label[" : " edit[") + w.txtTimer.Caption + "]";
    }
    std::string faces() const {
        std::string out;
        for (const auto& tile : window->view().tiles())
            out += (out.empty() ? "" : " ") + std::string(wire::wordOfAction(tile.face));
        return out;
    }

    ProgramGrid grid;
    std::unique_ptr<frmRangeRunning> window;
};

TEST_F(RangeRunning, EveryStateOfTheWindowLooksAndMovesAsTheOperatorExpects) {
    program(1, {"Friend", "Foe", "Pause", "Edge", "Down"});
    EXPECT_EQ(look(), "off Pause(disabled) edit[]");  // ready
    window->BtnStart_Click(t0);
    EXPECT_EQ(look(), "on Pause label[ 0]");  // running, the first step at once
    window->onTime(t0 + 1s);
    window->BtnStop_Click();
    EXPECT_EQ(look(), "off Stop Paused edit[ 1]");  // paused by the operator
    window->BtnStart_Click(t0 + 10s);               // the row on show runs again: nothing is resent
    EXPECT_EQ(look(), "on Pause label[ 1]");
    window->onTime(t0 + 11s);
    EXPECT_EQ(look(), "off Stop Paused label[3]");  // paused by the Program, the display one on
    window->BtnStop_Click();
    EXPECT_EQ(look(), "off Pause(disabled) Paused edit[ 0]");  // stopped
    window->txtTimer.Caption = "3";
    window->BtnStart_Click(t0 + 20s);
    window->onTime(t0 + 21s);
    EXPECT_EQ(look(), "on Pause label[ 4]");
    window->onTime(t0 + 22s);
    EXPECT_EQ(look(), "off Pause(disabled) label[ 4]");  // finished: nothing more is shown or sent
    EXPECT_EQ(window->nextDeadline(), std::nullopt);
    window->BtnStart_Click(t0 + 30s);  // from the end, the Program starts over
    EXPECT_EQ(look(), "on Pause label[ 0]");
}

TEST_F(RangeRunning, StepsKeepAnAbsoluteScheduleAndCatchUpAfterAStall) {
    program(1, std::vector<std::string>(31, "Friend"));
    window->BtnStart_Click(t0 + 300ms);
    EXPECT_EQ(window->nextDeadline(), t0 + 1300ms);
    window->onTime(t0 + 1299ms);
    EXPECT_EQ(window->txtTimer.Caption, " 0");
    window->onTime(t0 + 4400ms);  // a stall: four steps fell due and run one after another
    EXPECT_EQ(window->txtTimer.Caption, " 4");
    EXPECT_EQ(window->nextDeadline(), t0 + 5300ms);
    window->onTime(t0 + 40s);  // 31 rows (seconds 0 to 30); the 32nd step ends the run
    EXPECT_EQ(window->txtTimer.Caption, " 30");
    EXPECT_EQ(window->stepsRun(), 32);
    EXPECT_FALSE(window->Timer1Enabled);
}

TEST_F(RangeRunning, FramesGoOutOnlyWhenATilesFaceChangesInTargetOrderOnEveryChosenCarrier) {
    state.RadioUSB = true;
    state.RadioWiFi = true;
    program(3, {"Friend Down Foe", "Friend Edge Foe", "Foe - Pause", "Down Down Down", "-"});
    window->BtnStart_Click(t0);  // not connected: the tiles turn, the Wi-Fi frames go all the same
    EXPECT_EQ(port.written, "");
    EXPECT_EQ(wifi, (std::vector<std::string>{"00 F3 01", "00 F2 03"}));
    EXPECT_EQ(faces(), "Friend Down Foe");
    connect();
    wifi.clear();
    window->onTime(t0 + 1s);
    window->onTime(t0 + 2s);  // target 1 turns, then the Pause of target 3 holds the run
    EXPECT_EQ(hexBytes(port.written), "F1 02 F2 01");
    EXPECT_EQ(wifi, (std::vector<std::string>{"00 F1 02", "00 F2 01"}));
    EXPECT_EQ(window->txtTimer.Caption, "3");
    window->BtnStart_Click(t0 + 9s);
    EXPECT_EQ(hexBytes(port.written), "F1 02 F2 01 F0 01 F0 02 F0 03");
    EXPECT_EQ(faces(), "Down Down Down");
}

TEST_F(RangeRunning, ConnectOpensTheWindowsOwnPortAsTheSettingsSayAndTellsWhenItCannot) {
    state.TypeVMR4000 = true;
    state.RadioUSB = true;
    state.ComPort = 3;
    program(33, {std::string(33 * 7, ' ')});
    EXPECT_TRUE(window->BtnConnect.Enabled);
    window->BtnConnect_Click();  // nothing at port 3
    EXPECT_EQ(op.log, (std::vector<std::string>{"tell: Halvane: Comm Port 3 in use or invalid"}));
    EXPECT_TRUE(window->PortError);
    EXPECT_EQ(window->BtnConnect.Caption, "Connect");
    connect();
    EXPECT_FALSE(window->PortError);
    EXPECT_FALSE(state.RadioUSB);  // a line controller never also gets binary frames
    EXPECT_EQ(port.calls,
              (std::vector<std::string>{"open /dev/ttyS2", "open /dev/run", "RTS off", "DTR off"}));
    EXPECT_EQ(port.written,
              "SPA00000000\rCPA00000000\rSPB00000000\rCPB00000000\rSPC00000000\rCPC00000000\rSPD00000000\r"
              "CPD0\r");
    EXPECT_EQ(window->BtnConnect.Caption, "Disconnect");
    port.written.clear();
    window->BtnConnect_Click();
    EXPECT_FALSE(port.isOpen());
    EXPECT_EQ(port.written, "");
    EXPECT_EQ(window->BtnConnect.Caption, "Connect");

    state.TypeVMR4000 = state.RadioUSB = false;
    state.RadioWiFi = true;
    program(1, {"Friend"});
    EXPECT_FALSE(window->BtnConnect.Enabled);
}

TEST_F(RangeRunning, GroupStepsOnlyPaintTheTileTheLayoutLeftCurrent) {
    state.UseGroups = true;
    state.NumGroups = 2;
    state.GroupNum[1] = 1;
    state.GroupNum[2] = 2;
    state.GroupNum[3] = 2;
    state.RadioUSB = state.RadioWiFi = true;
    state.IconSize = "Medium";
    program(3, {"Edge Foe"});
    connect();
    window->BtnStart_Click(t0);
    EXPECT_EQ(faces(), "Down Down Foe");  // CurTile is 3 after the top-left layout; the last group wins
    EXPECT_EQ(port.written, "");
    EXPECT_TRUE(wifi.empty());
}

TEST_F(RangeRunning, HitScoreButtonsFollowTheSettingsOnlyInTheTopLeftLayout) {
    state.TypeLMSeries = false;
    program(2, {"Friend"});
    EXPECT_FALSE(window->BtnGetHitScores.Enabled);
    state.UseGroups = true;
    state.TypeLMSeries = true;
    program(2, {"Friend"});
    EXPECT_TRUE(window->BtnClearHitScores.Enabled);
    EXPECT_FALSE(window->BtnClearHitScores.Visible);
    state.StartBottom = true;
    state.TypeLMSeries = false;
    window = std::make_unique<frmRangeRunning>(state, grid, port, names, nullptr, op, positions);
    window->Load();
    EXPECT_TRUE(window->BtnGetHitScores.Enabled && window->BtnGetHitScores.Visible);
}

TEST_F(RangeRunning, AStepThatCannotBePlayedStopsTheRunAndTellsWithoutLosingAnything) {
    program(2, {"Friend Foe", "Foe Friend"});
    state.NumTargets = 3;  // the grid has no column for target 3
    window->BtnStart_Click(t0);
    ASSERT_EQ(op.log.size(), 1u);
    EXPECT_EQ(op.log[0], "tell: Halvane: The run stopped at second 0: Cell (1, 3) does not exist.");
    EXPECT_EQ(look(), "off Pause(disabled) label[ 0]");
    window->txtTimer.Caption = "-2";
    window->BtnStart_Click(t0 + 5s);
    EXPECT_EQ(op.log.back(),
              "tell: Halvane: The start second \"-2\" is not a second of this Program: type 0 to 1.");
    EXPECT_EQ(grid.TextMatrix(2, 1), "Foe");
}

TEST_F(RangeRunning, ResizeCentresTheControlsAndTheRangeFollowsTheWindow) {
    program(1, {"Friend"});
    window->Resize(9000, 7000);
    EXPECT_EQ(window->BtnStart.Left, 9000 / 2 - 975 - 600);
    EXPECT_EQ(window->BtnExit.Left, 4500 + 600);
    EXPECT_EQ(window->BtnClearHitScores.Left, 3 * 9000 / 4.0f - 1575 / 2.0f);
    EXPECT_EQ(window->BtnConnect.Left, 120);
    EXPECT_EQ(window->picScrollBox.Height, 4500);
    EXPECT_EQ(window->picScrollBox.Width, 8850);
    window->PortError = true;
    window->Resize(12000, 9000);
    EXPECT_EQ(window->picScrollBox.Width, 8850);
}

}  // namespace
}  // namespace halvane::testing
