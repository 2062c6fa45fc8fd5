#pragma once
// What the end-to-end tests share: a console's side of a pty or a socket, and a scratch folder.

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "../core/temp_dir.h"
#include "pty.h"

namespace halvane::e2e {

// The pty opened as the console opens it: raw, 9600 8N1.
inline UniqueFd openLine(const std::filesystem::path& path) {
    UniqueFd fd(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    termios tio{};
    if (fd && ::tcgetattr(fd.get(), &tio) == 0) {
        ::cfmakeraw(&tio);
        ::cfsetspeed(&tio, B9600);
        ::tcsetattr(fd.get(), TCSANOW, &tio);
    }
    return fd;
}

inline UniqueFd connectLoopback(std::uint16_t port) {
    UniqueFd fd(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    if (::connect(fd.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) fd.reset();
    return fd;
}

// The few bytes a test sends, which go out in one write.
inline void writeAll(int fd, const std::string& bytes) {
    EXPECT_EQ(::write(fd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
}

using ScratchDir = testing::TempDir;

// A program of the build started with its stdout and stderr on one pipe; killed if the test leaves
// it running.
class ChildProcess {
  public:
    ChildProcess(const std::string& binary, std::vector<std::string> args) {
        args.insert(args.begin(), binary);
        std::vector<char*> argv;
        for (auto& arg : args) argv.push_back(arg.data());
        argv.push_back(nullptr);
        int pipeFds[2];
        if (::pipe2(pipeFds, O_CLOEXEC) != 0) return;
        m_out.reset(pipeFds[0]);
        if ((m_pid = ::fork()) == 0) {
            ::dup2(pipeFds[1], STDOUT_FILENO);
            ::dup2(pipeFds[1], STDERR_FILENO);
            ::execv(binary.c_str(), argv.data());
            ::_exit(127);
        }
        ::close(pipeFds[1]);
    }
    ~ChildProcess() {
        if (m_pid > 0) {
            ::kill(m_pid, SIGKILL);
            ::waitpid(m_pid, nullptr, 0);
        }
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    int output() const { return m_out.get(); }
    // The exit status, after `signal` if one is given, or -1 if the program did not end in `within`.
    int exitStatus(int signal = 0, std::chrono::milliseconds within = 2000ms) {
        if (signal) ::kill(m_pid, signal);
        for (auto waited = 0ms; waited < within; waited += 10ms, ::poll(nullptr, 0, 10)) {
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

#ifdef HALVANE_SIM_BINARY
// halvane-sim started with its output on a pipe.
class SimProcess : public ChildProcess {
  public:
    explicit SimProcess(std::vector<std::string> args) : ChildProcess(HALVANE_SIM_BINARY, std::move(args)) {}
    // The NAME=VALUE lines printed up to and including the Wi-Fi address.
    std::map<std::string, std::string> addresses() {
        std::string text;
        while (text.find("wifi=") == std::string::npos || text.back() != '\n') {
            const auto more = readFor(output(), 1);
            if (more.empty()) break;
            text += more;
        }
        std::map<std::string, std::string> lines;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);)
            lines[line.substr(0, line.find('='))] = line.substr(line.find('=') + 1);
        return lines;
    }
    // What the console sent `device`, from the log the program printed within `within`.
    std::string heardBy(const std::string& device, std::chrono::milliseconds within = 300ms) {
        m_log += readFor(output(), 1 << 16, within);
        std::istringstream in(m_log);
        std::string bytes;
        for (std::string line; std::getline(in, line);) {
            std::istringstream words(line);
            std::string at, name, direction, hex;
            words >> at >> name >> direction;
            if (name != device || direction != "in") continue;
            while (words >> hex) bytes.push_back(static_cast<char>(std::stoi(hex, nullptr, 16)));
        }
        return bytes;
    }

  private:
    std::string m_log;
};
#endif

}  // namespace halvane::e2e
