// The server over real pseudo-terminals and a real loopback socket, against small stand-in devices.
#include <gtest/gtest.h>

#include <ctime>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

#include "../sim/sim_support.h"
#include "e2e_support.h"
#include "sim/server/sim_server.h"

namespace halvane::e2e {
namespace {

using sim::Clock;
using sim::LogEntry;
using sim::SimServer;
using sim::TimePoint;
using sim::testing::ScriptedDevice;

// The frame log as the server thread writes it, read from the test's thread: for each kind, every
// entry's device and bytes end to end, a note followed by a new line.
class LogRecorder {
  public:
    SimServer::LogSink sink() {
        return [this](const LogEntry& entry) {
            const bool note = entry.kind == LogEntry::Kind::Note;
            std::lock_guard lock(m_mutex);
            m_joined[entry.kind] += entry.device + (note ? " " : "") + entry.bytes + (note ? "\n" : "");
        };
    }
    std::string all(LogEntry::Kind kind) const {
        std::lock_guard lock(m_mutex);
        return m_joined.contains(kind) ? m_joined.at(kind) : "";
    }
    bool waitFor(LogEntry::Kind kind, const std::string& joined) const {
        for (const auto end = Clock::now() + 3s; Clock::now() < end; std::this_thread::sleep_for(1ms))
            if (all(kind) == joined) return true;
        return false;
    }

  private:
    mutable std::mutex m_mutex;
    std::map<LogEntry::Kind, std::string> m_joined;
};

// run() on a thread of its own for one test, stopped and joined however the test ends.
class Running {
  public:
    explicit Running(SimServer& server) : m_server(server), m_thread([&server] { server.run(); }) {}
    ~Running() {
        m_server.stop();
        m_thread.join();
    }

  private:
    SimServer& m_server;
    std::thread m_thread;
};

// The device speaks first, before any console has the line open and has made it raw: that is when the
// tty layer would otherwise mangle control bytes and echo them back to the device. Then consoles come
// and go, and the device keeps answering.
TEST(SimServer, EveryByteValueCrossesThePtyUnchangedBothWaysAndItOutlivesItsConsoles) {
    std::string all;
    for (int value = 0; value < 256; ++value) all += static_cast<char>(value);
    SimServer server({.pace = false, .linkDir = {}});  // the hello is all there before a console opens
    const auto slave = server.addPty("echo", std::make_unique<ScriptedDevice>(all));
    EXPECT_EQ(server.ptyPath("echo"), slave);
    LogRecorder log;
    server.setLog(log.sink());
    Running running(server);
    ASSERT_TRUE(log.waitFor(LogEntry::Kind::ToConsole, "scripted" + all));
    std::this_thread::sleep_for(20ms);  // for any echo from the tty to reach the device

    auto line = openLine(slave);
    ASSERT_TRUE(line);
    EXPECT_EQ(readFor(line.get(), all.size()), all);
    writeAll(line.get(), all);
    EXPECT_EQ(readFor(line.get(), all.size()), all);
    EXPECT_EQ(log.all(LogEntry::Kind::ToDevice), "scripted" + all);
    for (const std::string ping : {"second", "third"}) {
        line.reset();
        // With the console gone the server sleeps, rather than spin on the hung-up line.
        const auto cpuBefore = std::clock();
        std::this_thread::sleep_for(100ms);
        EXPECT_LT(std::clock() - cpuBefore, CLOCKS_PER_SEC / 50) << ping;
        line = openLine(slave);
        writeAll(line.get(), ping);
        EXPECT_EQ(readFor(line.get(), ping.size()), ping);
    }
}

TEST(SimServer, EachTcpConnectionGetsItsOwnDeviceWithItsHelloAloneThenRepliesUntilItHangsUp) {
    SimServer server;
    LogRecorder log;
    server.setLog(log.sink());
    const auto port =
        server.listenTcp([] { return std::make_unique<ScriptedDevice>(std::string("*KRV_CONN*")); });
    EXPECT_EQ(server.tcpPort(), port);
    Running running(server);

    const auto first = connectLoopback(port);
    const auto second = connectLoopback(port);
    ASSERT_TRUE(first && second);
    EXPECT_EQ(readFor(first.get(), 64, 3000ms, true), "*KRV_CONN*");
    EXPECT_EQ(readFor(second.get(), 64, 3000ms, true), "*KRV_CONN*");
    const std::string frame("\0\xF3\x01", 3);
    writeAll(first.get(), frame);
    EXPECT_EQ(readFor(first.get(), frame.size()), frame);

    writeAll(first.get(), "Q");
    EXPECT_EQ(readFor(first.get(), 1), "") << "the device asked to hang up";
    writeAll(second.get(), frame);
    EXPECT_EQ(readFor(second.get(), frame.size()), frame);
    EXPECT_EQ(log.all(LogEntry::Kind::Note),
              "scripted#1 connected\nscripted#2 connected\nscripted#1 closed by the device\n");
}

// 192 bytes over a 9600-baud line take 200 ms, each way, one by one and not in a lump at the end;
// unpaced they take next to nothing.
TEST(SimServer, PacingGivesEachDirectionRealLineTime) {
    const auto byteTime = std::chrono::duration<double, std::milli>(10.0 / 9.6);
    constexpr std::size_t kBytes = 192;
    const auto burst = [](std::string_view) { return std::string(kBytes, '\x55'); };
    const auto afterAll = [received = std::size_t{0}](std::string_view bytes) mutable {
        received += bytes.size();
        return received == kBytes ? std::string("!") : std::string();
    };
    const std::tuple<bool, ScriptedDevice::Answer, std::string, std::size_t> cases[] = {
        {true, burst, "?", kBytes},
        {true, afterAll, std::string(kBytes, '\xAA'), 1},
        {false, burst, "?", kBytes}};
    for (const auto& [pace, answer, send, expect] : cases) {
        SCOPED_TRACE(::testing::Message() << "paced " << pace << ", " << expect << " bytes back");
        SimServer server({.pace = pace, .linkDir = {}});
        const auto slave = server.addPty("paced", std::make_unique<ScriptedDevice>("", answer));
        Running running(server);
        const auto line = openLine(slave);
        const auto sent = Clock::now();
        writeAll(line.get(), send);
        const auto first = readFor(line.get(), 1);
        const auto firstAt = Clock::now() - sent;
        EXPECT_EQ(first.size() + readFor(line.get(), expect - 1).size(), expect);
        const auto took = Clock::now() - sent;
        if (!pace) {
            EXPECT_LT(took, kBytes * byteTime / 2);
            continue;
        }
        EXPECT_GE(took, (kBytes + 1) * byteTime);
        EXPECT_LT(took, (kBytes + 1) * byteTime + 500ms);
        EXPECT_TRUE(expect == 1 || firstAt < 100ms) << "bytes leave one by one, not in a lump at the end";
    }
}

// Whatever run() waits for, stop() ends it promptly, also when it comes first.
TEST(SimServer, StopEndsRunPromptlyWhateverItWaitsFor) {
    SimServer stoppedFirst;
    stoppedFirst.stop();
    stoppedFirst.run();  // returns at once, or the test hangs
    SimServer server;
    server.addPty("idle", std::make_unique<ScriptedDevice>());
    server.listenTcp([] { return std::make_unique<ScriptedDevice>(); });
    std::thread thread([&server] { server.run(); });
    std::this_thread::sleep_for(50ms);
    const auto stopping = Clock::now();
    server.stop();
    thread.join();
    EXPECT_LT(Clock::now() - stopping, 500ms);
}

}  // namespace
}  // namespace halvane::e2e
