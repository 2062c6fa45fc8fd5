// halvane-cli run on the Wi-Fi link: the simulated Wi-Fi device on loopback TCP gets one frame per face
// change in real time, a device that hangs up is reconnected, and with nothing listening the run goes on.
#ifdef HALVANE_CLI_BINARY
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <mutex>
#include <thread>

#include "e2e_support.h"
#include "sim/devices.h"
#include "sim/server/sim_server.h"

namespace halvane::e2e {
namespace {

// The simulated Wi-Fi device on a loopback port, with every chunk the console sent it.
class Bridge {
  public:
    explicit Bridge(sim::Faults faults) {
        m_port = m_server.listenTcp([this, faults] { return sim::makeWifiBridge(m_range, faults); });
        m_server.setLog([this](const sim::LogEntry& entry) {
            if (entry.kind != sim::LogEntry::Kind::ToDevice) return;
            std::lock_guard lock(m_mutex);
            m_chunks.push_back(entry);
        });
        m_serving = std::thread([this] { m_server.run(); });
    }
    ~Bridge() {
        m_server.stop();
        m_serving.join();
    }
    std::uint16_t port() const { return m_port; }
    std::vector<sim::LogEntry> chunks() {
        std::lock_guard lock(m_mutex);
        return m_chunks;
    }

  private:
    sim::Range m_range{2};
    sim::SimServer m_server;
    std::uint16_t m_port = 0;
    std::mutex m_mutex;
    std::vector<sim::LogEntry> m_chunks;
    std::thread m_serving;
};

// Two targets on the Wi-Fi link alone, and a Program of rows of two cells (the last second empty).
std::vector<std::string> setUp(const ScratchDir& scratch, const std::string& settings,
                               const std::vector<std::string>& rows) {
    const auto config = scratch.path() / "hvn.cfg";
    std::ofstream(config) << "[Settings]\r\nTargets=2\r\nCols=2\r\nStart Location=Top\r\nIcon=Small\r\n"
                             "WiFi-Radio=True\r\n"
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

TEST(CliRunWifi, SendsEachFaceChangeOnTheSecondAndReconnectsAfterTheDeviceHangsUp) {
    ScratchDir scratch;
    Bridge bridge(sim::Faults{.dropAfterFrames = 2});
    auto args = setUp(scratch, "EthernetIP=192.0.2.1\r\nEthernetPort=1\r\n",
                      {"Friend Foe", "Friend Edge", "Down Edge"});
    args.insert(args.end(), {"--wifi", "127.0.0.1:" + std::to_string(bridge.port())});
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
    const auto args = setUp(scratch, "EthernetIP=127.0.0.1\r\nEthernetPort=" + std::to_string(port) + "\r\n",
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
