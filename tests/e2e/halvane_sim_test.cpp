// The halvane-sim program as a console meets it: the addresses it prints, its links, its Wi-Fi hello,
// and a clean end on SIGTERM. Built only where the program is.
#ifdef HALVANE_SIM_BINARY
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <map>
#include <sstream>

#include "e2e_support.h"

namespace halvane::e2e {
namespace {

// The program started with its output on a pipe; killed if the test leaves it running.
class SimProcess {
  public:
    explicit SimProcess(std::vector<std::string> args) {
        args.insert(args.begin(), HALVANE_SIM_BINARY);
        std::vector<char*> argv;
        for (auto& arg : args) argv.push_back(arg.data());
        argv.push_back(nullptr);
        int pipeFds[2];
        if (::pipe2(pipeFds, O_CLOEXEC) != 0) return;
        m_out.reset(pipeFds[0]);
        if ((m_pid = ::fork()) == 0) {
            ::dup2(pipeFds[1], STDOUT_FILENO);
            ::dup2(pipeFds[1], STDERR_FILENO);
            ::execv(HALVANE_SIM_BINARY, argv.data());
            ::_exit(127);
        }
        ::close(pipeFds[1]);
    }
    ~SimProcess() {
        if (m_pid > 0) {
            ::kill(m_pid, SIGKILL);
            ::waitpid(m_pid, nullptr, 0);
        }
    }
    // The NAME=VALUE lines printed up to and including the Wi-Fi address.
    std::map<std::string, std::string> addresses() {
        std::string text;
        while (text.find("wifi=") == std::string::npos || text.back() != '\n') {
            const auto more = readFor(m_out.get(), 1);
            if (more.empty()) break;
            text += more;
        }
        std::map<std::string, std::string> lines;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);)
            lines[line.substr(0, line.find('='))] = line.substr(line.find('=') + 1);
        return lines;
    }
    // The exit status, after `signal` if one is given, or -1 if the program did not end within two seconds.
    int exitStatus(int signal = 0) {
        if (signal) ::kill(m_pid, signal);
        for (int waited = 0; waited < 200; ++waited, ::poll(nullptr, 0, 10)) {
            int status = 0;
            if (::waitpid(m_pid, &status, WNOHANG) == m_pid) {
                m_pid = -1;
                return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            }
        }
        return -1;
    }

  private:
    pid_t m_pid = -1;
    UniqueFd m_out;
};

TEST(HalvaneSim, PrintsWhereEachDeviceStandsGreetsOnWifiAndEndsCleanlyOnSigterm) {
    ScratchDir scratch;
    SimProcess sim({"--link", scratch.path().string(), "--quiet", "--targets", "4", "--serial", "2=123456"});
    auto addresses = sim.addresses();
    for (const char* name : {"transmitter", "radio", "line"}) {
        EXPECT_EQ(addresses[name].rfind("/dev/pts/", 0), 0u) << name;
        EXPECT_EQ(std::filesystem::read_symlink(scratch.path() / name), addresses[name]) << name;
    }
    ASSERT_EQ(addresses["wifi"].rfind("127.0.0.1:", 0), 0u);
    const auto client = connectLoopback(static_cast<std::uint16_t>(std::stoi(addresses["wifi"].substr(10))));
    EXPECT_EQ(readFor(client.get(), 64, 3000ms, true), "*KRV_CONN*");

    EXPECT_EQ(sim.exitStatus(SIGTERM), 0);
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(scratch.path() / "radio")));
}

// Real line time unless told otherwise: the probe up to its CR (2 bytes) and the 10 bytes of the answer
// take 12.5 ms at 9600 baud.
TEST(HalvaneSim, PacesItsLinesUnlessToldNotTo) {
    for (const bool paced : {true, false}) {
        SimProcess sim(paced ? std::vector<std::string>{"--quiet", "--device", "transmitter"}
                             : std::vector<std::string>{"--quiet", "--device", "transmitter", "--no-pace"});
        auto line = openLine(sim.addresses()["transmitter"]);
        ASSERT_TRUE(line);
        const auto start = std::chrono::steady_clock::now();
        writeAll(line.get(), "?\r\n");
        EXPECT_EQ(readFor(line.get(), 10), "VER 3.12\r\n") << paced;
        if (paced) {
            EXPECT_GE(std::chrono::steady_clock::now() - start, 12ms);
        }
        EXPECT_EQ(sim.exitStatus(SIGTERM), 0);
    }
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
