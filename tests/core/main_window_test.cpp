// The main window's model: its menu and rules, New, Close, Open, Save, Exit and their questions.

#include <gtest/gtest.h>

#include "console/main_window.h"
#include "fake_links.h"
#include "links/com_port.h"
#include "links/radio_setup.h"
#include "scripted_operator.h"
#include "temp_dir.h"

namespace halvane {
namespace {

using testing::readBytes;
using testing::ScriptedOperator;

const std::string kData = HALVANE_TEST_DATA;
const std::string kPrompt = "ask: Halvane: File is Changed do you want to save?";
const std::string kPromptDialog = "save dialog: All Files (*.*)|*.*|Halvane(*.hvn)|*.hvn #2";
const std::string kOpenDialog = "open dialog: Halvane(*.hvn)|*.hvn #1";

struct MainWindow : ::testing::Test, testing::Console {
    testing::TempDir dir;

    void SetUp() override {
        state.NumTargets = 4;
        form.Load();
    }
    void newFile(const std::string& length) {
        op.script<Settings>(ScriptedOperator::typeAndOk(length));
        form.M_New();
    }
    void changeSomething() {
        form.grid()->setTextMatrix(1, 1, "Foe");
        state.FileChanged = true;
    }
    ChosenFile file(const std::string& name) const { return {dir.file(name), name}; }
    // How many of Run, Send and Add Time are enabled.
    int programMenus() const {
        return form.item("M_Run").enabled + form.item("M_Send").enabled + form.item("M_Time").enabled;
    }
};

TEST_F(MainWindow, SettingsDecideWhatIsShownAtLoadAndAfterSetup) {
    // Visible: Target, Hit Scores, Wi-Fi Setup, LM Setup, Com Port; then whether Wi-Fi Setup is enabled.
    const auto shown = [this] {
        std::string out;
        for (const char* name : {"M_Target", "M_HitScores", "M_Ethernet", "M_LM_SETUP", "M_ComPort"})
            out += form.item(name).visible ? '1' : '0';
        return out + (form.item("M_Ethernet").enabled ? " on" : " off") +
               (form.item("M_LiveMode").visible ? "" : " no live mode");
    };
    // clang-format off
    const struct { bool lmc, usb, wifi, lmSeries, vmr; const char* shown; } cases[] = {
        {true, false, false, true, false, "11001 off"},   // LMC LM-Series
        {false, false, false, false, true, "00000 off"},  // no radio, no LM Series
        {false, false, true, true, false, "01110 on"},    // Wi-Fi with LM Series
        {false, true, false, true, false, "01011 off"},   // USB radio with LM Series
    };
    // clang-format on
    for (const auto& c : cases) {
        std::tie(state.RadioLMC, state.RadioUSB, state.RadioWiFi, state.TypeLMSeries, state.TypeVMR4000) =
            std::tie(c.lmc, c.usb, c.wifi, c.lmSeries, c.vmr);
        for (bool afterSetup : {false, true}) {
            form.applyVisibility(afterSetup);
            EXPECT_EQ(shown(), c.shown) << "case " << &c - cases << " after setup " << afterSetup;
        }
    }
    // After Setup, Wi-Fi Setup is enabled with Wi-Fi but not disabled without it.
    state.RadioWiFi = true;
    form.applyVisibility(false);
    state.RadioWiFi = false;
    form.applyVisibility(true);
    EXPECT_EQ(shown(), "01011 on");
}

TEST_F(MainWindow, NewAndAddTimeAskTheLengthAndShapeTheGrid) {
    EXPECT_EQ(programMenus(), 0);
    newFile("12");
    ASSERT_TRUE(form.grid());
    EXPECT_EQ(std::make_tuple(form.grid()->Rows(), form.grid()->Cols(), form.Caption(), programMenus()),
              std::make_tuple(14, 5, std::string("LM47 Programer "), 3));
    EXPECT_EQ(op.log, std::vector<std::string>{"show: Program Setup 30"});
    // Add Time shows the current length and reshapes the grid.
    op.script<Settings>(ScriptedOperator::typeAndOk("20"));
    form.M_Time();
    EXPECT_EQ(op.log.back(), "show: Program Setup 12");
    EXPECT_EQ(form.grid()->Rows(), 22);

    // The grid follows the window, but not below 780 twips high.
    form.Resize(9000, 6000);
    EXPECT_EQ(std::make_pair(form.grid()->Width, form.grid()->Height),
              std::make_pair(9000 - 110, 6000 - 780));
    form.Resize(9000, 700);
    EXPECT_EQ(form.grid()->Height, 6000 - 780);
}

TEST_F(MainWindow, ProgramSetupCancelZeroAndTooLongChangeNothing) {
    op.script<Settings>([](Settings& d) { d.CancelButton(); });
    form.M_New();
    EXPECT_EQ(std::make_tuple(state.GridLoaded, form.Caption(), programMenus()),
              std::make_tuple(false, std::string("LM47 Programer "), 0));
    newFile("0");
    EXPECT_FALSE(state.GridLoaded);

    // Too long: refused with a message, the dialog stays open until the operator cancels.
    op.log.clear();
    op.script<Settings>([](Settings& d) {
        for (const char* length : {"32766", "40000"}) {
            d.Text1 = length;
            d.OKButton();
            EXPECT_FALSE(d.closed()) << length;
        }
        d.CancelButton();
    });
    form.M_New();
    EXPECT_TRUE(!state.GridLoaded && state.NumSeconds == 30);
    ASSERT_EQ(op.log.size(), 3u);
    EXPECT_EQ(op.log[1], "tell: Halvane: The length of a Program can be at most 32765 seconds.");
}

TEST_F(MainWindow, CloseAsksOnlyWhenChangedAndEachAnswerDoesItsOwnThing) {
    state.NumSeconds = 50;
    form.M_Close();  // nothing open: nothing happens, not even the length reset
    EXPECT_EQ(state.NumSeconds, 50);

    // clang-format off
    const struct { bool changed; Answer answer; bool stays; int seconds; const char* path;
                   std::vector<std::string> log; } cases[] = {
        // `stays`: the grid, its menus and the changed flag; then NumSeconds and FilePath afterwards.
        {true, Answer::Cancel, true, 10, "keep.hvn", {kPrompt}},
        {true, Answer::No, false, 10, "keep.hvn", {kPrompt}},  // the grid goes; the length and the name stay
        {true, Answer::Yes, false, 30, "", {kPrompt, kPromptDialog}},  // always the dialog, then the reset
        {false, Answer::Cancel, false, 30, "", {}},
    };
    // clang-format on
    for (const auto& c : cases) {
        state.FileChanged = false;
        newFile("10");
        op.log.clear();
        state.FilePath = "keep.hvn";
        if (c.changed) changeSomething();
        op.answers = {c.answer};
        op.files = {file("closed.hvn")};
        form.M_Close();
        EXPECT_EQ(op.log, c.log);
        EXPECT_EQ(std::make_tuple(state.GridLoaded, programMenus(), state.FileChanged, int{state.NumSeconds},
                                  state.FilePath),
                  std::make_tuple(c.stays, c.stays ? 3 : 0, c.stays, c.seconds, std::string(c.path)));
    }
    EXPECT_NE(readBytes(dir.file("closed.hvn")).find("\"Foe\""), std::string::npos);
    EXPECT_EQ(form.Caption(), "LM47 Programer ") << "Close leaves the title alone";
}

TEST_F(MainWindow, AFailedOpenTellsWhereAndLeavesTheProgramItsSettingsAndItsFileAsTheyWere) {
    newFile("5");
    changeSomething();
    state.FilePath = dir.file("mine.hvn");
    state.FileTitle = "mine.hvn";
    form.M_Save();
    form.grid()->setTextMatrix(2, 2, "Edge");
    state.FileChanged = true;
    const std::string caption = form.Caption();
    const std::string good = readBytes(kData + "/mixed.hvn");
    // A truncated Program, a header of 300 groups (no grid can hold it), a number that is no number.
    const std::pair<const char*, std::string> bad[] = {
        {"short.hvn", good.substr(0, good.size() / 2)},
        {"groups.hvn", "\"Target\",2\r\n\"Groups\",300\r\n1,1\r\n2,1\r\n\"Seconds\",3\r\n"},
        {"zero.hvn", "\"Target\",2\r\n\"Groups\",\"zero\"\r\n"},
    };
    for (const auto& [name, content] : bad) {
        SCOPED_TRACE(name);
        testing::writeBytes(dir.file(name), content);
        op.log.clear();
        op.answers = {Answer::No};
        op.files = {file(name)};
        form.M_Open();
        ASSERT_EQ(op.log.size(), 3u);
        EXPECT_NE(op.log[2].find(std::string(name) + "\" at line"), std::string::npos) << op.log[2];
        EXPECT_EQ(std::make_tuple(form.MousePointer(), form.Caption(), state.FilePath, state.FileChanged,
                                  form.grid()->TextMatrix(2, 2)),
                  std::make_tuple(0, caption, dir.file("mine.hvn"), true, std::string("Edge")));
        EXPECT_EQ(std::make_tuple(state.NumTargets, state.NumGroups, state.UseGroups, state.NumSeconds),
                  std::make_tuple(std::int16_t{4}, std::int16_t{0}, false, std::int16_t{5}));
    }
    // Save still writes to the file the Program came from, never to the broken one.
    form.M_Save();
    EXPECT_NE(readBytes(dir.file("mine.hvn")).find("\"Edge\""), std::string::npos);
    EXPECT_EQ(readBytes(dir.file("short.hvn")), good.substr(0, good.size() / 2));
    // New and Close work as before the failures.
    op.log.clear();
    newFile("7");
    EXPECT_EQ(form.grid()->Rows(), 9);
    EXPECT_EQ(op.log.size(), 1u);

    op.files = {ChosenFile{kData + "/mixed.hvn", "mixed.hvn"}};
    form.M_Open();
    EXPECT_EQ(std::make_tuple(form.Caption(), form.grid()->TextMatrix(3, 2), programMenus()),
              std::make_tuple(std::string("LM47 Programer - mixed.hvn"), std::string("Wave"), 3));
}

TEST_F(MainWindow, ANameWithoutExtensionIsSavedAsAProgramFile) {
    newFile("3");
    changeSomething();
    op.files = {file("plain"), file("range.v2")};
    form.M_Save_As();
    EXPECT_EQ(state.FilePath + " " + form.Caption(), dir.file("plain.hvn") + " LM47 Programer - plain.hvn");
    EXPECT_TRUE(std::filesystem::exists(dir.file("plain.hvn")) &&
                !std::filesystem::exists(dir.file("plain")));
    form.M_Save_As();
    EXPECT_TRUE(std::filesystem::exists(dir.file("range.v2"))) << "a name with an extension is kept";
    // The save question's dialog does the same.
    changeSomething();
    op.answers = {Answer::Yes};
    op.files = {file("closing")};
    form.M_Close();
    EXPECT_TRUE(std::filesystem::exists(dir.file("closing.hvn")));
}

TEST_F(MainWindow, OpenWithChangesSavesThroughSave) {
    newFile("5");
    changeSomething();
    state.FilePath = dir.file("first.hvn");
    state.FileTitle = "first.hvn";
    op.answers = {Answer::Yes};
    op.files = {ChosenFile{kData + "/two_targets.hvn", "two_targets.hvn"}};
    form.M_Open();
    // Save reused the file name: only the open dialog was shown.
    EXPECT_EQ(op.log, (std::vector<std::string>{"show: Program Setup 30", kPrompt, kOpenDialog}));
    EXPECT_NE(readBytes(dir.file("first.hvn")).find("\"Foe\""), std::string::npos);
}

TEST_F(MainWindow, ASaveThatCannotWriteSaysWhyAndKeepsTheProgramAndItsChangedFlag) {
    form.M_Save();
    form.M_Save_As();
    EXPECT_EQ(op.log, (std::vector<std::string>(2, "tell: Halvane: There is no Program to save.")));

    newFile("5");
    changeSomething();
    std::filesystem::create_directories(dir.path() / "taken.hvn");
    op.files = {file("taken.hvn")};
    form.M_Save();
    EXPECT_TRUE(state.FileChanged && form.grid()->TextMatrix(1, 1) == "Foe");
    EXPECT_NE(op.log.back().find("taken.hvn"), std::string::npos);
}

TEST_F(MainWindow, ExitAsksOnlyWhenChangedAndEndsAtOnceAfterTheQuestion) {
    std::filesystem::create_directories(dir.path() / "taken.hvn");
    using enum Form1::Ending;
    // clang-format off
    const struct { bool changed; Answer answer; const char* file; Form1::Ending ending; } cases[] = {
        {false, Answer::Cancel, "", Unload},  // through QueryUnload, which stores the position
        {true, Answer::Cancel, "", None},
        {true, Answer::No, "", Now},          // at once, without storing the position
        {true, Answer::Yes, "exit.hvn", Now},
        {true, Answer::Yes, "taken.hvn", None},  // a save that fails does not end the program
    };
    // clang-format on
    for (const auto& c : cases) {
        testing::Console w;
        w.newProgram(4, "3");
        w.state.FileChanged = c.changed;
        w.op.answers = {c.answer};
        w.op.files = {file(c.file)};
        w.form.M_Exit();
        EXPECT_EQ(w.form.ending(), c.ending) << c.changed << " " << c.file;
    }
    EXPECT_TRUE(std::filesystem::exists(dir.file("exit.hvn")));
}

TEST_F(MainWindow, WindowPositionIsRestoredAndNotSavedWhileMinimised) {
    const std::pair<const char*, const char*> stored[] = {
        {"Left", " 2400"}, {"Top", " 600"}, {"Height", " 9000"}, {"Width", " 12000"}};
    for (const auto& [key, value] : stored) positions.SaveSetting("KRV", "Main Form", key, value);
    Form1 f(state, op, positions);
    f.Load();
    const WindowPlacement& p = f.placement();
    EXPECT_EQ(std::make_tuple(p.Left, p.Top, p.Height, p.Width),
              std::make_tuple(2400.0, 600.0, 9000.0, 12000.0));

    f.placement().Left = 4800;
    f.placement().WindowState = 1;
    EXPECT_TRUE(f.QueryUnload());
    EXPECT_EQ(positions.entries[0].value, " 2400");
    f.placement().WindowState = 0;
    EXPECT_TRUE(f.QueryUnload());
    EXPECT_EQ(positions.entries[0].value, " 4800");
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

// The port search and the radio setup take the shared port over; while the hit score window reads
// scores over it, they wait, and the operator is told why.
TEST(SharedPort, WhatTakesTheSharedPortOverWaitsWhileTheHitScoreWindowReads) {
    testing::Console w;
    w.state.RadioUSB = w.state.TypeLMSeries = true;
    w.state.NumTargets = 2;
    testing::FakeSerialPort port;
    port.present = {PortNames::defaultDevice(1)};
    PortNames names;
    ComPortModule comPort(w.state, port, names, w.op);
    w.form.attachLinks(&comPort, nullptr);
    w.form.Load();
    w.form.run("M_HitScores");
    auto* scores = dynamic_cast<FrmHitScores*>(w.op.lastShown);
    ASSERT_TRUE(scores);
    scores->CmdDownload_Click(SteadyClock::now());
    ASSERT_TRUE(scores->busy());
    w.form.run("M_RadioSetup");
    auto* radio = dynamic_cast<frmRadioSetup*>(w.op.lastShown);
    ASSERT_TRUE(radio);
    w.op.log.clear();
    port.written.clear();
    scores->portSearch();
    radio->txtLMSN = "1875";
    radio->Command3_Click();
    const std::string told =
        "tell: Halvane: The hit score window is reading scores; wait for it to finish, or press "
        "Esc there, before ";
    EXPECT_EQ(w.op.log,
              (std::vector<std::string>{told + "searching the ports.", told + "setting radio channels."}));
    EXPECT_TRUE(port.written.empty() && port.isOpen());
    scores->Escape();
    scores->Unload();
}

}  // namespace
}  // namespace halvane
