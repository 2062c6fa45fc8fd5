// halvane-cli run against the simulated radio on a real pseudo-terminal: the steps in real time, the
// frames on the line, a Pause gone past, and the ways a run ends.
#ifdef HALVANE_CLI_BINARY
#include <gtest/gtest.h>

#include <fstream>
#include <mutex>
#include <thread>

#include "e2e_support.h"
#include "sim/devices.h"
#include "sim/server/sim_server.h"

namespace halvane::e2e {
namespace {

// The simulated radio on an unpaced pty, with every chunk it received and when.
class Radio {
  public:
    Radio() : m_server(sim::SimServer::Options{false, {}}) {
        m_path = m_server.addPty("radio", sim::makeRadioModem(m_range, {}));
        m_server.setLog([this](const sim::LogEntry& entry) {
            if (entry.kind != sim::LogEntry::Kind::ToDevice) return;
            std::lock_guard lock(m_mutex);
            m_chunks.push_back(entry);
        });
        m_serving = std::thread([this] { m_server.run(); });
    }
    ~Radio() {
        m_server.stop();
        m_serving.join();
    }
    const std::string& path() const { return m_path; }
    std::vector<sim::LogEntry> chunks() {
        std::lock_guard lock(m_mutex);
        return m_chunks;
    }

  private:
    sim::Range m_range{2};
    sim::SimServer m_server;
    std::string m_path;
    std::mutex m_mutex;
    std::vector<sim::LogEntry> m_chunks;
    std::thread m_serving;
};

// A configuration for two targets on the serial radio, and a Program of rows of two cells; the row
// after them, the last second, is empty, as a Program file leaves it.
std::vector<std::string> setUp(const ScratchDir& scratch, const std::vector<std::string>& rows) {
    const auto config = scratch.path() / "hvn.cfg";
    std::ofstream(config) << "[Settings]\r\nTargets=2\r\nCols=2\r\nStart Location=Top\r\nIcon=Small\r\n"
                             "USB-Radio=True\r\nComPort= 1\r\n";
    const auto program = scratch.path() / "run.hvn";
    std::ofstream out(program, std::ios::binary);
    out << "\"Target\",2\r\n\"Groups\",\"0\"\r\n\"Seconds\"," << rows.size() << "\r\n";
    for (const auto& row : rows) {
        const auto blank = row.find(' ');
        out << '"' << row.substr(0, blank) << "\"\r\n\"" << row.substr(blank + 1) << "\"\r\n";
    }
    return {"--config", config.string(), "run", program.string()};
}

std::string readAll(ChildProcess& child, std::chrono::milliseconds timeout) {
    return readFor(child.output(), 1 << 16, timeout);
}

TEST(CliRun, PlaysEachSecondOnTheLineGoesOnPastAPauseAndFinishes) {
    ScratchDir scratch;
    Radio radio;
    auto args = setUp(scratch, {"Friend Down", "Pause Foe", "Edge Foe", "Down Down"});
    args.insert(args.end(), {"--device", radio.path(), "--at-pause", "continue"});
    ChildProcess cli(HALVANE_CLI_BINARY, args);
    EXPECT_EQ(readAll(cli, 8000ms), "0\n2\nPaused\n2\n3\n4\nFinished\n");
    EXPECT_EQ(cli.exitStatus(), 0);

    // Frames only where a face changes: seconds 0, 2 (the run goes on one second after the Pause), 3.
    const auto chunks = radio.chunks();
    std::string bytes;
    for (const auto& chunk : chunks) bytes += chunk.bytes;
    EXPECT_EQ(bytes, "\xF3\x01\xF1\x01\xF2\x02\xF0\x01\xF0\x02");
    ASSERT_EQ(chunks.size(), 3u);
    const std::vector<int> seconds = {0, 2, 3};
    for (std::size_t i = 1; i < chunks.size(); ++i) {
        const auto apart = chunks[i].at - chunks[0].at;
        EXPECT_NEAR(static_cast<double>(apart.count()), seconds[i] * 1000.0, 60.0) << "chunk " << i;
    }
}

TEST(CliRun, StopsAtAPauseEndsOnSigtermAndFailsWhenThePortCannotOpen) {
    ScratchDir scratch;
    Radio radio;
    auto args = setUp(scratch, {"Friend Foe", "Pause Pause", "Down Down"});
    ChildProcess paused(HALVANE_CLI_BINARY, [&] {
        auto a = args;
        a.insert(a.end(), {"--device", radio.path()});
        return a;
    }());
    EXPECT_EQ(readAll(paused, 4000ms), "0\n2\nPaused\n");
    EXPECT_EQ(paused.exitStatus(), 0);

    auto longer = setUp(scratch, std::vector<std::string>(30, "Friend Foe"));
    longer.insert(longer.end(), {"--device", radio.path(), "--from", "3"});
    ChildProcess interrupted(HALVANE_CLI_BINARY, longer);
    EXPECT_EQ(readFor(interrupted.output(), 2, 3000ms), "3\n");
    EXPECT_EQ(interrupted.exitStatus(SIGTERM), 130);

    args.insert(args.end(), {"--device", (scratch.path() / "no-such-port").string()});
    ChildProcess refused(HALVANE_CLI_BINARY, args);
    EXPECT_EQ(readAll(refused, 3000ms), "Halvane: Comm Port 1 in use or invalid\n");
    EXPECT_EQ(refused.exitStatus(), 1);
}

}  // namespace
}  // namespace halvane::e2e
#endif
