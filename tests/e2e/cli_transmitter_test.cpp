// halvane-cli send and download over a real pseudo-terminal: a Program sent and downloaded again, how
// the port is opened, a line that goes away midway, and a Program too long to announce.

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <future>
#include <thread>

#include "../core/fake_links.h"
#include "cli/commands.h"
#include "e2e_support.h"
#include "sim/devices.h"
#include "sim/server/sim_server.h"
#include "sim/transmitter.h"

namespace halvane::e2e {
namespace {

// A Program file of `targets` targets, each changing every second for `seconds` seconds.
std::string everySecond(const std::filesystem::path& folder, int targets, int seconds) {
    const auto path = folder / "every-second.hvn";
    std::ofstream out(path, std::ios::binary);
    out << "\"Target\"," << targets << "\r\n\"Groups\",\"0\"\r\n\"Seconds\"," << seconds << "\r\n";
    for (int row = 0; row <= seconds; ++row)
        for (int col = 0; col < targets; ++col) out << ((row + col) % 2 ? "\"Friend\"" : "\"Foe\"") << "\r\n";
    return path.string();
}

// The simulated transmitter on a paced pty, served on a thread of its own. `stopAfter` replies, the
// simulator stops and goes away, as one that is killed or unplugged.
class Transmitter {
  public:
    explicit Transmitter(int stopAfter = 0, std::string place3 = {}) : m_stopAfter(stopAfter) {
        auto device = sim::makeTransmitter(m_range, {});
        if (!place3.empty()) sim::asTransmitter(*device).setPlace(3, std::move(place3));
        m_path = m_server->addPty("transmitter", std::move(device));
        m_server->setLog([this, stopAfter](const sim::LogEntry& entry) {
            if (entry.kind == sim::LogEntry::Kind::ToDevice) ++toDevice;
            if (entry.kind == sim::LogEntry::Kind::ToConsole && ++m_replies == stopAfter) m_server->stop();
        });
        m_serving = std::thread([this] { m_server->run(); });
    }
    ~Transmitter() { goAway(); }
    // Waits for the simulator to stop of itself (ten seconds at most), then closes its side of the line.
    void goAway() {
        for (const auto end = std::chrono::steady_clock::now() + 10s;
             m_replies < m_stopAfter && std::chrono::steady_clock::now() < end;)
            std::this_thread::sleep_for(1ms);
        if (m_server) m_server->stop();
        if (m_serving.joinable()) m_serving.join();
        m_server.reset();
    }
    const std::string& path() const { return m_path; }
    std::atomic<int> toDevice{0};

