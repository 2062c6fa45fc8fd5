#pragma once
// The far end of a pseudo-terminal that the console opens, for the end-to-end tests and the Qt ones.

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <string>

#include "sim/server/unique_fd.h"

namespace halvane::e2e {

using namespace std::chrono_literals;
using sim::UniqueFd;

// Reads until `count` bytes have come, the far end closes, or `timeout` passes; with `oneRead`, takes
// what the first read brings.
inline std::string readFor(int fd, std::size_t count, std::chrono::milliseconds timeout = 3000ms,
                           bool oneRead = false) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    std::string bytes;
    while (bytes.size() < count) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd pfd{fd, POLLIN, 0};
        if (left.count() <= 0 || ::poll(&pfd, 1, static_cast<int>(left.count())) <= 0) break;
        char buffer[4096];
        const auto n = ::read(fd, buffer, std::min(sizeof buffer, count - bytes.size()));
        if (n <= 0) break;
        bytes.append(buffer, static_cast<std::size_t>(n));
        if (oneRead) break;
    }
    return bytes;
}

// A new pty: the test holds the master, the console opens `slave`.
struct Pty {
    UniqueFd master{::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)};
    std::string slave;

    Pty() {
        if (master && ::grantpt(master.get()) == 0 && ::unlockpt(master.get()) == 0)
            slave = ::ptsname(master.get());
    }
    std::string read(std::size_t count) const { return readFor(master.get(), count, 2000ms); }
    void write(const std::string& bytes) const {
        [[maybe_unused]] const auto n = ::write(master.get(), bytes.data(), bytes.size());
    }
    // As a device that is unplugged.
    void hangUp() { master.reset(); }
};

}  // namespace halvane::e2e
