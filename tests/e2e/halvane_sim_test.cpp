// The halvane-sim program as a console meets it: the addresses it prints, its links, its Wi-Fi hello,
// and a clean end on SIGTERM. Built only where the program is.
#ifdef HALVANE_SIM_BINARY
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <map>

#include "e2e_support.h"

namespace halvane::e2e {
namespace {

// The program started with its output on a pipe; killed if the test leaves it running.
class SimProcess {
  public:
    explicit SimProcess(std::vector<std::string> args) {
        int pipeFds[2];
        if (::pipe(pipeFds) != 0) return;
        m_out.reset(pipeFds[0]);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, pipeFds[1], STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, pipeFds[1], STDERR_FILENO);
        posix_spawn_file_actions_addclose(&actions, pipeFds[0]);
        args.insert(args.begin(), HALVANE_SIM_BINARY);
        std::vector<char*> argv;
        for (auto& arg : args) argv.push_back(arg.data());
        argv.push_back(nullptr);
        if (::posix_spawn(&m_pid, HALVANE_SIM_BINARY, &actions, nullptr, argv.data(), environ) != 0)
            m_pid = -1;
        posix_spawn_file_actions_destroy(&actions);
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
        std::map<std::string, std::string> lines;
        std::string text;
        while (text.find("wifi=") == std::string::npos || text.back() != '\n') {
            const auto more = readFor(m_out.get(), 1);
            if (more.empty()) break;
            text += more;
        }
        for (std::size_t start = 0, end; (end = text.find('\n', start)) != std::string::npos;
             start = end + 1) {
            const auto line = text.substr(start, end - start);
            lines[line.substr(0, line.find('='))] = line.substr(line.find('=') + 1);
        }
        return lines;
    }
    // The exit status after SIGTERM, or -1 if the program did not end within two seconds.
    int terminate() {
        ::kill(m_pid, SIGTERM);
        return exitStatus();
    }
    int exitStatus() {
        for (int waited = 0; waited < 200; ++waited) {
            int status = 0;
            if (::waitpid(m_pid, &status, WNOHANG) == m_pid) {
                m_pid = -1;
                return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            }
            ::poll(nullptr, 0, 10);
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
    const auto addresses = sim.addresses();
    for (const char* name : {"transmitter", "radio", "line"}) {
        ASSERT_TRUE(addresses.count(name)) << name;
        EXPECT_EQ(addresses.at(name).rfind("/dev/pts/", 0), 0u) << name;
        EXPECT_EQ(std::filesystem::read_symlink(scratch.path() / name), addresses.at(name)) << name;
    }
    ASSERT_TRUE(addresses.count("wifi"));
    ASSERT_EQ(addresses.at("wifi").rfind("127.0.0.1:", 0), 0u);
    const auto port = std::stoi(addresses.at("wifi").substr(10));
    const auto client = connectLoopback(static_cast<std::uint16_t>(port));
    ASSERT_TRUE(client);
    EXPECT_EQ(readFor(client.get(), 64, 3000ms, true), "*KRV_CONN*");

    EXPECT_EQ(sim.terminate(), 0);
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(scratch.path() / "radio")));
}

TEST(HalvaneSim, RefusesBadOptionsWithItsUsage) {
    const std::vector<std::vector<std::string>> refused = {{"--targets", "0"},
                                                           {"--fault", "radio:loud"},
                                                           {"--serial", "9=1"},
                                                           {"--device", "wifi"},
                                                           {"--tcp-port"}};
    for (const auto& args : refused) {
        SimProcess sim(args);
        EXPECT_EQ(sim.exitStatus(), 2) << args[0];
    }
}

}  // namespace
}  // namespace halvane::e2e
#endif
