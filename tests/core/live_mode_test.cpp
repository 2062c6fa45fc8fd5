// The live window: what opens at load, which clicks mark and which open the popup, and the frames
// each command sends.

#include <gtest/gtest.h>

#include "range/live_mode.h"
#include "range_window_fixture.h"

namespace halvane::testing {
namespace {

const TimePoint t0 = TimePoint{} + std::chrono::hours(1000);
constexpr int L = frmLiveMode::kLeftButton, R = frmLiveMode::kRightButton, Ctrl = frmLiveMode::kCtrl;

class LiveMode : public RangeWindowFixture {
  protected:
    void open(int targets, int cols = 10, const std::string& device = "/dev/live") {
        state.NumTargets = static_cast<std::int16_t>(targets);
        state.NumCols = static_cast<std::int16_t>(cols);
        names.setDevice(state.ComPort, device);
        port.present.insert("/dev/live");
        window = std::make_unique<frmLiveMode>(state, port, names, wifiSend(), op, positions);
        window->Load();
    }
    // Per tile: '#' marked by a click (no border), '+' marked in a row, '.' unmarked, '_' never touched;
    // with `faces`, each mark follows the face's first two letters.
    std::string tiles(bool faces = false) const {
        std::string out;
        for (const auto& t : window->view().tiles()) {
            if (faces) out += std::string_view(wire::wordOfAction(t.face)).substr(0, 2);
            out += t.Tag == "True" ? (t.BorderStyle == 0 ? '#' : '+') : (t.Tag.empty() ? '_' : '.');
        }
        return out;
    }
    std::string sent() { return hexBytes(std::exchange(port.written, {})); }

