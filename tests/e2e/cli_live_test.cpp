// halvane-cli live against a simulated range of eight targets, on the serial radio (a pseudo-terminal)
// and the Wi-Fi device (loopback TCP), and the commands it refuses before sending anything.
#ifdef HALVANE_CLI_BINARY
#include <gtest/gtest.h>

#include <fstream>

#include "e2e_support.h"
#include "served_range.h"

namespace halvane::e2e {
namespace {

using namespace std::string_literals;
constexpr const char* kSerialRadio = "USB-Radio=True\r\nComPort= 1\r\n";

// What the command wrote, and its exit status.
std::pair<std::string, int> live(const ScratchDir& scratch, const std::string& settings,
                                 std::vector<std::string> args) {
    const auto config = scratch.path() / "hvn.cfg";
    std::ofstream(config) << "[Settings]\r\nTargets=8\r\nCols=4\r\nStart Location=Top\r\nIcon=Small\r\n"
                          << settings;
    args.insert(args.begin(), {"--config", config.string(), "live"});
    ChildProcess cli(HALVANE_CLI_BINARY, args);
    std::string output = readFor(cli.output(), 1 << 16, 8000ms);
    return {output, cli.exitStatus()};
}

TEST(CliLive, TurnsTheNamedTargetsOnceEachThenAllOnTheRadioAndOverWifi) {
    ScratchDir scratch;
    Served radio(8), bridge(8);
    const std::string device = radio.radio();
    EXPECT_EQ(live(scratch, kSerialRadio, {"foe", "5", "--device", device, "3", "5"}), std::pair(""s, 0));
    EXPECT_EQ(radio.bytes(4), "\xF2\x03\xF2\x05");
    EXPECT_EQ(radio.faces(), "DDODODDD");
    EXPECT_EQ(live(scratch, kSerialRadio, {"edge", "--device", device}), std::pair(""s, 0));
    EXPECT_EQ(radio.bytes(6), "\xF2\x03\xF2\x05\xF1\xE7");
    EXPECT_EQ(radio.faces(), "EEEEEEEE");

    // Each command is one connection, and its frames are through before the process ends.
    const std::string wifi = "WiFi-Radio=True\r\nEthernetIP=192.0.2.1\r\nEthernetPort=1\r\n";
    const std::string address = "127.0.0.1:" + std::to_string(bridge.wifi({}));
    EXPECT_EQ(live(scratch, wifi, {"friend", "8", "3", "--wifi", address}), std::pair(""s, 0));
    EXPECT_EQ(bridge.bytes(6), "\0\xF3\x03\0\xF3\x08"s);
    EXPECT_EQ(bridge.faces(), "DDFDDDDF");
    EXPECT_EQ(live(scratch, wifi, {"foe", "--wifi", address}), std::pair(""s, 0));
    EXPECT_EQ(bridge.bytes(9).substr(6), "\0\xF2\xE7"s);
    EXPECT_EQ(bridge.faces(), "OOOOOOOO");
}

TEST(CliLive, RefusesBadTargetsAndAPortThatWillNotOpenBeforeSendingAnything) {
    ScratchDir scratch;
    Served radio(8);
    const std::string device = radio.radio();
    const std::pair<std::string, std::string> cases[] = {
        {"0", "target 0: target numbers run from 1 to 200\n"},
        {"201", "target 201: target numbers run from 1 to 200\n"},
        {"9", "target 9: the range has 8 targets\n"},
    };
    for (const auto& [target, message] : cases)
        EXPECT_EQ(live(scratch, kSerialRadio, {"friend", "2", target, "--device", device}),
                  std::pair(message, 2));
    const auto none = (scratch.path() / "none").string();
    EXPECT_EQ(live(scratch, kSerialRadio, {"friend", "--device", none}),
              std::pair("Halvane: Comm Port 1 in use or invalid\n"s, 1));
    EXPECT_EQ(radio.bytes(), "");
}

}  // namespace
}  // namespace halvane::e2e
#endif
