// A Program sent to place 3 of the simulated transmitter over a real pseudo-terminal at 9600 baud, and
// downloaded again: the grid that comes back is the one the download rules make of the image (each
// action held down its column, the Pause one row lower and two rows added).

#include <gtest/gtest.h>

#include <thread>

#include "../core/temp_dir.h"
#include "cli/commands.h"
#include "sim/devices.h"
#include "sim/server/sim_server.h"

namespace halvane {
namespace {

TEST(TransmitterRoundTrip, SendToPlaceThreeThenDownloadItBack) {
    sim::Range range(4);
    sim::SimServer server(sim::SimServer::Options{true, {}});
    const std::string pty = server.addPty("transmitter", sim::makeTransmitter(range, {}));
    std::thread serving([&server] { server.run(); });

    cli::TransmitterOptions options;
    options.place = 3;
    options.device = pty;
    SharedState sendState;
    const std::string program = std::string(HALVANE_TEST_DATA) + "/image/worked_example.hvn";
    EXPECT_EQ(cli::sendCommand(program, options, sendState), 0);

    SharedState downloadState;  // no targets configured: the first block adds the columns it names
    testing::TempDir dir;
    options.output = dir.file("round-trip.hvn");
    ::testing::internal::CaptureStdout();
    const int downloaded = cli::downloadCommand(options, downloadState);
    const std::string grid = ::testing::internal::GetCapturedStdout();
    server.stop();
    serving.join();

    EXPECT_EQ(downloaded, 0);
    EXPECT_EQ(grid,
              testing::readBytes(std::string(HALVANE_TEST_DATA) + "/image/worked_example.downloaded.grid"));
    // Saving writes the configured columns only, none here: the header and no cell.
    EXPECT_EQ(testing::readBytes(options.output), "\"Target\",0\r\n\"Groups\",\"0\"\r\n\"Seconds\",6\r\n");
}

}  // namespace
}  // namespace halvane
