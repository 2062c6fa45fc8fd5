// The transmitter dialogues run as the windows and the command line run them, through the runner on a
// port: a carrier fast enough to answer before the write returns, and a line that goes away midway.

#include <gtest/gtest.h>

#include <algorithm>

#include "../core/program_fixture.h"
#include "../sim/sim_support.h"
#include "authoring/grid_setup.h"
#include "links/com_port.h"
#include "links/transmitter_download.h"
#include "links/transmitter_send.h"
#include "sim/devices.h"
#include "sim/transmitter.h"
#include "virtual_port.h"

namespace halvane {
namespace {

using testing::VirtualPort;

std::string imageOf(std::size_t lines) {
    std::string image;
    for (std::size_t i = 0; i < lines; ++i) image.push_back(static_cast<char>(i % 2 ? 1 + i % 200 : 0xF3));
    return image;
}

// A reply that is in before the write that asked for it has returned must not be dropped with what
// came before that write.
TEST(DialogueRunner, AFastCarrierLosesNoReply) {
    for (const bool occupied : {false, true}) {
        for (const std::size_t lines : {std::size_t{10}, std::size_t{600}}) {
            SCOPED_TRACE(std::to_string(lines) + (occupied ? " lines, to a place in use" : " lines"));
            sim::Range range(4);
            auto device = sim::makeTransmitter(range, {});
            if (occupied) sim::asTransmitter(*device).setPlace(2, std::string(10, '\x01'));
            VirtualPort port(*device, {.fast = true});
            ASSERT_TRUE(port.open("/dev/ttyS0"));
            testing::ScriptedOperator op;
            op.answers = {Answer::Yes};
            SendProgram send(imageOf(lines), 2);
            port.run(send, op);
            EXPECT_EQ(send.outcome(), SendProgram::Outcome::Stored);
            EXPECT_EQ(sim::asTransmitter(*device).place(2).value_or("").substr(0, lines), imageOf(lines));
        }
    }
    sim::Range range(2);
    auto device = sim::makeTransmitter(range, {});
    sim::asTransmitter(*device).setPlace(4, std::string("\xF3\x01\xFD\x02", 4) + std::string(300, '\0'));
    VirtualPort port(*device, {.fast = true});
    ASSERT_TRUE(port.open("/dev/ttyS0"));
    SharedState state;
    state.NumTargets = 2;
    ProgramGrid grid;
    prepareDownloadGrid(state, grid);
    DownloadProgram download(state, grid, 4);
    testing::ScriptedOperator op;
    port.run(download, op);
    EXPECT_EQ(download.outcome(), DownloadProgram::Outcome::Done);
    EXPECT_EQ(port.written, "R04\r\n11");
    EXPECT_EQ(grid.TextMatrix(1, 1), "Friend");
}

// The main window over the simulated transmitter on a port that can be unplugged.
struct LineLoss : testing::ProgramFixture {
    PortNames names;
    sim::Range range{4};
    std::unique_ptr<sim::Device> transmitter = sim::makeTransmitter(range, {});
    std::unique_ptr<VirtualPort> port;
    std::unique_ptr<ComPortModule> comPort;

    // A port of its own for each run; the device's clock goes on, with time for it to give up on the
    // dialogue that was cut.
    void attach(VirtualPort::Options options) {
        const TimePoint now =
            port ? port->now + sim::Transmitter::kIdleReset : TimePoint(std::chrono::hours(1));
        port = std::make_unique<VirtualPort>(*transmitter, options);
        port->now = now;
        comPort = std::make_unique<ComPortModule>(state, *port, names, op);
        form.attachLinks(comPort.get(), nullptr);
    }
    void chooseNumber(const std::string& text) {
        op.numberScript.push_back([text](ProgramNumberDialog& d) {
            d.Text1 = text;
            d.OKButton();
        });
    }
    // The progress window runs its dialogue on the port; the time the line went is noted.
    void runOnPort() {
        op.progressScript.push_back([this](ProgressWindow& w) {
            EXPECT_EQ(&w.port, port.get());
            port->run(w.dialogue, op);
        });
    }
    // A Program of `seconds` seconds whose four targets all change every second.
    void everySecond(int seconds) {
        op.settingsScript.push_back(testing::ScriptedOperator::typeAndOk(std::to_string(seconds)));
        form.M_Time();
        for (int row = 1; row <= seconds; ++row)
            for (int col = 1; col <= 4; ++col) put(col, {{row, (row + col) % 2 ? "Friend" : "Foe"}});
        op.log.clear();
    }
    bool told(const std::string& line) const { return std::count(op.log.begin(), op.log.end(), line) > 0; }
};

// Measured on the console: a line killed after 10, 17, 20 or 30 acknowledgements, or while the overwrite
// question stood, ended in "sent successful" with nothing stored.
TEST_F(LineLoss, ASendWhoseLineGoesFailsAtOnceAndStoresNothing) {
    everySecond(1100);  // 43 blocks
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
        EXPECT_EQ(op.log.back(), "show: Communication Failed");
        EXPECT_FALSE(told("tell: Successful: Program 6 sent successful"));
        EXPECT_EQ(form.Tag, "False");
        EXPECT_EQ(sim::asTransmitter(*transmitter).place(6), before);
        // At once: not a byte more on the dead line, and no waiting out the acknowledgements to come.
        EXPECT_EQ(port->writtenWhileClosed, "");
        EXPECT_LT(port->now - port->unpluggedAt, std::chrono::milliseconds(200));
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
    EXPECT_EQ(op.log.back(), "show: Communication Failed");
    EXPECT_EQ(form.Tag, "False");
    EXPECT_EQ(column(1, 1, 3), "Friend Friend Down");
    EXPECT_EQ(column(2, 1, 3), "Foe . .");
    EXPECT_EQ(state.NumSeconds, 3);
    EXPECT_EQ(grid().Rows(), state.NumSeconds + 2);
    EXPECT_EQ(port->written, "R03\r\n11");
    EXPECT_EQ(port->writtenWhileClosed, "");
    EXPECT_LT(port->now - port->unpluggedAt, std::chrono::milliseconds(200));
}

TEST_F(LineLoss, APortThatCannotOpenIsAFailureNotASilence) {
    attach({});
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