  private:
    sim::Range m_range{4};
    std::unique_ptr<sim::SimServer> m_server = std::make_unique<sim::SimServer>();
    std::string m_path;
    int m_stopAfter;
    std::atomic<int> m_replies{0};
    std::thread m_serving;
};

cli::TransmitterOptions at(const std::string& device) {
    cli::TransmitterOptions options;
    options.place = 3;
    options.device = device;
    options.overwrite = true;
    return options;
}

// Sent to place 3 at 9600 baud and downloaded again: the grid that comes back is the one the download
// rules make of the image (each action held down its column, the Pause one row lower and two rows added).
TEST(CliTransmitter, SendToPlaceThreeThenDownloadItBack) {
    Transmitter transmitter;
    auto options = at(transmitter.path());
    SharedState sendState;
    EXPECT_EQ(
        cli::sendCommand(std::string(HALVANE_TEST_DATA) + "/image/worked_example.hvn", options, sendState),
        0);

    SharedState downloadState;  // no targets configured: the first block adds the columns it names
    ScratchDir scratch;
    options.output = scratch.file("round-trip.hvn");
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(cli::downloadCommand(options, downloadState), 0);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              testing::readBytes(std::string(HALVANE_TEST_DATA) + "/image/worked_example.downloaded.grid"));
    // Saving writes the configured columns only, none here: the header and no cell.
    EXPECT_EQ(testing::readBytes(options.output), "\"Target\",0\r\n\"Groups\",\"0\"\r\n\"Seconds\",6\r\n");
}

// Measured: a line killed midway ended in "sent successful" (exit 0), and a download in a Program cut
// short, without a word.
TEST(CliTransmitter, ALineThatGoesAwayEndsSendAndDownloadAtOnceWithAFailure) {
    ScratchDir scratch;
    const std::string program = everySecond(scratch.path(), 4, 200);  // 8 blocks
    for (const bool download : {false, true}) {
        SCOPED_TRACE(download ? "download" : "send");
        Transmitter transmitter(3, download ? std::string(1200, '\x01') : std::string());
        SharedState state;
        ::testing::internal::CaptureStderr();
        ::testing::internal::CaptureStdout();
        auto result = std::async(std::launch::async, [&] {
            return download ? cli::downloadCommand(at(transmitter.path()), state)
                            : cli::sendCommand(program, at(transmitter.path()), state);
        });
        transmitter.goAway();
        const auto gone = std::chrono::steady_clock::now();
        result.wait();
        const auto took = std::chrono::steady_clock::now() - gone;
        const int status = result.get();
        const std::string out = ::testing::internal::GetCapturedStdout();
        const std::string err = ::testing::internal::GetCapturedStderr();
        EXPECT_EQ(status, 1);
        EXPECT_LT(took, 500ms) << "at once, not after the time-outs of the blocks to come";
        EXPECT_NE(err.find("The line to " + transmitter.path() + " was lost: "), std::string::npos) << err;
        EXPECT_NE(err.find("Communications Failed. Make sure LMC is connected and is in PC Comm Mode."),
                  std::string::npos)
            << err;
        EXPECT_EQ(err.find("sent successful"), std::string::npos) << err;
        EXPECT_EQ(out, "");
    }
}

TEST(CliTransmitter, AProgramTooLongToAnnounceSendsNothing) {
    ScratchDir scratch;
    // 200 targets changing every second for 165 s: 33,164 records, more than 255 blocks hold.
    const std::string program = everySecond(scratch.path(), 200, 165);
    Transmitter transmitter;
    SharedState state;
    ::testing::internal::CaptureStderr();
    const int status = cli::sendCommand(program, at(transmitter.path()), state);
    const std::string err = ::testing::internal::GetCapturedStderr();
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(err.rfind("The Program is too long to send: its image has 33164 records (66328 values), which "
                        "need 260 blocks",
                        0),
              0u)
        << err;
    EXPECT_EQ(transmitter.toDevice, 0);
}

// As the console opens the shared port: RTS and DTR off, then still for 0.1 s before the first byte.
TEST(CliTransmitter, OpensItsPortAsTheConsoleDoes) {
    testing::FakeSerialPort port;
    port.present = {"/dev/ttyUSB0"};
    EXPECT_TRUE(cli::openLikeTheConsole(port, "/dev/ttyUSB0", [&](std::chrono::milliseconds still) {
        port.calls.push_back("still " + std::to_string(still.count()) + " ms");
    }));
    EXPECT_EQ(port.calls,
              (std::vector<std::string>{"open /dev/ttyUSB0", "RTS off", "DTR off", "still 100 ms"}));
    EXPECT_EQ(port.written, "");

    // On a real line: the master of a pty sees the hang-up end when the command opens the slave.
    const Pty pty;
    const std::string& slave = pty.slave;
    const int master = pty.master.get();
    ASSERT_FALSE(slave.empty());
    ::close(::open(slave.c_str(), O_RDWR | O_NOCTTY));  // a first open and close: the master hangs up
    ScratchDir scratch;
    const std::string program = everySecond(scratch.path(), 1, 1);
    SharedState state;
    ::testing::internal::CaptureStderr();
    auto result = std::async(std::launch::async, [&] { return cli::sendCommand(program, at(slave), state); });
    // The last moment the slave was seen closed comes before the open: the time measured is no shorter.
    // The moment is taken before the poll that still sees the hang-up, never after it.
    const auto giveUp = std::chrono::steady_clock::now() + 10s;
    auto opened = std::chrono::steady_clock::now();
    for (auto before = opened; before < giveUp; ::usleep(200)) {
        before = std::chrono::steady_clock::now();
        pollfd p{master, POLLIN, 0};
        if (::poll(&p, 1, 0) < 0 || !(p.revents & POLLHUP)) break;
        opened = before;
    }
    EXPECT_EQ(readFor(master, 5), "S03\r\n");
    const auto still = std::chrono::steady_clock::now() - opened;
    result.wait();
    ::testing::internal::GetCapturedStderr();
    EXPECT_GE(still, 100ms);
}

}  // namespace
}  // namespace halvane::e2e
