// The main window's model: its menu and rules, New, Close, Open, Save, Exit and their questions.

#include <gtest/gtest.h>

#include "authoring/main_window.h"
#include "scripted_operator.h"
#include "temp_dir.h"

namespace halvane {
namespace {

using testing::MemoryPositionStore;
using testing::readBytes;
using testing::ScriptedOperator;
using testing::TempDir;

const std::string kData = HALVANE_TEST_DATA;
const std::string kPrompt = "ask: Halvane: File is Changed do you want to save?";
const std::string kPromptDialog = "save dialog: All Files (*.*)|*.*|Halvane(*.hvn)|*.hvn #2";
const std::string kSaveDialog = "save dialog: Halvane(*.hvn)|*.hvn #1";

struct Fixture : ::testing::Test {
    SharedState state;
    ScriptedOperator op;
    MemoryPositionStore positions;
    Form1 form{state, op, positions};
    TempDir dir;

    void SetUp() override {
        state.NumTargets = 4;
        form.Load();
    }
    void newProgram(const std::string& length) {
        op.settingsScript.push_back(ScriptedOperator::typeAndOk(length));
        form.M_New();
    }
    void changeSomething() {
        form.grid()->setTextMatrix(1, 1, "Foe");
        state.FileChanged = true;
    }
    bool programMenus() const {
        return form.item("M_Run").enabled && form.item("M_Send").enabled && form.item("M_Time").enabled;
    }
};

using MainWindow = Fixture;

TEST(MainWindowVisibility, SettingsDecideWhatIsShownAtLoadAndAfterSetup) {
    struct Case {
        bool lmc, usb, wifi, lmSeries, vmr;
        bool target, hitScores, ethernet, lmSetup, comPort;
    };
    const Case cases[] = {
        // LMC LM-Series: Transmitter, Hit Scores, Com Port.
        {true, false, false, true, false, true, true, false, false, true},
        // No radio, no LM Series: Transmitter and Hit Scores gone; Live Mode stays.
        {false, false, false, false, true, false, false, false, false, false},
        // Wi-Fi with LM Series: LM Setup and Wi-Fi Setup shown, Com Port hidden.
        {false, false, true, true, false, false, true, true, true, false},
        // USB radio with LM Series.
        {false, true, false, true, false, false, true, false, true, true},
    };
    for (const auto& c : cases) {
        for (bool afterSetup : {false, true}) {
            SharedState s;
            s.RadioLMC = c.lmc;
            s.RadioUSB = c.usb;
            s.RadioWiFi = c.wifi;
            s.TypeLMSeries = c.lmSeries;
            s.TypeVMR4000 = c.vmr;
            ScriptedOperator op;
            MemoryPositionStore store;
            Form1 f(s, op, store);
            f.Load();
            if (afterSetup) f.applyVisibility(true);
            EXPECT_TRUE(f.item("M_LiveMode").visible);
            EXPECT_EQ(f.item("M_Target").visible, c.target);
            EXPECT_EQ(f.item("M_HitScores").visible, c.hitScores);
            EXPECT_EQ(f.item("M_Ethernet").visible, c.ethernet);
            EXPECT_EQ(f.item("M_Ethernet").enabled, c.wifi);
            EXPECT_EQ(f.item("M_LM_SETUP").visible, c.lmSetup);
            EXPECT_EQ(f.item("M_ComPort").visible, c.comPort);
        }
    }
    // After Setup, Wi-Fi Setup is enabled with Wi-Fi but not disabled without it.
    SharedState s;
    s.RadioWiFi = true;
    ScriptedOperator op;
    MemoryPositionStore store;
    Form1 f(s, op, store);
    f.Load();
    s.RadioWiFi = false;
    f.applyVisibility(true);
    EXPECT_FALSE(f.item("M_Ethernet").visible);
    EXPECT_TRUE(f.item("M_Ethernet").enabled);
}

TEST_F(MainWindow, NewAsksTheLengthAndCreatesTheGrid) {
    EXPECT_FALSE(form.item("M_Run").enabled || form.item("M_Send").enabled || form.item("M_Time").enabled);
    EXPECT_EQ(form.Caption(), "Halvane");
    newProgram("12");
    ASSERT_TRUE(state.GridLoaded);
    EXPECT_EQ(form.grid()->Rows(), 14);
    EXPECT_EQ(form.grid()->Cols(), 5);
    EXPECT_EQ(form.Caption(), "LM47 Programer ");
    EXPECT_TRUE(programMenus());
    EXPECT_EQ(op.log, std::vector<std::string>{"show: Program Setup 30"});
    EXPECT_FALSE(state.FileChanged);

    // The grid follows the window, but not below 780 twips high.
    form.Resize(9000, 6000);
    EXPECT_EQ(form.grid()->Height, 6000 - 780);
    EXPECT_EQ(form.grid()->Width, 9000 - 110);
    form.Resize(9000, 700);
    EXPECT_EQ(form.grid()->Height, 6000 - 780);
}

TEST_F(MainWindow, ProgramSetupCancelZeroAndTooLongChangeNothing) {
    op.settingsScript.push_back(ScriptedOperator::cancel());
    form.M_New();
    EXPECT_FALSE(state.GridLoaded);
    EXPECT_EQ(form.Caption(), "LM47 Programer ");
    EXPECT_FALSE(programMenus());

    newProgram("0");
    EXPECT_FALSE(state.GridLoaded);
    EXPECT_EQ(state.NumSeconds, 30);

    // Too long: refused with a message, the dialog stays open until the operator cancels.
    op.log.clear();
    op.settingsScript.push_back([](Settings& d) {
        d.Text1 = "32766";
        d.OKButton();
        EXPECT_FALSE(d.closed());
        d.Text1 = "40000";
        d.OKButton();
        EXPECT_FALSE(d.closed());
        d.CancelButton();
    });
    form.M_New();
    EXPECT_FALSE(state.GridLoaded);
    EXPECT_EQ(state.NumSeconds, 30);
    ASSERT_EQ(op.log.size(), 3u);
    EXPECT_EQ(op.log[1], "tell: Halvane: The length of a Program can be at most 32765 seconds.");
}

TEST_F(MainWindow, AddTimeChangesTheLengthKeepingCellsAndFileChanged) {
    newProgram("10");
    form.grid()->setTextMatrix(3, 2, "Edge");
    op.settingsScript.push_back(ScriptedOperator::typeAndOk("20"));
    form.M_Time();
    EXPECT_EQ(form.grid()->Rows(), 22);
    EXPECT_EQ(form.grid()->TextMatrix(3, 2), "Edge");
    EXPECT_FALSE(state.FileChanged);
    EXPECT_EQ(op.log.back(), "show: Program Setup 10");
}

TEST_F(MainWindow, CloseWithoutChangesRemovesTheGridAndResets) {
    form.M_Close();  // nothing open: nothing happens, not even the length reset
    state.NumSeconds = 50;
    form.M_Close();
    EXPECT_EQ(state.NumSeconds, 50);

    newProgram("10");
    state.FilePath = "x.hvn";
    form.M_Close();
    EXPECT_FALSE(state.GridLoaded);
    EXPECT_FALSE(programMenus());
    EXPECT_EQ(state.NumSeconds, 30);
    EXPECT_EQ(state.FilePath, "");
    EXPECT_EQ(form.Caption(), "LM47 Programer ") << "Close leaves the title alone";
}

TEST_F(MainWindow, CloseWithChangesAsksAndEachAnswerDoesItsOwnThing) {
    newProgram("10");
    state.FilePath = "keep.hvn";
    changeSomething();
    op.answers = {Answer::Cancel};
    form.M_Close();
    EXPECT_TRUE(state.GridLoaded);

    // No: the grid goes, but the length and the file name stay.
    op.answers = {Answer::No};
    form.M_Close();
    EXPECT_FALSE(state.GridLoaded);
    EXPECT_FALSE(state.FileChanged);
    EXPECT_EQ(state.NumSeconds, 10);
    EXPECT_EQ(state.FilePath, "keep.hvn");

    // Yes: always the dialog with all files, then save, then the reset.
    newProgram("10");
    changeSomething();
    op.log.clear();
    op.answers = {Answer::Yes};
    op.files = {ChosenFile{dir.file("closed.hvn"), "closed.hvn"}};
    form.M_Close();
    EXPECT_EQ(op.log, (std::vector<std::string>{kPrompt, kPromptDialog}));
    EXPECT_FALSE(state.GridLoaded);
    EXPECT_EQ(state.NumSeconds, 30);
    EXPECT_NE(readBytes(dir.file("closed.hvn")).find("\"Foe\""), std::string::npos);
}

TEST_F(MainWindow, OpenLoadsAndSaveWritesBackToTheSameFile) {
    op.files = {ChosenFile{kData + "/mixed.hvn", "mixed.hvn"}};
    form.M_Open();
    EXPECT_EQ(op.log, std::vector<std::string>{"open dialog: Halvane(*.hvn)|*.hvn #1"});
    EXPECT_EQ(form.Caption(), "LM47 Programer - mixed.hvn");
    EXPECT_EQ(form.grid()->TextMatrix(3, 2), "Wave");
    EXPECT_TRUE(programMenus());

    // Save As to a new name, then Save reuses it without a dialog.
    op.files = {ChosenFile{dir.file("copy.hvn"), "copy.hvn"}};
    form.M_Save_As();
    EXPECT_EQ(form.Caption(), "LM47 Programer - copy.hvn");
    form.grid()->setTextMatrix(4, 1, "Down");
    op.log.clear();
    form.M_Save();
    EXPECT_TRUE(op.log.empty());
    EXPECT_NE(readBytes(dir.file("copy.hvn")).find("\"Down\"\r\n\"\"\r\n\"Friend\""), std::string::npos);
}

TEST_F(MainWindow, OpenOfABadFileTellsWhichFileAndLineAndLaterCommandsStillWork) {
    testing::writeBytes(dir.file("bad.hvn"), "\"Target\",2\r\n\"Groups\",\"zero\"\r\n");
    op.files = {ChosenFile{dir.file("bad.hvn"), "bad.hvn"}};
    form.M_Open();
    ASSERT_EQ(op.log.size(), 2u);
    EXPECT_NE(op.log[1].find("bad.hvn\" at line 2"), std::string::npos) << op.log[1];
    EXPECT_EQ(form.MousePointer(), 0);
    EXPECT_TRUE(programMenus()) << "the menus were enabled before the failure";
    EXPECT_EQ(state.NumTargets, 2);

    op.files = {ChosenFile{kData + "/two_targets.hvn", "two_targets.hvn"}};
    form.M_Open();
    EXPECT_EQ(form.grid()->TextMatrix(1, 1), "Friend");
    EXPECT_EQ(form.Caption(), "LM47 Programer - two_targets.hvn");
}

TEST_F(MainWindow, OpenWithChangesSavesThroughSaveOrGoesOn) {
    newProgram("5");
    changeSomething();
    state.FilePath = dir.file("first.hvn");
    state.FileTitle = "first.hvn";
    op.answers = {Answer::Yes};
    op.files = {ChosenFile{kData + "/two_targets.hvn", "two_targets.hvn"}};
    form.M_Open();
    // Save reused the file name: only the open dialog was shown.
    EXPECT_EQ(op.log, (std::vector<std::string>{"show: Program Setup 30", kPrompt,
                                                "open dialog: Halvane(*.hvn)|*.hvn #1"}));
    EXPECT_NE(readBytes(dir.file("first.hvn")).find("\"Foe\""), std::string::npos);

    // Cancel at the question: nothing happens.
    changeSomething();
    op.log.clear();
    op.answers = {Answer::Cancel};
    form.M_Open();
    EXPECT_EQ(op.log, std::vector<std::string>{kPrompt});
    EXPECT_TRUE(state.FileChanged);
}

TEST_F(MainWindow, SavingWithNoProgramSaysSoAndWritesNothing) {
    form.M_Save();
    form.M_Save_As();
    EXPECT_EQ(op.log, (std::vector<std::string>{"tell: Halvane: There is no Program to save.",
                                                "tell: Halvane: There is no Program to save."}));
}

TEST_F(MainWindow, ASaveThatCannotWriteKeepsTheProgramAndItsChangedFlag) {
    newProgram("5");
    changeSomething();
    std::filesystem::create_directories(dir.path() / "taken.hvn");
    op.files = {ChosenFile{dir.file("taken.hvn"), "taken.hvn"}};
    form.M_Save();
    EXPECT_TRUE(state.FileChanged);
    EXPECT_EQ(form.grid()->TextMatrix(1, 1), "Foe");
    EXPECT_NE(op.log.back().find("taken.hvn"), std::string::npos);

    // Exit's Yes with a save that fails does not end the program.
    op.answers = {Answer::Yes};
    op.files = {ChosenFile{dir.file("taken.hvn"), "taken.hvn"}};
    form.M_Exit();
    EXPECT_EQ(form.ending(), Form1::Ending::None);
}

TEST_F(MainWindow, ExitAndTheCloseBox) {
    form.placement().Left = 300;
    // Without changes, Exit unloads through QueryUnload, which stores the position.
    form.M_Exit();
    EXPECT_EQ(form.ending(), Form1::Ending::Unload);
    EXPECT_TRUE(form.QueryUnload());
    EXPECT_FALSE(positions.entries.empty());

    // With changes and Yes: saved, and the end comes at once without storing the position.
    positions.entries.clear();
    newProgram("3");
    state.FileChanged = true;
    op.answers = {Answer::Yes};
    op.files = {ChosenFile{dir.file("exit.hvn"), "exit.hvn"}};
    form.M_Exit();
    EXPECT_EQ(form.ending(), Form1::Ending::Now);
    EXPECT_TRUE(std::filesystem::exists(dir.file("exit.hvn")));
    EXPECT_TRUE(positions.entries.empty());
}

TEST_F(MainWindow, WindowPositionIsRestoredAndNotSavedWhileMinimised) {
    positions.entries = {{"KRV", "Main Form", "Left", " 2400"},
                         {"KRV", "Main Form", "Top", " 600"},
                         {"KRV", "Main Form", "Height", " 9000"},
                         {"KRV", "Main Form", "Width", " 12000"},
                         {"KRV", "Main Form", "Colour", " 5"}};
    SharedState s;
    Form1 f(s, op, positions);
    f.Load();
    const WindowPlacement& p = f.placement();
    EXPECT_EQ(std::vector<double>({p.Left, p.Top, p.Height, p.Width}),
              std::vector<double>({2400, 600, 9000, 12000}));

    f.placement().Left = 4800;
    f.placement().WindowState = 1;
    EXPECT_TRUE(f.QueryUnload());
    EXPECT_EQ(positions.GetAllSettings("KRV", "Main Form")[0].second, " 2400");
    f.placement().WindowState = 0;
    EXPECT_TRUE(f.QueryUnload());
    const auto saved = positions.GetAllSettings("KRV", "Main Form");
    EXPECT_EQ(saved[0], (std::pair<std::string, std::string>{"Left", " 4800"}));
}

TEST_F(MainWindow, ManualOpensTheFirstFileThatExistsAndAboutShowsTheVersion) {
    testing::writeBytes(dir.file("manual.html"), "<p>manual</p>");
    Form1 f(state, op, positions, ManualLocations{{dir.file("hvn.doc"), dir.file("manual.html")}});
    f.M_Manual();
    EXPECT_EQ(op.opened, std::vector<std::string>{dir.file("manual.html")});
    Form1 none(state, op, positions, ManualLocations{{dir.file("hvn.doc")}});
    none.M_Manual();
    EXPECT_EQ(op.opened.size(), 1u);

    form.M_About();
    EXPECT_EQ(op.log.back(), "show: About Halvane Version " HALVANE_VERSION);
}

}  // namespace
}  // namespace halvane
