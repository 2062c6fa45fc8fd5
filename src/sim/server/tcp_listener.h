#pragma once
// A TCP server socket on the loopback address, where the console finds the simulated Wi-Fi device.

#include <cstdint>
#include <optional>

#include "sim/server/unique_fd.h"

namespace halvane::sim {

class TcpListener {
  public:
    // Listens on 127.0.0.1:`port`, or on a free port when `port` is 0. Throws std::system_error when
    // the port is taken or the system refuses.
    explicit TcpListener(std::uint16_t port = 0);

    // Non-blocking.
    int fd() const { return m_fd.get(); }
    // The port actually bound.
    std::uint16_t port() const { return m_port; }
    // The next waiting connection, non-blocking and with Nagle off so that each chunk leaves as its
    // own segment; nothing when none is waiting.
    std::optional<UniqueFd> accept();

  private:
    UniqueFd m_fd;
    std::uint16_t m_port = 0;
};

}  // namespace halvane::sim
