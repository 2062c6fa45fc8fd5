// The hit score buttons of the run and live windows: the frames of a poll and of a clear on each
// carrier, the replies read from the window's own port or the Wi-Fi link, the scores on the tiles,
// and what the operator can do while a poll runs.

#include <gtest/gtest.h>

#include "authoring/program_grid.h"
#include "range/live_mode.h"
#include "range/range_running.h"
#include "range_window_fixture.h"

namespace halvane::testing {
namespace {

using namespace std::chrono_literals;
const TimePoint t0 = TimePoint{} + 1000h;

class RangeHitScores : public RangeWindowFixture {
  protected:
    RangeHitScores() {
        state.TypeLMSeries = true;
        state.NumTargets = 3;
        state.NumCols = 10;
        state.StartBottom = false;
        names.setDevice(state.ComPort, "/dev/radio");
        port.present.insert("/dev/radio");
        grid.setCols(4);
        grid.setRows(3);
    }
    RangeWindow& live() {
        if (window) window->Unload();
        auto w = std::make_unique<frmLiveMode>(state, port, names, wifiSend(), op, positions);
        w->Load();
        window = std::move(w);
        return *window;
    }
    RangeWindow& run(bool connected) {
        if (window) window->Unload();
        auto w = std::make_unique<frmRangeRunning>(state, grid, port, names, wifiSend(), op, positions);
        w->Load();
        if (connected) w->BtnConnect_Click();
        window = std::move(w);
        return *window;
    }
    // The tiles' hit captions, "|" between them.
    std::string hits() const {
        std::string out;
        for (const auto& t : window->view().tiles())
            out += (out.empty() ? "" : "|") + t.hitsText.value_or("-");
        return out;
    }
    // Lets time pass to `at` as the application's clock would, waking the window at each deadline.
    void until(TimePoint at) {
        while (const auto due = window->nextDeadline()) {
            if (*due > at) break;
            window->onTime(*due);
        }
    }
    std::string sent() { return hexBytes(std::exchange(port.written, {})); }

    ProgramGrid grid;
    std::unique_ptr<RangeWindow> window;
};

TEST_F(RangeHitScores, EachWindowPollsOnItsOwnPortDroppingTheLineBeforeEachTargetAndShowsTheScores) {
    state.RadioUSB = true;
    for (const bool liveWindow : {true, false}) {
        SCOPED_TRACE(liveWindow ? "live window" : "run window");
        state.ReplyHex.fill("");
        state.ReplyHex[3] = "7";  // an earlier score stays on view, as it stands
        RangeWindow& w = liveWindow ? live() : run(true);
        EXPECT_EQ(hits(), "Hits: |Hits: |Hits: 7");
        port.written.clear();
        const int drops = port.inputDrops;
        w.BtnGetHitScores_Click(t0);
        EXPECT_EQ(sent(), "FA 01");
        EXPECT_EQ(w.pollProgress(), "Reading hit scores: target 1 of 3 (Esc stops)");
        w.BtnGetHitScores_Click(t0 + 1ms);  // a second click during the poll is ignored
        EXPECT_EQ(sent(), "");
        port.receive("\xEA");
        port.receive(std::string("\x0C\xEA", 2));  // the byte after a whole reply is not kept
        until(t0 + 20ms);
        EXPECT_EQ(sent(), "FA 02");  // at once, not after the time-out
        until(t0 + 200ms);           // target 2 is silent for its 0.15 s
        EXPECT_EQ(sent(), "FA 03");
        port.receive(std::string("\xEA\x00", 2));
        until(t0 + 1s);
        EXPECT_FALSE(w.polling());
        EXPECT_EQ(w.pollProgress(), "");
        EXPECT_EQ(hits(), "Hits: 12|Hits: 0|Hits: 0");
        EXPECT_EQ(state.ReplyHex[2], "");
        EXPECT_EQ(port.inputDrops - drops, 4);  // at the start, then before each target
        w.BtnClearHitScores_Click(t0 + 2s);
        EXPECT_EQ(sent(), "FA E7");
        EXPECT_EQ(hits(), "Hits: |Hits: |Hits: ");
    }
}

TEST_F(RangeHitScores, OnWifiAReplyMustComeWholeAndWithNoCarrierEveryTargetWaitsItsTime) {
    state.RadioWiFi = true;
    RangeWindow& w = run(false);
    w.BtnGetHitScores_Click(t0);
    w.onSocketData("\xEA");
    w.onSocketData("\x05");  // two pieces never make a reply on the socket
    until(t0 + 349ms);
    EXPECT_EQ(wifi, (std::vector<std::string>{"00 FA 01"}));
    until(t0 + 350ms);
    w.onSocketData("\xEA\x05");
    until(t0 + 351ms);
    w.Escape();  // stops the poll: the window stays, and so does what was read
    EXPECT_FALSE(w.polling());
    EXPECT_FALSE(w.closed());
    EXPECT_EQ(wifi, (std::vector<std::string>{"00 FA 01", "00 FA 02", "00 FA 03"}));
    EXPECT_EQ(hits(), "Hits: 0|Hits: 5|Hits: ");
    w.BtnClearHitScores_Click(t0 + 1s);
    EXPECT_EQ(wifi.back(), "00 FB E7");
    EXPECT_EQ(port.written, "");

    state.RadioWiFi = false;  // no carrier: nothing goes, and the waits run all the same
    RangeWindow& quiet = live();
    wifi.clear();
    quiet.BtnGetHitScores_Click(t0);
    until(t0 + 1049ms);
    EXPECT_TRUE(quiet.polling());
    until(t0 + 1050ms);
    EXPECT_FALSE(quiet.polling());
    EXPECT_EQ(hits(), "Hits: 0|Hits: 0|Hits: 0");
    EXPECT_TRUE(wifi.empty());
    quiet.Escape();  // with no poll, Esc leaves as Exit does
    EXPECT_TRUE(quiet.closed());
}

TEST_F(RangeHitScores, ARangeThatCannotAskOrShowIsToldSoAndNothingGoes) {
    state.RadioUSB = true;
    run(false).BtnGetHitScores_Click(t0);  // the run window's port opens only with Connect
    EXPECT_EQ(op.log.back(),
              "tell: Halvane: Comm Port 1 is not open, so the targets cannot be asked. Connect first.");
    state.TypeLMSeries = false;  // no score boxes on the tiles
    state.StartBottom = true;    // ...and the buttons keep their design state
    RangeWindow& w = run(true);
    port.written.clear();
    w.BtnClearHitScores_Click(t0);
    w.BtnGetHitScores_Click(t0);
    EXPECT_FALSE(w.polling());
    EXPECT_EQ(port.written, "");
    EXPECT_EQ(op.log.size(), 3u);

    state.TypeLMSeries = true;
    state.StartBottom = false;
    RangeWindow& lost = live();
    lost.BtnGetHitScores_Click(t0);
    const std::size_t told = op.log.size();
    port.hangUp();  // the line goes mid-poll: told once, and the poll stops
    EXPECT_FALSE(lost.polling());
    EXPECT_EQ(op.log.size(), told + 1);
    EXPECT_EQ(told, 3u);
}

}  // namespace
}  // namespace halvane::testing
