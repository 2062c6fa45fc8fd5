#pragma once
// Carries the Wi-Fi link's actions out on a socket and the operator, and feeds the link what the socket
// reports: its state, the bytes that came, an error, the device hanging up.

#include <functional>

#include "links/tcp_socket.h"
#include "links/wifi_link.h"

namespace halvane {

class Operator;

class WifiDriver {
  public:
    WifiDriver(
        WifiLink& link, TcpSocket& socket, Operator& op,
        std::function<TimePoint()> clock = [] { return SteadyClock::now(); });
    ~WifiDriver();
    WifiDriver(const WifiDriver&) = delete;
    WifiDriver& operator=(const WifiDriver&) = delete;

  private:
    // Runs from inside the link's entry points, and again from inside itself when an action (a message
    // box, a state the socket reports at once) leads the link to new ones: each call takes what is due.
    void carryOut();
    // Tells the link the socket's state when it differs from what the link knows.
    void sync();

    WifiLink& m_link;
    TcpSocket& m_socket;
    Operator& m_operator;
    std::function<TimePoint()> m_clock;
};

}  // namespace halvane
