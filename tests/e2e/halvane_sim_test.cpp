// The halvane-sim program as a console meets it: the addresses it prints, its links, its Wi-Fi hello,
// and a clean end on SIGTERM. Built only where the program is.
#ifdef HALVANE_SIM_BINARY
#include <gtest/gtest.h>
#include "e2e_support.h"

namespace halvane::e2e {
namespace {

// Real line time by default: the probe up to its CR (2 bytes) and the 10 bytes of the answer take
// 12.5 ms at 9600 baud.
TEST(HalvaneSim, PrintsWhereEachDeviceStandsPacesGreetsOnWifiAndEndsCleanlyOnSigterm) {
    ScratchDir scratch;
    SimProcess sim({"--link", scratch.path().string(), "--quiet", "--targets", "4", "--serial", "2=123456"});
    auto addresses = sim.addresses();
    for (const char* name : {"transmitter", "radio", "line"}) {
        EXPECT_EQ(addresses[name].rfind("/dev/pts/", 0), 0u) << name;
        EXPECT_EQ(std::filesystem::read_symlink(scratch.path() / name), addresses[name]) << name;
    }
    auto line = openLine(addresses["transmitter"]);
    const auto start = std::chrono::steady_clock::now();
    writeAll(line.get(), "?\r\n");
    EXPECT_EQ(readFor(line.get(), 10), "VER 3.12\r\n");
    EXPECT_GE(std::chrono::steady_clock::now() - start, 12ms);
    ASSERT_EQ(addresses["wifi"].rfind("127.0.0.1:", 0), 0u);
    const auto client = connectLoopback(static_cast<std::uint16_t>(std::stoi(addresses["wifi"].substr(10))));
    EXPECT_EQ(readFor(client.get(), 64, 3000ms, true), "*KRV_CONN*");

    EXPECT_EQ(sim.exitStatus(SIGTERM), 0);
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(scratch.path() / "radio")));
}

TEST(HalvaneSim, RefusesBadOptionsWithItsUsage) {
    // clang-format off
    const std::vector<std::vector<std::string>> refused = {
        {"--targets", "0"}, {"--fault", "radio:loud"}, {"--serial", "9=1"}, {"--device", "wifi"}, {"--tcp-port"}};
    // clang-format on
    for (const auto& args : refused) {
        SimProcess sim(args);
        EXPECT_EQ(sim.exitStatus(), 2) << args[0];
    }
}

}  // namespace
}  // namespace halvane::e2e
#endif
