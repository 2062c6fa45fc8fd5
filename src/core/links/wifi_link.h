#pragma once
// The Wi-Fi link to the targets: a TCP client to a small device that relays frames over the air.
// Connecting waits up to 5.0 s without holding anything up: the link is fed socket events and time,
// and reports every wait it keeps through nextDeadline(), or nothing would wake it.

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "links/tcp_socket.h"
#include "links/timed_read.h"

namespace halvane {

class Operator;

class WifiLink {
  public:
    static constexpr std::chrono::milliseconds kConnectBudget{5000};
    static constexpr std::chrono::milliseconds kHelloWait{200};
    static constexpr std::string_view kHello = "*KRV_CONN*";
    static constexpr const char* kDefaultPort = "31689";

    WifiLink(TcpSocket& socket, Operator& op);

    // The server fields of the Wi-Fi window; they keep the operator's values for the whole run.
    std::string ServerIP;
    std::string ServerPort;

    // Connects unless connected; `done` runs when the wait ends, connected or not.
    void EthernetConnect(TimePoint now, std::function<void()> done = {});
    void EthernetDisconnect();
    // Sends one frame (the leading zero byte included), connecting first when needed. Frames that come
    // while a connection is being made wait for it; if it fails they are dropped with one message.
    void EthernetCommand(std::string_view frame, TimePoint now);

    // Socket events.
    void onData(std::string_view chunk);
    void onError(int number, const std::string& description);
    // The device ended the connection in an orderly way: no fault, the socket just closes.
    void onClosedByPeer();
    // The socket's state changed, or time passed: ends a wait that is over.
    void poll(TimePoint now);
    // The earliest of the link's waits (connect, hello), if it waits.
    std::optional<TimePoint> nextDeadline() const;
    // Called after every call that may have moved nextDeadline(), whoever made it, so that the driver
    // re-arms its timer from it.
    void setDeadlineMoved(std::function<void()> moved) { m_deadlineMoved = std::move(moved); }

    std::string sock_GetData() const { return m_rxData; }
    void sock_ClearData() { m_rxData.clear(); }
    // Everything received, a chunk a line, for the Wi-Fi window's log.
    const std::string& log() const { return m_log; }
    int state() const { return m_socket.state(); }

  private:
    void finishConnect(TimePoint now);
    void sendWaitingFrames();
    void dropWaitingFrames();
    void deadlineMayHaveMoved() const {
        if (m_deadlineMoved) m_deadlineMoved();
    }

    TcpSocket& m_socket;
    Operator& m_operator;
    std::string m_rxData;
    std::string m_log;
    std::optional<TimePoint> m_connectDeadline;
    // After connecting, frames wait for the device's hello (or this deadline) so that it comes alone.
    std::optional<TimePoint> m_helloDeadline;
    bool m_heardSinceConnect = false;
    // What to tell when the connect wait ends; empty when nothing went wrong.
    std::string m_connectFault;
    bool m_sawConnecting = false;
    std::vector<std::string> m_waitingFrames;
    std::vector<std::function<void()>> m_whenConnected;
    std::function<void()> m_deadlineMoved;
};

}  // namespace halvane
