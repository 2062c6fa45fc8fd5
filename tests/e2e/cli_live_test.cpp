// halvane-cli live against a simulated range of eight targets: the popup command and the all-target
// button on the serial radio (a real pseudo-terminal) and on the Wi-Fi device (loopback TCP), and the
// commands refused before anything is sent.
#ifdef HALVANE_CLI_BINARY
#include <gtest/gtest.h>

#include <fstream>

#include "e2e_support.h"
#include "served_range.h"

namespace halvane::e2e {
namespace {

struct Outcome {
    std::string output;
    int status;
};

Outcome live(const ScratchDir& scratch, const std::string& settings, std::vector<std::string> args) {
    const auto config = scratch.path() / "hvn.cfg";
    std::ofstream(config) << "[Settings]\r\nTargets=8\r\nCols=4\r\nStart Location=Top\r\nIcon=Small\r\n"
                          << settings;
    args.insert(args.begin(), {"--config", config.string(), "live"});
    ChildProcess cli(HALVANE_CLI_BINARY, args);
    std::string output = readFor(cli.output(), 1 << 16, 8000ms);
    return {output, cli.exitStatus()};
}

constexpr const char* kSerialRadio = "USB-Radio=True\r\nComPort= 1\r\n";

TEST(CliLive, TurnsTheNamedTargetsOnceEachThenAllOnTheRadio) {
    ScratchDir scratch;
    Served range(8);
    const std::string device = range.radio();
    const auto marked = live(scratch, kSerialRadio, {"foe", "5", "--device", device, "3", "5"});
    EXPECT_EQ(marked.output, "");
    EXPECT_EQ(marked.status, 0);
    EXPECT_EQ(range.bytes(4), "\xF2\x03\xF2\x05");
    EXPECT_EQ(range.faces(), "DDODODDD");

    // A target already showing the face gets its frame all the same.
    const auto again = live(scratch, kSerialRadio, {"foe", "3", "--device", device});
    EXPECT_EQ(again.status, 0);
    const auto all = live(scratch, kSerialRadio, {"edge", "--device", device});
    EXPECT_EQ(all.status, 0);
    EXPECT_EQ(range.bytes(8), "\xF2\x03\xF2\x05\xF2\x03\xF1\xE7");
    EXPECT_EQ(range.faces(), "EEEEEEEE");
}

TEST(CliLive, RefusesBadTargetsAndAnUnopenablePortBeforeSendingAnything) {
    ScratchDir scratch;
    Served range(8);
    const std::string device = range.radio();
    const struct {
        std::vector<std::string> args;
        std::string message;
        bool usage;
    } cases[] = {
        {{"friend", "2", "0"}, "target 0: target numbers run from 1 to 200\n", false},
        {{"friend", "201"}, "target 201: target numbers run from 1 to 200\n", false},
        {{"friend", "2", "9"}, "target 9: the range has 8 targets\n", false},
        {{"friend", "2", "--port", "17"}, "--port needs a port number from 1 to 16\n", true},
        {{"wave", "2"}, "live needs friend, foe, edge or down\n", true},
    };
    for (const auto& c : cases) {
        auto args = c.args;
        args.insert(args.end(), {"--device", device});
        const auto outcome = live(scratch, kSerialRadio, args);
        EXPECT_EQ(outcome.output.substr(0, c.message.size()), c.message) << c.message;
        EXPECT_EQ(outcome.output.find("usage: halvane-cli") == c.message.size(), c.usage) << c.message;
        EXPECT_EQ(outcome.status, 2) << c.message;
    }
    EXPECT_EQ(range.bytes(), "");
    EXPECT_EQ(range.faces(), "DDDDDDDD");

    const auto refused =
        live(scratch, kSerialRadio, {"friend", "--device", (scratch.path() / "none").string()});
    EXPECT_EQ(refused.output, "Halvane: Comm Port 1 in use or invalid\n");
    EXPECT_EQ(refused.status, 1);
}

TEST(CliLiveWifi, FramesLeaveBeforeTheExit) {
    ScratchDir scratch;
    Served range(8);
    const auto port = range.wifi({});
    const std::string settings = "WiFi-Radio=True\r\nEthernetIP=192.0.2.1\r\nEthernetPort=1\r\n";
    const std::string address = "127.0.0.1:" + std::to_string(port);
    const auto marked = live(scratch, settings, {"friend", "8", "3", "--wifi", address});
    EXPECT_EQ(marked.output, "");
    EXPECT_EQ(marked.status, 0);
    EXPECT_EQ(range.bytes(6).size(), 6u);
    EXPECT_EQ(range.faces(), "DDFDDDDF");
    const auto all = live(scratch, settings, {"foe", "--wifi", address});
    EXPECT_EQ(all.status, 0);
    using namespace std::string_literals;
    EXPECT_EQ(range.bytes(9), "\0\xF3\x03\0\xF3\x08\0\xF2\xE7"s);
    EXPECT_EQ(range.faces(), "OOOOOOOO");
}

}  // namespace
}  // namespace halvane::e2e
#endif
