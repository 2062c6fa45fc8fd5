// halvane-cli radio against the simulated radio modem and targets on a pseudo-terminal: a target's
// channel set through the modem, the modem moved to it, and both read back; the refusals and a port
// that does not open.
#ifdef HALVANE_CLI_BINARY
#include <gtest/gtest.h>

#include <fstream>

#include "e2e_support.h"
#include "served_range.h"

namespace halvane::e2e {
namespace {

using namespace std::string_literals;

// What the command wrote on stdout and stderr, and its exit status.
std::pair<std::string, int> radio(const ScratchDir& scratch, std::vector<std::string> args) {
    const auto config = scratch.path() / "hvn.cfg";
    std::ofstream(config) << "[Settings]\r\nUSB-Radio=True\r\nComPort= 2\r\n";
    args.insert(args.begin(), {"--config", config.string(), "radio"});
    ChildProcess cli(HALVANE_CLI_BINARY, args);
    std::string output = readFor(cli.output(), 1 << 12, 6000ms);
    return {output, cli.exitStatus()};
}

TEST(CliRadio, ATargetAndTheModemMovedToOneChannelReadItBack) {
    ScratchDir scratch;
    Served range;
    const std::string device = range.radio();
    // The modem starts on channel 0 with the targets, so target 1 hears its new channel.
    for (const auto& args : std::vector<std::vector<std::string>>{{"set", "3", "--target", "10001"},
                                                                  {"set", "3", "--usb"},
                                                                  {"read", "--usb"},
                                                                  {"read", "--target", "10001"}}) {
        auto withPort = args;
        withPort.insert(withPort.end(), {"--port", "4", "--device", device});
        EXPECT_EQ(radio(scratch, withPort), std::pair("Channel=3\n"s, 0)) << args[0] << ' ' << args.back();
    }
    EXPECT_EQ(range.channels(), (std::vector<int>{3, 0}));
    const std::string sent =
        "\xF6\x01\x00\x01\x13\x03+++ATHP3\rATWR\rATCN\r+++ATHP\rATCN\r\xF6\x01\x00\x01\x13\xED"s;
    EXPECT_EQ(range.bytes(sent.size()), sent);
}

TEST(CliRadio, TheButtonsRefusalsAndAPortThatDoesNotOpenSendNothing) {
    ScratchDir scratch;
    Served range;
    const std::string device = range.radio();
    EXPECT_EQ(radio(scratch, {"set", "3", "--target", "1874", "--device", device}),
              std::pair("Halvane: Only works on SN 1875 and higher\n"s, 2));
    EXPECT_EQ(radio(scratch, {"read", "--target", "18a", "--device", device}).second, 2);
    EXPECT_EQ(radio(scratch, {"read", "--usb", "--target", "1", "--device", device}).second, 2);
    EXPECT_EQ(radio(scratch, {"read", "--usb", "--device", (scratch.path() / "none").string()}),
              std::pair("Halvane: Comm Port 1 in use or invalid\n"s, 1));
    EXPECT_EQ(range.bytes(), "");
}

}  // namespace
}  // namespace halvane::e2e
#endif
