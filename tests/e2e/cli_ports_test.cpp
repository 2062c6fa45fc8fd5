// halvane-cli ports against halvane-sim's transmitter and radio on two pseudo-terminals among sixteen
// port names: the search names both, --save stores the radio's port, and each device hears its two
// questions.
#if defined(HALVANE_CLI_BINARY) && defined(HALVANE_SIM_BINARY)
#include <gtest/gtest.h>

#include <fstream>

#include "authoring/profile_file.h"
#include "e2e_support.h"

namespace halvane::e2e {
namespace {

using namespace std::string_literals;

TEST(CliPorts, FindsTheTransmitterAndTheRadioAndSavesTheRadiosPort) {
    ScratchDir scratch;
    // The simulator's own program, its two serial devices linked into the scratch folder.
    SimProcess sim({"--link", scratch.path().string(), "--targets", "2", "--device", "transmitter",
                    "--device", "radio"});
    sim.addresses();
    const std::string transmitter = (scratch.path() / "transmitter").string();
    const std::string radio = (scratch.path() / "radio").string();
    const auto config = scratch.path() / "hvn.cfg";
    {
        std::ofstream out(config);
        out << "[Settings]\r\nComPort= 9\r\n[Port Names]\r\n";
        // Every other port names a device that does not exist.
        for (int port = 1; port <= 16; ++port)
            out << "COM" << port << "="
                << (port == 4    ? transmitter
                    : port == 11 ? radio
                                 : (scratch.path() / "none").string())
                << "\r\n";
    }
    const auto started = std::chrono::steady_clock::now();
    ChildProcess cli(HALVANE_CLI_BINARY, {"--config", config.string(), "ports", "--save"});
    const std::string output = readFor(cli.output(), 1 << 12, 8000ms);
    EXPECT_EQ(cli.exitStatus(), 0);
    const auto took = std::chrono::steady_clock::now() - started;
    EXPECT_EQ(output, "Finding=Radio Found on Com Port  11\nSelected=11\nComPort=4\nPresent=4,11\n");
    EXPECT_EQ(ReadIni(config, "Settings", "ComPort"), "11");
    EXPECT_EQ(sim.heardBy("transmitter"), "?\r\n+++");
    EXPECT_EQ(sim.heardBy("radio"), "?\r\n+++ATCN\r\n");
    // Half a second of Timer1, then both questions to both ports at once.
    EXPECT_LT(took, 2500ms);

    // Nothing to find, and a ComPort beyond the ports: no option is selected and --save stores nothing.
    {
        std::ofstream out(config);
        out << "[Settings]\r\nComPort= 17\r\n[Port Names]\r\n";
        for (int port = 1; port <= 16; ++port)
            out << "COM" << port << "=" << (scratch.path() / "none").string() << "\r\n";
    }
    ChildProcess none(HALVANE_CLI_BINARY, {"--config", config.string(), "ports", "--save"});
    EXPECT_EQ(readFor(none.output(), 1 << 12, 8000ms),
              "Finding=\nSelected=0\nComPort=17\nPresent=\nno port is selected; nothing was saved\n");
    EXPECT_EQ(none.exitStatus(), 1);
    EXPECT_EQ(ReadIni(config, "Settings", "ComPort"), "17");
}

}  // namespace
}  // namespace halvane::e2e
#endif
