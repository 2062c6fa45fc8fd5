// The Transmitter menu of the main window: what Send checks before a byte goes out, the messages around
// the dialogues, and the question before a download replaces unsaved work.

#include <gtest/gtest.h>

#include "../core/fake_links.h"
#include "../core/program_fixture.h"
#include "links/com_port.h"
#include "sim/devices.h"
#include "sim/transmitter.h"
#include "virtual_line.h"

namespace halvane {
namespace {

struct TransmitterMenu : testing::ProgramFixture {
    testing::FakeSerialPort port;
    PortNames names;
    ComPortModule comPort{state, port, names, op};
    sim::Range range{4};
    std::unique_ptr<sim::Device> transmitter = sim::makeTransmitter(range, {});

    void SetUp() override {
        ProgramFixture::SetUp();
        port.present = {names.device(1)};
        form.attachLinks(&comPort, nullptr);
    }
    void chooseNumber(const std::string& text) {
        op.numberScript.push_back([text](ProgramNumberDialog& d) {
            d.Text1 = text;
            d.OKButton();
        });
    }
    // The progress window runs its dialogue against the simulated transmitter; `written` gets the wire.
    void runOnTransmitter() {
        op.progressScript.push_back([this](ProgressWindow& w) {
            testing::VirtualLine line(w.dialogue, *transmitter, op);
            line.run();
            written = line.written();
        });
    }
    std::string written;
};

// frmDownload reads its number with Val and rounds it to 16 bits; frmSend keeps to the leading digits.
TEST_F(TransmitterMenu, DownloadReadsItsNumberWithValAndSendByItsLeadingDigits) {
    const std::pair<const char*, const char*> download[] = {{"2.7", "R03"}, {"&HA", "R10"}, {"1 0", "R10"},
                                                            {"2.5", "R02"}, {" 4x", "R04"}, {"12ab", "R10"}};
    for (const auto& [text, command] : download) {
        chooseNumber(text);
        runOnTransmitter();
        form.M_Download();
        EXPECT_EQ(written.substr(0, 3), command) << text;
    }
    const std::pair<const char*, const char*> send[] = {{"2.7", "S02"}, {"1 0", "S01"}, {"12ab", "S10"}};
    for (const auto& [text, command] : send) {
        chooseNumber(text);
        runOnTransmitter();
        form.M_Send();
        EXPECT_EQ(written.substr(0, 3), command) << text;
    }
    // A number that names no place is told, and the Program on the screen stays.
    put(1, {{2, "Edge"}});
    for (const std::string text : {"-3", "40000"}) {
        written.clear();
        chooseNumber(text);
        form.M_Download();
        EXPECT_EQ(op.log.back(), "tell: Halvane: The Program Number \"" + text +
                                     "\" is no program place of the LMC: its places are 1 to 10.");
        EXPECT_EQ(grid().TextMatrix(2, 1), "Edge");
        EXPECT_EQ(written, "");
    }
}

// After a download the grid is no longer the file that was open, whatever the line did: Save asks for
// a name, the caption names no file, and no highlight names a row of the former Program.
TEST_F(TransmitterMenu, ADownloadedProgramIsNoLongerTheOpenFile) {
    sim::asTransmitter(*transmitter).setPlace(4, std::string("\xF2\x02\xFD\x03\xF0\x02", 6));
    sim::Faults silent;
    silent.silent = true;
    for (const char* place : {"4", "5", "silent"}) {
        SCOPED_TRACE(place);
        op.files = {
            ChosenFile{std::string(HALVANE_TEST_DATA) + "/image/worked_example.hvn", "worked_example.hvn"}};
        form.M_Open();
        ASSERT_EQ(form.Caption(), "LM47 Programer - worked_example.hvn");
        state.SelRow[1] = 7;
        std::unique_ptr<sim::Device> silentOne = sim::makeTransmitter(range, silent);
        if (std::string(place) == "silent") std::swap(transmitter, silentOne);
        chooseNumber(std::string(place) == "silent" ? "4" : place);
        runOnTransmitter();
        form.M_Download();
        if (std::string(place) == "silent") std::swap(transmitter, silentOne);
        EXPECT_EQ(state.FilePath, "");
        EXPECT_EQ(form.Caption(), "LM47 Programer ");
        EXPECT_EQ(state.SelRow[1], 0);
        op.files = {std::nullopt};
        op.log.clear();
        form.M_Save();
        EXPECT_EQ(op.log.front().rfind("save dialog: ", 0), 0u);
        state.FileChanged = false;
    }
}

TEST_F(TransmitterMenu, SendStoresTheProgramAndSaysSoWithTheNumberAsChosen) {
    put(1, {{1, "Friend"}, {3, "Foe"}});
    chooseNumber("25");
    runOnTransmitter();
    form.M_Send();
    EXPECT_EQ(op.log.back(), "tell: Successful: Program 25 sent successful");
    EXPECT_EQ(form.Tag, "True");
    EXPECT_EQ(sim::asTransmitter(*transmitter).place(10).value_or("").substr(0, 6),
              std::string("\xF3\x01\xFD\x02\xF2\x01", 6));
}

TEST_F(TransmitterMenu, SendRefusesAnImageThatCannotBeBytesBeforeAnythingGoesOut) {
    op.settingsScript.push_back(testing::ScriptedOperator::typeAndOk("400"));
    form.M_Time();
    put(2, {{1, "Down"}, {300, "Foe"}});
    chooseNumber("1");
    op.log.clear();
    form.M_Send();
    EXPECT_EQ(op.log.back(),
              "tell: Halvane: The Program cannot be sent: 299 seconds pass without a change before "
              "the one at second 299 (row 300, column 2), and the transmitter takes at most 255.");
    EXPECT_TRUE(port.written.empty());
    EXPECT_EQ(form.Tag, "False");
}

TEST_F(TransmitterMenu, NoContactShowsTheFailureWindow) {
    sim::Faults silent;
    silent.silent = true;
    transmitter = sim::makeTransmitter(range, silent);
    runOnTransmitter();
    chooseNumber("2");
    form.M_Send();
    EXPECT_EQ(op.log.back(), "show: Communication Failed");
    EXPECT_EQ(form.Tag, "False");
}

TEST_F(TransmitterMenu, DownloadAsksBeforeItReplacesUnsavedWorkThenFillsTheGrid) {
    put(1, {{2, "Edge"}});
    state.FileChanged = true;
    op.answers = {Answer::Cancel};
    form.M_Download();
    EXPECT_EQ(op.log.back(), "ask: Halvane: File is Changed do you want to save?");
    EXPECT_EQ(grid().TextMatrix(2, 1), "Edge");

    sim::asTransmitter(*transmitter).setPlace(4, std::string("\xF2\x02\xFD\x03\xF0\x02", 6));
    op.answers = {Answer::No};
    chooseNumber("4");
    runOnTransmitter();
    form.M_Download();
    EXPECT_EQ(column(2, 1, 4), "Foe Foe Foe Down");
    EXPECT_EQ(state.NumSeconds, 3);
    EXPECT_EQ(form.Tag, "True");
}

}  // namespace
}  // namespace halvane
