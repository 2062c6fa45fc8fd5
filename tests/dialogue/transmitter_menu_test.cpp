// The Transmitter menu of the main window over the simulated transmitter on a virtual port: what Send
// checks before a byte goes out, the messages around the dialogues, the question before a download
// replaces unsaved work, and a line that goes away midway.

#include <gtest/gtest.h>

#include <algorithm>

#include "../core/program_fixture.h"
#include "../sim/sim_support.h"
#include "links/com_port.h"
#include "sim/devices.h"
#include "sim/transmitter.h"
#include "virtual_port.h"

namespace halvane {
namespace {

using testing::VirtualPort;
using namespace std::chrono_literals;

struct TransmitterMenu : testing::ProgramFixture {
    PortNames names;
    sim::Range range{4};
    std::unique_ptr<sim::Device> transmitter = sim::makeTransmitter(range, {});
    std::unique_ptr<VirtualPort> port;
    std::unique_ptr<ComPortModule> comPort;

    void SetUp() override {
        ProgramFixture::SetUp();
        attach({});
    }
    // A port of its own on the transmitter as it is now; the device's clock goes on.
    void attach(VirtualPort::Options options) {
        const TimePoint now = port ? port->now : TimePoint(std::chrono::hours(1));
        port = std::make_unique<VirtualPort>(*transmitter, options);
        port->now = now;
        comPort = std::make_unique<ComPortModule>(state, *port, names, op);
        form.attachLinks(comPort.get(), nullptr);
    }
    void chooseNumber(const std::string& text) {
        op.script<ProgramNumberDialog>([text](ProgramNumberDialog& d) {
            d.Text1 = text;
            d.OKButton();
        });
    }
    // The progress window runs its dialogue on the port, after time for the device to give up on a
    // dialogue that was cut; `written` is what this run wrote.
    void runOnPort() {
        op.script<ProgressWindow>([this](ProgressWindow& w) {
            EXPECT_EQ(&w.port, port.get());
            port->now += sim::Transmitter::kIdleReset;
            port->written.clear();
            port->run(w.dialogue, op);
        });
    }
    bool told(const std::string& line) const { return std::count(op.log.begin(), op.log.end(), line) > 0; }
    // Nothing may go out on a dead line, and the failure comes at once, not after the time-outs to come.
    void expectAFailureAtOnce() {
        EXPECT_EQ(op.log.back(), "show: Communication Failed");
        EXPECT_EQ(form.Tag, "False");
        EXPECT_EQ(port->writtenWhileClosed, "");
        EXPECT_LT(port->now - port->unpluggedAt, 200ms);
    }
};

// frmDownload reads its number with Val and rounds it to 16 bits; frmSend keeps to the leading digits.
TEST_F(TransmitterMenu, DownloadReadsItsNumberWithValAndSendByItsLeadingDigits) {
    const std::pair<const char*, const char*> typed[] = {{"2.7", "R03"}, {"&HA", "R10"}, {"1 0", "R10"},
                                                         {"2.5", "R02"}, {" 4x", "R04"}, {"12ab", "R10"},
                                                         {"2.7", "S02"}, {"1 0", "S01"}, {"12ab", "S10"}};
    for (const auto& [text, command] : typed) {
        chooseNumber(text);
        runOnPort();
        command[0] == 'R' ? form.M_Download() : form.M_Send();
        EXPECT_EQ(port->written.substr(0, 3), command) << text;
    }
    // A number that names no place is told, and the Program on the screen stays.
    put(1, {{2, "Edge"}});
    for (const std::string text : {"-3", "40000"}) {
        port->written.clear();
        chooseNumber(text);
        form.M_Download();
        EXPECT_EQ(op.log.back(), "tell: Halvane: The Program Number \"" + text +
                                     "\" is no program place of the LMC: its places are 1 to 10.");
        EXPECT_EQ(grid().TextMatrix(2, 1), "Edge");
        EXPECT_EQ(port->written, "");
    }
}

// After a download the grid is no longer the file that was open, whatever the line did: Save asks for
// a name, the caption names no file, and no highlight names a row of the former Program.
TEST_F(TransmitterMenu, ADownloadedProgramIsNoLongerTheOpenFile) {
    sim::asTransmitter(*transmitter).setPlace(4, std::string("\xF2\x02\xFD\x03\xF0\x02", 6));
    for (const std::string place : {"4", "5", "silent"}) {
        SCOPED_TRACE(place);
        op.files = {
            ChosenFile{std::string(HALVANE_TEST_DATA) + "/image/worked_example.hvn", "worked_example.hvn"}};
        form.M_Open();
        ASSERT_EQ(form.Caption(), "LM47 Programer - worked_example.hvn");
        state.SelRow[1] = 7;
        if (place == "silent") {
            transmitter = sim::makeTransmitter(range, {.silent = true});
            attach({});
        }
        chooseNumber(place == "silent" ? "4" : place);
        runOnPort();
        form.M_Download();
        if (place == "4") {
            EXPECT_EQ(column(2, 1, 4) + " " + form.Tag, "Foe Foe Foe Down True");
            EXPECT_EQ(state.NumSeconds, 3);
        }
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

// Success is told with the number as chosen; no contact shows the failure window.
TEST_F(TransmitterMenu, SendStoresTheProgramAndSaysSoOrShowsTheFailure) {
    put(1, {{1, "Friend"}, {3, "Foe"}});
    chooseNumber("25");
    runOnPort();
    form.M_Send();
    EXPECT_EQ(op.log.back(), "tell: Successful: Program 25 sent successful");
    EXPECT_EQ(form.Tag, "True");
    EXPECT_EQ(sim::asTransmitter(*transmitter).place(10).value_or("").substr(0, 6),
              std::string("\xF3\x01\xFD\x02\xF2\x01", 6));

    transmitter = sim::makeTransmitter(range, {.silent = true});
    attach({});
    runOnPort();
    chooseNumber("2");
    form.M_Send();
    EXPECT_EQ(op.log.back(), "show: Communication Failed");
    EXPECT_EQ(form.Tag, "False");
}

TEST_F(TransmitterMenu, SendRefusesAnImageThatCannotBeBytesBeforeAnythingGoesOut) {
    op.script<Settings>(testing::ScriptedOperator::typeAndOk("400"));
    form.M_Time();
    put(2, {{1, "Down"}, {300, "Foe"}});
    chooseNumber("1");
    op.log.clear();
    form.M_Send();
    EXPECT_EQ(op.log.back(),
              "tell: Halvane: The Program cannot be sent: 299 seconds pass without a change before "
              "the one at second 299 (row 300, column 2), and the transmitter takes at most 255.");
    EXPECT_EQ(port->written + port->writtenWhileClosed, "");
    EXPECT_EQ(form.Tag, "False");
}

TEST_F(TransmitterMenu, DownloadAsksBeforeItReplacesUnsavedWork) {
    put(1, {{2, "Edge"}});
    state.FileChanged = true;
    op.answers = {Answer::Cancel, Answer::No};
    form.M_Download();
    EXPECT_EQ(op.log.back(), "ask: Halvane: File is Changed do you want to save?");
    EXPECT_EQ(grid().TextMatrix(2, 1), "Edge");
    chooseNumber("4");
    runOnPort();
    form.M_Download();
    EXPECT_EQ(std::make_pair(grid().TextMatrix(2, 1), form.Tag),
              std::make_pair(std::string(), std::string("True")));
}

// The main window over a port that can be unplugged.
struct LineLoss : TransmitterMenu {};

// Measured on the console: a line killed after 10, 17, 20 or 30 acknowledgements, or while the overwrite
// question stood, ended in "sent successful" with nothing stored.
TEST_F(LineLoss, ASendWhoseLineGoesFailsAtOnceAndStoresNothing) {
    op.script<Settings>(testing::ScriptedOperator::typeAndOk("1100"));  // 43 blocks
    form.M_Time();
    for (int row = 1; row <= 1100; ++row)
        for (int col = 1; col <= 4; ++col) put(col, {{row, (row + col) % 2 ? "Friend" : "Foe"}});
    const std::string before(254, '\x07');
    for (const int replies : {1, 11, 18, 21, 31}) {
        SCOPED_TRACE("the line goes after reply " + std::to_string(replies));
        sim::asTransmitter(*transmitter).setPlace(6, before);
        attach({.unplugAfter = replies});
        op.log.clear();
        op.answers = {Answer::Yes};
        chooseNumber("6");
        runOnPort();
        form.M_Send();
        expectAFailureAtOnce();
        EXPECT_FALSE(told("tell: Successful: Program 6 sent successful"));
        EXPECT_EQ(sim::asTransmitter(*transmitter).place(6), before);
    }
}

TEST_F(LineLoss, ADownloadWhoseLineGoesFailsAtOnceAndKeepsWhatCame) {
    // Four blocks: the line goes after the second; what the first two brought stays in the grid.
    std::string image = sim::testing::hex("F3 01 F2 02 FD 02");
    image.resize(254, '\0');
    image += sim::testing::hex("F0 01 FD 01");
    image.resize(510, '\0');
    image += sim::testing::hex("F3 02");
    image.resize(1022, '\0');
    sim::asTransmitter(*transmitter).setPlace(3, image);
    attach({.unplugAfter = 2});
    chooseNumber("3");
    runOnPort();
    form.M_Download();
    expectAFailureAtOnce();
    EXPECT_EQ(column(1, 1, 3) + " " + column(2, 1, 3), "Friend Friend Down Foe . .");
    EXPECT_EQ(state.NumSeconds, 3);
    EXPECT_EQ(grid().Rows(), state.NumSeconds + 2);
    EXPECT_EQ(port->written, "R03\r\n11");
}

TEST_F(LineLoss, APortThatCannotOpenIsAFailureNotASilence) {
    names.setDevice(1, "");  // no device behind the port: it cannot open
    chooseNumber("2");
    runOnPort();
    form.M_Send();
    EXPECT_TRUE(told("tell: Halvane: Comm Port 1 in use or invalid"));
    EXPECT_EQ(op.log.back(), "show: Communication Failed");
    EXPECT_EQ(port->writtenWhileClosed, "");
}

}  // namespace
}  // namespace halvane
