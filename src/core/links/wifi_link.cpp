#include "links/wifi_link.h"

#include <algorithm>
#include <utility>

#include "authoring/about_box.h"
#include "authoring/operator.h"

namespace halvane {

namespace {
constexpr const char* kNotConnected = "Error: ethernet not connected.  Check settings.";

// A whole number from 1 to 65535, blanks around it allowed.
std::optional<std::uint16_t> serverPort(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return std::nullopt;
    const auto digits = text.substr(first, text.find_last_not_of(' ') + 1 - first);
    long value = 0;
    for (const char c : digits) {
        if (c < '0' || c > '9') return std::nullopt;
        value = value * 10 + (c - '0');
        if (value > 65535) return std::nullopt;
    }
    if (value == 0) return std::nullopt;
    return static_cast<std::uint16_t>(value);
}
}  // namespace

WifiLink::WifiLink(TcpSocket& socket, Operator& op) : m_socket(socket), m_operator(op) {}

void WifiLink::EthernetConnect(TimePoint now, std::function<void()> done) {
    if (done) m_whenConnected.push_back(std::move(done));
    if (m_connectDeadline) return;  // a wait is under way; this caller joins it
    if (m_socket.state() == TcpSocket::Connected) {
        finishConnect(now);
        deadlineMayHaveMoved();
        return;
    }
    m_sawConnecting = false;
    m_heardSinceConnect = false;
    m_connectFault.clear();
    const auto port = serverPort(ServerPort);
    if (!port) {
        // Nothing is tried; the wait ends at the next poll, so that a burst of frames is told once.
        m_connectFault =
            "Server Port \"" + ServerPort + "\" is not valid: use a whole number from 1 to 65535.";
        m_connectDeadline = now;
        deadlineMayHaveMoved();
        return;
    }
    m_connectDeadline = now + kConnectBudget;
    if (ServerIP.empty())
        m_connectFault = "Ethernet error: Not connected";
    else
        m_socket.connectTo(ServerIP, *port);
    poll(now);
}

void WifiLink::EthernetDisconnect() {
    m_socket.close();
    deadlineMayHaveMoved();
}

void WifiLink::EthernetCommand(std::string_view frame, TimePoint now) {
    if (m_socket.state() == TcpSocket::Connected && !m_connectDeadline && !m_helloDeadline) {
        m_socket.send(frame);
        return;
    }
    m_waitingFrames.emplace_back(frame);
    if (!m_helloDeadline) EthernetConnect(now);
}

void WifiLink::poll(TimePoint now) {
    const int state = m_socket.state();
    if (m_helloDeadline) {
        if (state != TcpSocket::Connected)
            dropWaitingFrames();
        else if (now >= *m_helloDeadline)
            sendWaitingFrames();
    }
    if (m_connectDeadline) {
        if (state == TcpSocket::Connecting) m_sawConnecting = true;
        // A refused or failed attempt is over at once; a silent one waits out the budget.
        const bool failed = state == TcpSocket::Error || (m_sawConnecting && state == TcpSocket::Closed);
        if (state == TcpSocket::Connected || failed || now >= *m_connectDeadline || ServerIP.empty())
            finishConnect(now);
    }
    deadlineMayHaveMoved();
}

std::optional<TimePoint> WifiLink::nextDeadline() const {
    if (m_connectDeadline && m_helloDeadline) return std::min(*m_connectDeadline, *m_helloDeadline);
    return m_connectDeadline ? m_connectDeadline : m_helloDeadline;
}

void WifiLink::finishConnect(TimePoint now) {
    // The link is settled before anything is told: a message box lets other events run, and a frame
    // sent from one of them starts afresh.
    m_connectDeadline.reset();
    const std::string fault = std::exchange(m_connectFault, {});
    auto callbacks = std::exchange(m_whenConnected, {});
    bool dropped = false;
    if (!m_waitingFrames.empty()) {
        if (m_socket.state() != TcpSocket::Connected) {
            m_waitingFrames.clear();
            m_helloDeadline.reset();
            dropped = true;
        } else if (m_heardSinceConnect) {
            sendWaitingFrames();
        } else if (!m_helloDeadline) {
            m_helloDeadline = now + kHelloWait;  // a fresh connection: its hello comes first
        }
    }
    if (!fault.empty()) m_operator.critical(fault, kAppTitle);
    if (dropped) m_operator.critical(kNotConnected, kAppTitle);
    for (auto& callback : callbacks) callback();
}

void WifiLink::onData(std::string_view chunk) {
    if (m_socket.state() != TcpSocket::Connected) return;
    m_heardSinceConnect = true;
    if (chunk != kHello) m_rxData.append(chunk);
    m_log.append(chunk);
    m_log.append("\r\n");
    if (m_helloDeadline) {
        sendWaitingFrames();
        deadlineMayHaveMoved();
    }
}

void WifiLink::sendWaitingFrames() {
    m_helloDeadline.reset();
    auto frames = std::move(m_waitingFrames);
    m_waitingFrames.clear();
    for (const auto& frame : frames) m_socket.send(frame);
}

void WifiLink::dropWaitingFrames() {
    m_helloDeadline.reset();
    m_waitingFrames.clear();
    m_operator.critical(kNotConnected, kAppTitle);
}

void WifiLink::onError(int number, const std::string& description) {
    m_operator.critical("Socket Error " + std::to_string(number) + ": " + description, kAppTitle);
    m_socket.close();
}

void WifiLink::onClosedByPeer() {
    m_socket.close();
}

}  // namespace halvane
