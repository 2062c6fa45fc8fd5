// The Setup dialog: what it shows, its buttons' limits, what OK stores, and the switch between
// Groups and Target Numbers under a changed Program.

#include "console/setup_dialog.h"

#include "program_fixture.h"
#include "temp_dir.h"

namespace halvane {
namespace {

using testing::readBytes;

struct SetupDialog : testing::ProgramFixture {
    testing::TempDir dir;
    void SetUp() override {
        ProgramFixture::SetUp();
        state.ConfigFile = dir.file("hvn.cfg");
    }
};

TEST_F(SetupDialog, LoadShowsTheSettings) {
    state.NumTargets = 0;
    state.StartBottom = false;
    state.IconSize = "Huge";
    state.UseGroups = true;
    state.TypeNXBox = state.TypeVMR4000 = true;  // both set by hand in the file: the last one set wins
    state.LeftClickIF = true;
    frmDisplay d(form);
    EXPECT_TRUE(d.Txt_NumTargets == "1" && d.optTop && !d.optBottom);
    EXPECT_FALSE(d.optSmall || d.OptMed || d.optLarge) << "a size the dialog does not offer";
    EXPECT_TRUE(d.optGroups && !d.optNumbers && d.OldUseGroups && d.optLeftClick && !d.optRightClick);
    EXPECT_TRUE(d.OptVMR && !d.OptNX_Box && !d.OptLM_Series);
}

TEST_F(SetupDialog, PlusAndMinusStopAtTheirLimits) {
    frmDisplay d(form);
    d.Txt_NumTargets = "199";
    d.Txt_NumCols = "29";
    for (int i = 0; i < 3; ++i) d.Command10(), d.Command8();
    EXPECT_EQ(d.Txt_NumTargets + " " + d.Txt_NumCols, "200 30");
    d.Txt_NumTargets = d.Txt_NumCols = "2";
    for (int i = 0; i < 3; ++i) d.Command9(), d.Command7();
    EXPECT_EQ(d.Txt_NumTargets + " " + d.Txt_NumCols, "1 1");
    d.Txt_NumCols = "x";
    d.Command8();
    EXPECT_EQ(d.Txt_NumCols + " " + op.log.back(),
              "x tell: Halvane: Number of Target Per Row: \"x\" is not a number from -32768 to 32767.");
}

TEST_F(SetupDialog, OkStoresTheKeysInOrderAndSetsTheSettings) {
    frmDisplay d(form);
    d.Txt_NumTargets = "0";
    d.Txt_NumCols = "6";
    for (bool* option : {&d.optTop, &d.optLarge, &d.OptLM_Series, &d.optLeftClick}) d.set(*option);
    d.cb_USB = d.cb_Wifi = 1;
    d.OKButton();
    EXPECT_TRUE(d.closed() && form.Tag == "True");
    EXPECT_EQ(readBytes(state.ConfigFile),
              "[Settings]\r\nTargets=0\r\nCols=6\r\nStart Location=Top\r\nIcon=Large\r\nGroups=False\r\n"
              "NX-Box=False\r\nLM-Series=True\r\nVMR4000=False\r\nLMC-Radio=False\r\nUSB-Radio=True\r\n"
              "WiFi-Radio=True\r\nLeftClickIF=True\r\n");
    EXPECT_EQ(state.NumTargets, 1) << "a typed 0 is 1 in memory and 0 in the file";
    EXPECT_TRUE(state.NumCols == 6 && !state.StartBottom && state.IconSize == "Large");
    EXPECT_TRUE(state.TypeLMSeries && state.RadioUSB && state.RadioWiFi && !state.RadioLMC &&
                state.LeftClickIF);
    EXPECT_TRUE(state.RightClickIF) << "the right-click flag keeps its start-up value";
}

TEST_F(SetupDialog, BadNumbersAreRefusedBeforeAnythingChanges) {
    // clang-format off
    const struct { const char* targets; const char* cols; const char* message; } cases[] = {
        {"abc", "4", "Number of Targets (1-200): \"abc\" is not a number from -32768 to 32767."},
        {"12", "99999", "Number of Target Per Row: \"99999\" is not a number from -32768 to 32767."},
        {"201", "4", "Number of Targets (1-200): the range has at most 200 targets."},
    };
    // clang-format on
    for (const auto& c : cases) {
        frmDisplay d(form);
        d.set(d.optGroups);
        d.Txt_NumTargets = c.targets;
        d.Txt_NumCols = c.cols;
        d.OKButton();
        EXPECT_EQ(op.log.back(), std::string("tell: Halvane: ") + c.message);
        EXPECT_FALSE(d.closed() || state.UseGroups || std::filesystem::exists(state.ConfigFile)) << c.targets;
        EXPECT_EQ(state.NumTargets, 4);
    }
}

TEST_F(SetupDialog, SwitchingModeUnderAChangedProgramAsks) {
    // No question for an unchanged Program across the switch, nor for a changed one without it.
    for (bool changed : {false, true}) {
        state.FileChanged = changed;
        frmDisplay d(form);
        if (!changed) d.set(d.optGroups);
        d.OKButton();
        EXPECT_TRUE(d.closed() && state.GridLoaded && state.UseGroups);
    }
    EXPECT_TRUE(op.log.empty());
    const std::string question =
        "ask: Halvane: Switching between Groups and Targets will close file. File is Changed do you want to "
        "save?";
    const std::string saveDialog = "save dialog: All Files (*.*)|*.*|Halvane(*.hvn)|*.hvn #2";
    state.NumGroups = 2;  // a Program switched to groups without any cannot be saved
    // `file`: the Save dialog's choice, nullptr for its Cancel; `closes`: the dialog, the Program with it.
    // clang-format off
    const struct { Answer answer; const char* file; bool closes; std::string last; } cases[] = {
        {Answer::Cancel, nullptr, false, question},
        {Answer::Yes, nullptr, false, saveDialog},
        {Answer::Yes, "saved.hvn", true, saveDialog},
        {Answer::No, nullptr, true, question},
    };
    // clang-format on
    for (const auto& c : cases) {
        if (!state.GridLoaded) newProgram(4, "30");
        state.UseGroups = false;
        state.FileChanged = true;
        frmDisplay d(form);
        d.set(d.optGroups);
        op.answers = {c.answer};
        op.files = {c.file ? std::optional(ChosenFile{dir.file(c.file), c.file}) : std::nullopt};
        d.OKButton();
        EXPECT_EQ(op.log.back(), c.last);
        EXPECT_EQ(std::make_tuple(d.closed(), state.GridLoaded, state.FileChanged),
                  std::make_tuple(c.closes, !c.closes, !c.closes))
            << c.last;
        EXPECT_TRUE(state.UseGroups) << "set before the question, and kept";
    }
    EXPECT_TRUE(std::filesystem::exists(dir.file("saved.hvn")));
    EXPECT_TRUE(form.item("M_Run").enabled) << "this path leaves the Program's menus enabled";
}

TEST_F(SetupDialog, TheMenuCommandRunsTheVisibilityRulesAfterOkAndCancelAndOkWithLmSeriesOpensTheLayout) {
    state.RadioLMC = true;
    form.applyVisibility(false);
    op.script<frmDisplay>([](frmDisplay& d) {
        d.cb_LMC = 0;
        d.OKButton();
    });
    form.M_TargetSetup();
    EXPECT_FALSE(form.item("M_Target").visible);
    state.RadioLMC = state.TypeLMSeries = true;
    op.script<frmDisplay>([](frmDisplay& d) { d.CancelButton(); });
    form.M_TargetSetup();  // no range layout after Cancel, even with LM Series
    EXPECT_TRUE(form.item("M_Target").visible);
    EXPECT_EQ(form.Tag, "False");
    // OK with LM Series goes on to the range layout, its tiles built.
    op.script<frmDisplay>([](frmDisplay& d) { d.OKButton(); });
    op.script<RangeDisplay>([this](RangeDisplay& w) {
        op.popupChoices = {"M_SN"};
        op.inputs = {"4242"};
        w.PicTarget_MouseDown(3, RangeDisplay::kLeftButton);
    });
    form.M_TargetSetup();
    EXPECT_EQ(state.SerialNum[3], 4242);
}

}  // namespace
}  // namespace halvane