    std::unique_ptr<frmLiveMode> window;
};

TEST_F(LiveMode, TheLineControllerHearsABlankFirstAndTheAllTargetBanksWhileTheMarksStay) {
    state.TypeVMR4000 = state.RadioUSB = true;
    open(34);
    EXPECT_EQ(port.calls, (std::vector<std::string>{"open /dev/live", "RTS off", "DTR off"}));
    EXPECT_FALSE(window->nextDeadline());  // no clock of its own, unlike the run window
    EXPECT_EQ(port.written,
              " \rSPA00000000\rCPA00000000\rSPB00000000\rCPB00000000\rSPC00000000\r"
              "CPC00000000\rSPD00000000\rCPD0\r");
    port.written.clear();
    op.popupChoices = {"M_Down"};
    window->PicTarget_MouseDown(33, L, Ctrl, t0);
    window->BtnFriend_Click(t0);
    EXPECT_EQ(port.written, "SPA11111111\rSPB11111111\rSPC11111111\rSPD11111111\r");
    EXPECT_EQ(tiles(true).substr(93), "Fr_Fr#Fr_");  // every tile turns, also beyond 32
    port.written.clear();
    window->PicTarget_MouseDown(33, R, Ctrl, t0);  // no line beyond 32: no frame, the tile turns
    EXPECT_EQ(tiles(true).substr(93), "Fr_Do.Fr_");
    window->placement.Left = 1234;
    window->QueryUnload();
    window->Unload();
    EXPECT_FALSE(port.isOpen());
    EXPECT_EQ(port.written, "");  // the targets stay as they are
    state.TypeVMR4000 = false;
    state.RadioWiFi = true;
    port.calls.clear();
    open(3);  // Wi-Fi alone: no port, nothing at load
    EXPECT_TRUE(port.calls.empty() && wifi.empty() && op.log.size() == 1);
    EXPECT_EQ(window->placement.Left, 1234);
}

TEST_F(LiveMode, ClicksOnTilesMarkAndOpenThePopupAsTheButtonCtrlAndClickSettingSay) {
    struct Case {
        bool leftClickIF;
        std::vector<std::array<int, 3>> clicks;  // tile, button, shift
        std::string marks;
        int popups;
    };
    const Case cases[] = {
        {true, {{2, L, 0}}, ".#...", 1},
        {true, {{2, L, Ctrl}}, "_#___", 0},  // a first click with Ctrl leaves the others untouched
        {true, {{2, L, Ctrl}, {3, L, Ctrl}, {5, R, Ctrl}}, "_##_#", 1},
        {false, {{2, L, 0}}, ".#...", 0},
        {false, {{2, L, 0}, {4, R, 0}}, "...#.", 1},  // the right button moves the mark
        {true, {{2, 4, 0}}, ".#...", 0},              // the middle button only marks
    };
    for (const Case& c : cases) {
        state.LeftClickIF = c.leftClickIF;
        state.RightClickIF = !c.leftClickIF;
        open(5);
        op.log.clear();
        for (const auto& [tile, button, shift] : c.clicks)
            window->PicTarget_MouseDown(tile, button, shift, t0);
        EXPECT_EQ(tiles(), c.marks) << c.leftClickIF << " " << c.clicks.size();
        EXPECT_EQ(op.log, std::vector<std::string>(c.popups, "popup: Target_Popup")) << c.marks;
    }
}

TEST_F(LiveMode, PopupAndRowCommandsReachEveryMarkedTargetInOrderWhateverItShowsAndClearTheMarks) {
    state.RadioUSB = state.LeftClickIF = true;
    state.RightClickIF = false;
    open(20, 8);
    op.popupChoices = {"M_Edge", "", "M_Friend", "M_Friend", "", "M_Foe"};
    window->PicTarget_MouseDown(5, R, 0, t0);
    EXPECT_EQ(sent(), "F1 05");
    window->PicTarget_MouseDown(7, L, Ctrl, t0);
    window->PicTarget_MouseDown(2, L, Ctrl, t0);
    window->PicTarget_MouseDown(3, R, Ctrl, t0);  // dismissed: the marks stay
    EXPECT_EQ(tiles(true).substr(0, 24), "Do.Do#Do#Do.Ed.Do.Do#Do.");
    window->PicTarget_MouseDown(7, R, Ctrl, t0);
    EXPECT_EQ(sent(), "F3 02 F3 03 F3 07");
    window->PicTarget_MouseDown(7, R, 0, t0);  // already Friend: the frame goes all the same
    EXPECT_EQ(sent(), "F3 07");
    window->LblRow_MouseDown(3, R, 0, t0);  // the wrong button for the setting
    window->LblRow_MouseDown(3, L, 0, t0);  // row 3 of 8 columns: 17 to 20, borders kept
    EXPECT_EQ(tiles(), "................++++");
    window->LblRow_MouseDown(1, L, 0, t0);
    EXPECT_EQ(sent(), "F2 01 F2 02 F2 03 F2 04 F2 05 F2 06 F2 07 F2 08");
    EXPECT_EQ(tiles(true).substr(0, 24), "Fo.Fo.Fo.Fo.Fo.Fo.Fo.Fo.");
}

TEST_F(LiveMode, PortTroubleIsToldOnceAndTheWindowGoesOnWithWhatItHas) {
    state.RadioUSB = true;
    state.ComPort = 3;
    open(3, 10, "/dev/absent");
    EXPECT_EQ(op.log, (std::vector<std::string>{"tell: Halvane: Comm Port 3 in use or invalid"}));
    EXPECT_EQ(tiles(), "");  // no range, and nothing breaks
    window->BtnFoe_Click(t0);
    window->Resize(9000, 7000);
    EXPECT_EQ(window->picScrollBox.Width, 0);
    EXPECT_EQ(window->BtnFriend.Left, 2100);
    EXPECT_EQ(window->BtnClearHitScores.Left, 6750 - 787.5f);

    // Unlike the run window, the hit buttons follow the settings in the bottom-left layout too.
    state.StartBottom = state.UseGroups = state.RadioWiFi = true;
    state.TypeLMSeries = false;
    open(2);
    EXPECT_FALSE(window->BtnGetHitScores.Enabled || window->BtnClearHitScores.Visible);
    op.popupChoices = {"M_Foe", "M_Edge"};
    window->PicTarget_MouseDown(2, R, 0, t0);  // groups show, but commands go to target numbers
    EXPECT_EQ(sent(), "F2 02");
    port.hangUp();
    port.hangUp();
    window->PicTarget_MouseDown(1, R, 0, t0);  // told once; Wi-Fi and the tiles go on
    EXPECT_EQ(op.log.size(), 4u);
    EXPECT_EQ(op.log[2],
              "tell: Halvane: Comm Port 3: the line went away (unplugged). The tiles still follow "
              "the commands; open Live Mode again when the line is back.");
    EXPECT_EQ(wifi.back(), "00 F1 01");
    EXPECT_EQ(tiles(true), "Ed.Fo.");
}

}  // namespace
}  // namespace halvane::testing
