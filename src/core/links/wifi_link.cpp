#include "links/wifi_link.h"

#include "authoring/about_box.h"
#include "authoring/operator.h"
#include "text/conversions.h"

namespace halvane {

WifiLink::WifiLink(TcpSocket& socket, Operator& op) : m_socket(socket), m_operator(op) {}

void WifiLink::EthernetConnect(TimePoint now, std::function<void()> done) {
    if (done) m_whenConnected.push_back(std::move(done));
    if (m_connectDeadline) return;  // a wait is under way; this caller joins it
    if (m_socket.state() == TcpSocket::Connected) {
        finishConnect(now);
        return;
    }
    m_connectFault = false;
    // A port text that is no port number is a fault; the connect is still tried with the old port.
    const auto number = text::strictNumber(ServerPort);
    const auto port = number ? text::toInt32(*number) : std::nullopt;
    if (port && *port >= 0 && *port <= 65535)
        m_remotePort = static_cast<std::uint16_t>(*port);
    else
        m_connectFault = true;
    if (ServerIP.empty()) m_connectFault = true;
    m_sawConnecting = false;
    m_connectDeadline = now + kConnectBudget;
    m_heardSinceConnect = false;
    if (!ServerIP.empty()) m_socket.connectTo(ServerIP, m_remotePort);
    poll(now);
}

void WifiLink::EthernetDisconnect() {
    m_socket.close();
}

void WifiLink::EthernetCommand(std::string_view frame, TimePoint now) {
    if (m_helloDeadline) {
        m_waitingFrames.emplace_back(frame);
        return;
    }
    if (m_socket.state() == TcpSocket::Connected && !m_connectDeadline) {
        m_socket.send(frame);
        return;
    }
    m_waitingFrames.emplace_back(frame);
    EthernetConnect(now);
}

void WifiLink::poll(TimePoint now) {
    if (m_helloDeadline && now >= *m_helloDeadline) sendWaitingFrames();
    if (!m_connectDeadline) return;
    const int state = m_socket.state();
    if (state == TcpSocket::Connecting) m_sawConnecting = true;
    // A refused or failed attempt is over at once; a silent one waits out the budget.
    const bool failed = state == TcpSocket::Error || (m_sawConnecting && state == TcpSocket::Closed);
    if (state == TcpSocket::Connected || failed || now >= *m_connectDeadline || ServerIP.empty())
        finishConnect(now);
}

std::optional<TimePoint> WifiLink::nextDeadline() const {
    return m_connectDeadline;
}

void WifiLink::finishConnect(TimePoint now) {
    m_connectDeadline.reset();
    if (m_connectFault) {
        m_connectFault = false;
        m_operator.critical("Ethernet error: Not connected", kAppTitle);
    }
    if (!m_waitingFrames.empty()) {
        if (m_socket.state() != TcpSocket::Connected) {
            m_waitingFrames.clear();
            m_operator.critical("Error: ethernet not connected.  Check settings.", kAppTitle);
        } else if (!m_heardSinceConnect && !m_helloDeadline) {
            m_helloDeadline = now + kHelloWait;  // a fresh connection: its hello comes first
        } else {
            sendWaitingFrames();
        }
    }
    auto callbacks = std::move(m_whenConnected);
    m_whenConnected.clear();
    for (auto& callback : callbacks) callback();
}

void WifiLink::onData(std::string_view chunk) {
    if (m_socket.state() != TcpSocket::Connected) return;
    m_heardSinceConnect = true;
    if (chunk != kHello) m_rxData.append(chunk);
    m_log.append(chunk);
    m_log.append("\r\n");
    if (m_helloDeadline) sendWaitingFrames();
}

void WifiLink::sendWaitingFrames() {
    m_helloDeadline.reset();
    auto frames = std::move(m_waitingFrames);
    m_waitingFrames.clear();
    for (const auto& frame : frames) m_socket.send(frame);
}

void WifiLink::onError(int number, const std::string& description) {
    m_operator.critical("Socket Error " + std::to_string(number) + ": " + description, kAppTitle);
    m_socket.close();
}

}  // namespace halvane
