// halvane-cli run against the simulated range: the steps in real time, the frames on the serial radio
// (a real pseudo-terminal) and on the Wi-Fi device (loopback TCP), a Pause gone past, a device that
// hangs up, and the ways a run ends.
#ifdef HALVANE_CLI_BINARY
#include <gtest/gtest.h>

#include <fstream>
#include <map>

#include "e2e_support.h"
#include "served_range.h"

namespace halvane::e2e {
namespace {

// A configuration for two targets with `settings`, and a Program of rows of two cells; the row after
// them, the last second, is empty, as a Program file leaves it.
std::vector<std::string> setUp(const ScratchDir& scratch, const std::string& settings,
                               const std::vector<std::string>& rows) {
    const auto config = scratch.path() / "hvn.cfg";
    std::ofstream(config) << "[Settings]\r\nTargets=2\r\nCols=2\r\nStart Location=Top\r\nIcon=Small\r\n"
                          << settings;
    const auto program = scratch.path() / "run.hvn";
    std::ofstream out(program, std::ios::binary);
    out << "\"Target\",2\r\n\"Groups\",\"0\"\r\n\"Seconds\"," << rows.size() << "\r\n";
    for (const auto& row : rows) {
        const auto blank = row.find(' ');
        out << '"' << row.substr(0, blank) << "\"\r\n\"" << row.substr(blank + 1) << "\"\r\n";
    }
    return {"--config", config.string(), "run", program.string()};
}

constexpr const char* kSerialRadio = "USB-Radio=True\r\nComPort= 1\r\n";

std::string readAll(ChildProcess& child, std::chrono::milliseconds timeout) {
    return readFor(child.output(), 1 << 16, timeout);
}

TEST(CliRun, PlaysEachSecondOnTheLineGoesOnPastAPauseAndFinishes) {
    ScratchDir scratch;
    Served radio;
    auto args = setUp(scratch, kSerialRadio, {"Friend Down", "Pause Foe", "Edge Foe", "Down Down"});
    args.insert(args.end(), {"--device", radio.radio(), "--at-pause", "continue"});
    ChildProcess cli(HALVANE_CLI_BINARY, args);
    EXPECT_EQ(readAll(cli, 8000ms), "0\n2\nPaused\n2\n3\n4\nFinished\n");
    EXPECT_EQ(cli.exitStatus(), 0);

    // Frames only where a face changes: seconds 0, 2 (the run goes on one second after the Pause), 3.
    const auto chunks = radio.chunks();
    EXPECT_EQ(radio.bytes(), "\xF3\x01\xF1\x01\xF2\x02\xF0\x01\xF0\x02");
    ASSERT_EQ(chunks.size(), 3u);
    const std::vector<int> seconds = {0, 2, 3};
    for (std::size_t i = 1; i < chunks.size(); ++i) {
        const auto apart = chunks[i].at - chunks[0].at;
        EXPECT_NEAR(static_cast<double>(apart.count()), seconds[i] * 1000.0, 60.0) << "chunk " << i;
    }
}

TEST(CliRun, StopsAtAPauseEndsOnSigtermAndFailsWhenThePortCannotOpen) {
    ScratchDir scratch;
    Served radio;
    const std::string device = radio.radio();
    auto args = setUp(scratch, kSerialRadio, {"Friend Foe", "Pause Pause", "Down Down"});
    ChildProcess paused(HALVANE_CLI_BINARY, [&] {
        auto a = args;
        a.insert(a.end(), {"--device", device});
        return a;
    }());
    EXPECT_EQ(readAll(paused, 4000ms), "0\n2\nPaused\n");
    EXPECT_EQ(paused.exitStatus(), 0);

    auto longer = setUp(scratch, kSerialRadio, std::vector<std::string>(30, "Friend Foe"));
    longer.insert(longer.end(), {"--device", device, "--from", "3"});
    ChildProcess interrupted(HALVANE_CLI_BINARY, longer);
    EXPECT_EQ(readFor(interrupted.output(), 2, 3000ms), "3\n");
    EXPECT_EQ(interrupted.exitStatus(SIGTERM), 130);

    args.insert(args.end(), {"--device", (scratch.path() / "no-such-port").string()});
    ChildProcess refused(HALVANE_CLI_BINARY, args);
    EXPECT_EQ(readAll(refused, 3000ms), "Halvane: Comm Port 1 in use or invalid\n");
    EXPECT_EQ(refused.exitStatus(), 1);
}

TEST(CliRunWifi, SendsEachFaceChangeOnTheSecondAndReconnectsAfterTheDeviceHangsUp) {
    ScratchDir scratch;
    Served bridge;
    const auto port = bridge.wifi(sim::Faults{.dropAfterFrames = 2});
    auto args = setUp(scratch, "WiFi-Radio=True\r\nEthernetIP=192.0.2.1\r\nEthernetPort=1\r\n",
                      {"Friend Foe", "Friend Edge", "Down Edge"});
    args.insert(args.end(), {"--wifi", "127.0.0.1:" + std::to_string(port)});
    ChildProcess cli(HALVANE_CLI_BINARY, args);
    EXPECT_EQ(readFor(cli.output(), 1 << 16, 6000ms), "0\n1\n2\n3\nFinished\n");
    EXPECT_EQ(cli.exitStatus(), 0);

    // The bytes of each second, and the connection they came on: the device hangs up after the two
    // frames of second 0, and second 1 finds the link closed and connects again.
    const auto chunks = bridge.chunks();
    ASSERT_FALSE(chunks.empty());
    std::map<long, std::string> bytesAt;
    std::map<long, std::string> connectionAt;
    for (const auto& chunk : chunks) {
        const auto apart = (chunk.at - chunks[0].at).count();
        const long second = (apart + 500) / 1000;
        EXPECT_NEAR(static_cast<double>(apart), second * 1000.0, 60.0) << chunk.device;
        bytesAt[second] += chunk.bytes;
        connectionAt[second] = chunk.device;
    }
    using namespace std::string_literals;
    const std::map<long, std::string> expected = {
        {0, "\0\xF3\x01\0\xF2\x02"s}, {1, "\0\xF1\x02"s}, {2, "\0\xF0\x01"s}};
    EXPECT_EQ(bytesAt, expected);
    EXPECT_EQ(connectionAt, (std::map<long, std::string>{{0, "wifi#1"}, {1, "wifi#2"}, {2, "wifi#2"}}));
}

TEST(CliRunWifi, WithNothingListeningTellsOncePerSecondOfFramesAndPlaysOn) {
    ScratchDir scratch;
    std::uint16_t port = 0;
    {
        // A port that was free a moment ago: nothing listens there.
        UniqueFd probe(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        ASSERT_EQ(::bind(probe.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        ::getsockname(probe.get(), reinterpret_cast<sockaddr*>(&address), &size);
        port = ntohs(address.sin_port);
    }
    // The configured address, as no --wifi is given; the two frames of second 0 share one attempt.
    const auto args = setUp(
        scratch, "WiFi-Radio=True\r\nEthernetIP=127.0.0.1\r\nEthernetPort=" + std::to_string(port) + "\r\n",
        {"Friend Foe", "Friend Foe"});
    ChildProcess cli(HALVANE_CLI_BINARY, args);
    EXPECT_EQ(readFor(cli.output(), 1 << 16, 5000ms),
              "0\n"
              "Halvane: Socket Error 10061: Connection refused\n"
              "Halvane: Error: ethernet not connected.  Check settings.\n"
              "1\n2\nFinished\n");
    EXPECT_EQ(cli.exitStatus(), 0);
}

}  // namespace
}  // namespace halvane::e2e
#endif
