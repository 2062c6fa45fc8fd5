// halvane-cli target read and write against simulated targets on the serial radio (a pseudo-terminal)
// and the Wi-Fi device (loopback TCP): what a write leaves in a target as a read shows it, a lookup,
// and each way a command ends without a clean read or write.
#ifdef HALVANE_CLI_BINARY
#include <gtest/gtest.h>

#include <fstream>

#include "e2e_support.h"
#include "served_range.h"

namespace halvane::e2e {
namespace {

using namespace std::string_literals;
constexpr const char* kSerialRadio = "USB-Radio=True\r\nComPort= 1\r\n";

// What the command wrote on stdout and stderr, and its exit status.
std::pair<std::string, int> target(const ScratchDir& scratch, const std::string& settings,
                                   std::vector<std::string> args, std::chrono::milliseconds within = 8000ms) {
    const auto config = scratch.path() / "hvn.cfg";
    std::ofstream(config) << "[Settings]\r\nTargets=2\r\n" << settings;
    args.insert(args.begin(), {"--config", config.string(), "target"});
    ChildProcess cli(HALVANE_CLI_BINARY, args);
    std::string output = readFor(cli.output(), 1 << 16, within);
    return {output, cli.exitStatus()};
}

// A read's lines, from the fourteen values in the order of the read and the serial number.
std::string printed(const std::vector<std::string>& values, const std::string& serial) {
    static const char* const names[] = {"Hit Sense",       "Hit Mode",      "Hit Count",    "Hit Position",
                                        "Die Face",        "Target Number", "Target Speed", "Group A",
                                        "Group B",         "Group C",       "Group D",      "Data Port",
                                        "Battery Voltage", "Target Version"};
    std::string out;
    for (std::size_t i = 0; i < values.size(); ++i) out += std::string(names[i]) + "=" + values[i] + "\n";
    return out + "SN=" + serial + "\n";
}

TEST(CliTarget, WhatAWriteLeavesReadsBackByEachLinksRulesOnTheRadioAndOverWifi) {
    ScratchDir scratch;
    Served radio, bridge;
    const std::vector<std::string> boxes = {"Hit Sense=12",         "Hit Mode=Bob", "Hit Count=3",
                                            "Hit Position=Reverse", "Die Face=Foe", "Target Number=16",
                                            "Target Speed=Low",     "Group B=7",    "Data Port=Both"};
    const struct {
        std::string settings;
        std::vector<std::string> carrier;
        const char* sense;
        const char* number;
    } links[] = {
        {kSerialRadio, {"--device", radio.radio()}, "12", "16"},
        {"WiFi-Radio=True\r\nEthernetIP=192.0.2.1\r\n",
         {"--wifi", "127.0.0.1:" + std::to_string(bridge.wifi({}))},
         "18",
         "10"},
    };
    for (const auto& link : links) {
        auto args = link.carrier;
        args.insert(args.begin(), {"write", "--serial", "10001"});
        args.insert(args.end(), boxes.begin(), boxes.end());
        EXPECT_EQ(target(scratch, link.settings, args), std::pair(""s, 0)) << link.sense;
        args = link.carrier;
        args.insert(args.begin(), {"read", "--serial", "010001"});
        EXPECT_EQ(target(scratch, link.settings, args),
                  std::pair(printed({link.sense, "Bob", "3", "Reverse", "Foe", link.number, "Low", "0", "7",
                                     "0", "0", "Both", "12.5", "1.2"},
                                    "010001"),
                            0));
    }
    EXPECT_EQ(radio.bytes(6).substr(0, 6), "\xF6\x01\x00\x01\x01\x0C"s);
    EXPECT_EQ(bridge.bytes(7).substr(0, 7), "\0\xF6\x01\x00\x01\x01\x12"s);

    // Target 2 answers to its number; nobody answers to 9.
    const std::string device = links[0].carrier[1];
    EXPECT_EQ(
        target(scratch, kSerialRadio, {"read", "--number", "2", "--device", device}).first,
        printed({"10", "Die", "1", "Normal", "Down", "2", "High", "0", "0", "0", "0", "None", "12.5", "1.2"},
                "010002"));
    EXPECT_EQ(target(scratch, kSerialRadio, {"read", "--number", "9", "--device", device}),
              std::pair("Halvane: Target Number 9 Not Found\n"s, 1));
}

TEST(CliTarget, RefusesOrStopsWhereTheWindowWouldSendNothingMore) {
    ScratchDir scratch;
    Served radio;
    const std::string device = radio.radio();
    EXPECT_EQ(target(scratch, kSerialRadio, {"read", "--serial", "1234567", "--device", device}),
              std::pair("serial number 1234567: the window takes one to six digits; nothing was sent\n"s, 2));
    for (const std::vector<std::string>& usage : {std::vector<std::string>{"read", "--device", device},
                                                  {"write", "--serial", "5", "Battery Voltage=9"},
                                                  {"write", "--number", "5"},
                                                  {"erase", "--serial", "5"}})
        EXPECT_EQ(target(scratch, kSerialRadio, usage).second, 2) << usage[0];
    const auto none = (scratch.path() / "none").string();
    EXPECT_EQ(target(scratch, kSerialRadio, {"read", "--serial", "5", "--device", none}),
              std::pair("Halvane: Comm Port 1 in use or invalid\n"s, 1));
    EXPECT_EQ(radio.bytes(), "");

    // The five settings before Target Number go out, then the write stops.
    EXPECT_EQ(target(scratch, kSerialRadio,
                     {"write", "--serial", "10001", "--device", device, "Target Number=300", "Hit Mode=Die"}),
              std::pair("Halvane: Target Number \"300\" cannot be written to the target: it is not a number "
                        "from 0 to 255. The settings before it were sent; nothing after it was.\n"s,
                        1));
    EXPECT_EQ(radio.bytes(28),
              "\xF6\x01\x00\x01\x01\x00\xF6\x01\x00\x01\x02\x02\xF6\x01\x00\x01\x03\x00"
              "\xF6\x01\x00\x01\x04\xF6\x01\x00\x01\x05"s);
}

TEST(CliTarget, ASilentTargetReadsAsZerosWithAWarningAfterFourteenAndAHalfSeconds) {
    ScratchDir scratch;
    Served radio;
    sim::Faults silent;
    silent.silent = true;
    const auto started = std::chrono::steady_clock::now();
    EXPECT_EQ(target(scratch, kSerialRadio, {"read", "--serial", "10001", "--device", radio.radio(silent)},
                     20000ms),
              std::pair(printed({"0", "", "0", "", "", "0", "", "0", "0", "0", "0", "", "0", "0"}, "010001") +
                            "warning: no reply from the target\n",
                        3));
    EXPECT_GE(std::chrono::steady_clock::now() - started, 14500ms);
}

}  // namespace
}  // namespace halvane::e2e
#endif
