// The hit score window against the simulated transmitter and radio on a virtual clock: the road the
// settings choose, the transmitter's block packed into the grid, the radio round one row a target, the
// clear frame, and the ways a download stops.

#include <gtest/gtest.h>

#include "../core/fake_links.h"
#include "links/com_port.h"
#include "scores/hit_scores.h"
#include "sim/devices.h"
#include "sim/range.h"
#include "virtual_port.h"

namespace halvane::testing {

using namespace std::chrono_literals;

class HitScores : public ::testing::Test {
  protected:
    // `device`: the simulated device on the shared line.
    void open(std::unique_ptr<sim::Device> on, VirtualPort::Options options = {}) {
        device = std::move(on);
        port = std::make_unique<VirtualPort>(*device, options);
        comPort = std::make_unique<ComPortModule>(state, *port, names, op);
        window = std::make_unique<FrmHitScores>(state, comPort.get(), nullptr, op, nullptr, nullptr,
                                                [this] { return port->now; });
        window->Load();
    }
    void download() {
        window->CmdDownload_Click(port->now);
        port->run(*window, [this] { return !window->busy(); });
    }
    void hit(int target, int times) {
        for (int i = 0; i < times; ++i) range.addHit(target);
    }
    // The grid's rows below the headings, "number=score" each.
    std::string grid() const {
        std::string out;
        for (int r = 1; r < window->Grid.Rows(); ++r)
            out += (out.empty() ? "" : " ") + window->Grid.TextMatrix(r, 0) + "=" +
                   window->Grid.TextMatrix(r, 1);
        return out;
    }

    sim::Range range{12};
    std::unique_ptr<sim::Device> device;
    std::unique_ptr<VirtualPort> port;
    PortNames names;
    ScriptedOperator op;
    SharedState state;
    std::unique_ptr<ComPortModule> comPort;
    std::unique_ptr<FrmHitScores> window;
};

TEST_F(HitScores, TheTransmittersBlockIsPackedOneRowAScoredTargetWithItsScoreInHexadecimal) {
    state.RadioLMC = true;
    open(sim::makeTransmitter(range, {}));
    EXPECT_EQ(window->Grid.Rows(), 201);
    EXPECT_EQ(window->Grid.TextMatrix(0, 0) + "|" + window->Grid.TextMatrix(0, 1) + "|" +
                  window->Grid.TextMatrix(200, 0),
              "Target Num|Hit Score|200");
    // Eleven scored targets: a count of 0B, which the old decimal reading could not take.
    for (int t = 1; t <= 11; ++t) hit(t, t == 10 ? 10 : t == 11 ? 16 : 1);
    download();
    EXPECT_EQ(port->written, "H\r\n");
    EXPECT_EQ(state.ReplyHex[0], "B");
    EXPECT_EQ(grid(), "1=1 2=1 3=1 4=1 5=1 6=1 7=1 8=1 9=1 10=A 11=10");
    EXPECT_EQ(window->RowHeight.size(), 12u);
}

TEST_F(HitScores, ASilentTransmitterOrABlockWithNoScoresLeavesTheGridAndSaysSo) {
    state.RadioLMC = true;
    for (const bool silent : {true, false}) {
        sim::Faults faults;
        faults.silent = silent;
        open(sim::makeTransmitter(range, faults));
        const TimePoint clicked = port->now;
        download();
        EXPECT_EQ(op.log.back(), "tell: Halvane: No Hit Scores in LMC");
        EXPECT_EQ(window->Grid.Rows(), 201);
        if (silent) {
            EXPECT_EQ(port->now - clicked, 1100ms);  // settling, then the block's second
        }
    }
}

TEST_F(HitScores, TheRadioRoundGivesOneRowATargetAndLeavesColumnZeroAsItStands) {
    state.RadioUSB = state.RadioLMC = true;
    state.NumTargets = 12;
    sim::Faults late;
    late.lateBy = 20ms;  // each target takes a moment to answer
    open(sim::makeRadioModem(range, late));
    hit(2, 3);
    hit(12, 1);
    state.ReplyHex[5] = "77";  // an earlier score of a target that stays silent keeps its place
    range.withTargets([](auto& targets) { targets[4].serial = 1, targets[4].parameters[6] = 99; });
    window->Grid.setTextMatrix(3, 0, "packed");
    // The operator takes a while over the road: the round's waits start when it is chosen (the port
    // is open already, so no settling hides it).
    comPort->OpenComPort();
    op.script<frmHitScore_Option>([this](frmHitScore_Option& o) {
        port->now += 5s;
        o.cmd_USB_Click();
    });
    download();
    EXPECT_EQ(grid(), "1=0 2=3 packed=0 4=0 5=77 6=0 7=0 8=0 9=0 10=0 11=0 12=1");
    EXPECT_EQ(hexBytes(port->written.substr(0, 4)), "FA 01 FA 02");

    // The option's Cancel ends the command; its close box leaves the last choice standing.
    port->written.clear();
    op.script<frmHitScore_Option>([](frmHitScore_Option& o) { o.cmd_Cancel_Click(); });
    download();
    op.script<frmHitScore_Option>([](frmHitScore_Option&) {});
    download();
    EXPECT_EQ(port->written, "");
}

TEST_F(HitScores, ARoundCanBeStoppedASecondDownloadIsIgnoredAndClearAsksFirst) {
    state.RadioUSB = true;
    state.NumTargets = 12;
    sim::Faults silent;
    silent.silent = true;
    open(sim::makeRadioModem(range, silent));
    window->CmdDownload_Click(port->now);
    port->run(*window,
              [this] { return window->progress() == "Reading hit scores: target 3 of 12 (Esc stops)"; });
    window->CmdDownload_Click(port->now);  // ignored
    window->Escape();
    EXPECT_FALSE(window->busy());
    EXPECT_EQ(window->Grid.Rows(), 13);
    EXPECT_EQ(hexBytes(port->written), "FA 01 FA 02 FA 03");

    port->written.clear();
    op.answers = {Answer::Cancel, Answer::Ok};
    window->CmdClear_Click(port->now);
    window->CmdClear_Click(port->now);
    EXPECT_EQ(hexBytes(port->written), "FB E7");
    EXPECT_EQ(op.log.back(), "ask: Halvane: Clear Scores from Targets?");
}

TEST_F(HitScores, ALineLostDuringARoundIsToldOnceAndKeepsWhatWasRead) {
    state.RadioUSB = true;
    state.NumTargets = 6;
    hit(1, 4);
    hit(2, 5);
    hit(3, 6);
    open(sim::makeRadioModem(range, {}), {false, 2});  // unplugged after the second reply
    download();
    EXPECT_EQ(window->outcome(), FrmHitScores::Outcome::LineLost);
    EXPECT_EQ(grid(), "1=4 2=5 3= 4= 5= 6=");
    EXPECT_EQ(op.log.back(),
              "tell: Halvane: Comm Port 1: the line went away (unplugged). The scores read so far stay.");
}

TEST(HitScoresPort, APortThatWillNotOpenStopsTheDownloadAfterItsMessage) {
    SharedState state;
    state.RadioUSB = true;
    state.ComPort = 3;
    FakeSerialPort port;  // nothing present
    PortNames names;
    ScriptedOperator op;
    ComPortModule comPort(state, port, names, op);
    FrmHitScores window(state, &comPort, nullptr, op);
    window.Load();
    window.CmdDownload_Click(TimePoint{});
    EXPECT_FALSE(window.busy());
    EXPECT_EQ(op.log, std::vector<std::string>{"tell: Halvane: Comm Port 3 in use or invalid"});
}

}  // namespace halvane::testing
