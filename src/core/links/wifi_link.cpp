#include "links/wifi_link.h"

#include <algorithm>

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

void WifiLink::EthernetConnect(TimePoint now, std::function<void()> done) {
    if (done) m_whenConnected.push_back(std::move(done));
    if (m_connectDeadline) return;  // a wait is under way; this caller joins it
    if (m_state == TcpSocket::Connected) {
        finishConnect(now);
        flush();
        return;
    }
    m_sawConnecting = false;
    m_heardSinceConnect = false;
    m_connectFault.clear();
    const auto port = serverPort(ServerPort);
    if (!port) {
        // Nothing is tried; the wait ends when time is next told, so that a burst of frames is told once.
        m_connectFault =
            "Server Port \"" + ServerPort + "\" is not valid: use a whole number from 1 to 65535.";
        m_connectDeadline = now;
        flush();
        return;
    }
    m_connectDeadline = now + kConnectBudget;
    if (ServerIP.empty()) {
        m_connectFault = "Ethernet error: Not connected";
        update(now);
    } else {
        // The attempt counts as failed only once the socket has been seen connecting: what it reports on
        // the way there (the end of an earlier connection) is not its answer.
        act({WifiAction::Kind::Connect, ServerIP, *port, {}, {}, false});
    }
    flush();
}

void WifiLink::EthernetDisconnect() {
    act({WifiAction::Kind::Close, {}, 0, {}, {}, false});
    flush();
}

void WifiLink::EthernetCommand(std::string_view frame, TimePoint now) {
    if (m_state == TcpSocket::Connected && !m_connectDeadline && !m_helloDeadline) {
        act({WifiAction::Kind::Send, {}, 0, std::string(frame), {}, false});
        flush();
        return;
    }
    m_waitingFrames.emplace_back(frame);
    if (!m_helloDeadline) EthernetConnect(now);
}

void WifiLink::onState(int state, TimePoint now) {
    m_state = state;
    update(now);
    flush();
}

void WifiLink::onTime(TimePoint now) {
    update(now);
    flush();
}

void WifiLink::update(TimePoint now) {
    if (m_helloDeadline) {
        if (m_state != TcpSocket::Connected)
            dropWaitingFrames();
        else if (now >= *m_helloDeadline)
            sendWaitingFrames();
    }
    if (m_connectDeadline) {
        if (m_state == TcpSocket::Connecting) m_sawConnecting = true;
        // A refused or failed attempt is over at once; a silent one waits out the budget.
        const bool failed = m_state == TcpSocket::Error || (m_sawConnecting && m_state == TcpSocket::Closed);
        if (m_state == TcpSocket::Connected || failed || now >= *m_connectDeadline || ServerIP.empty())
            finishConnect(now);
    }
}

std::optional<TimePoint> WifiLink::nextDeadline() const {
    if (m_connectDeadline && m_helloDeadline) return std::min(*m_connectDeadline, *m_helloDeadline);
    return m_connectDeadline ? m_connectDeadline : m_helloDeadline;
}

// The link is settled before the callers hear of it, and what is to be told is told after: a message
// box lets other events run, and a frame sent from one of them starts afresh.
void WifiLink::finishConnect(TimePoint now) {
    m_connectDeadline.reset();
    const std::string fault = std::exchange(m_connectFault, {});
    auto callbacks = std::exchange(m_whenConnected, {});
    bool dropped = false;
    if (!m_waitingFrames.empty()) {
        if (m_state != TcpSocket::Connected) {
            m_waitingFrames.clear();
            m_helloDeadline.reset();
            dropped = true;
        } else if (m_heardSinceConnect) {
            sendWaitingFrames();
        } else if (!m_helloDeadline) {
            m_helloDeadline = now + kHelloWait;  // a fresh connection: its hello comes first
        }
    }
    if (!fault.empty()) tell(fault);
    if (dropped) tell(kNotConnected);
    for (auto& callback : callbacks) callback();
}

void WifiLink::onData(std::string_view chunk) {
    if (m_state != TcpSocket::Connected) return;
    m_heardSinceConnect = true;
    m_log.append(chunk);
    m_log.append("\r\n");
    if (m_helloDeadline) sendWaitingFrames();
    if (chunk != kHello) {
        if (m_receiver)
            m_receiver(chunk);
        else
            m_rxData.append(chunk);
    }
    flush();
}

void WifiLink::sendWaitingFrames() {
    m_helloDeadline.reset();
    for (auto& frame : std::exchange(m_waitingFrames, {}))
        act({WifiAction::Kind::Send, {}, 0, std::move(frame), {}, false});
}

void WifiLink::dropWaitingFrames() {
    m_helloDeadline.reset();
    m_waitingFrames.clear();
    tell(kNotConnected);
}

void WifiLink::onError(int number, const std::string& description) {
    tell("Socket Error " + std::to_string(number) + ": " + description);
    act({WifiAction::Kind::Close, {}, 0, {}, {}, false});
    flush();
}

void WifiLink::onClosedByPeer() {
    act({WifiAction::Kind::Close, {}, 0, {}, {}, false});
    flush();
}

void WifiLink::onSendFailed(std::string_view frame, TimePoint now) {
    if (m_state == TcpSocket::Connected) m_state = TcpSocket::Closed;
    EthernetCommand(frame, now);
}

}  // namespace halvane
