#pragma once
// The Wi-Fi link to the targets: a TCP client to a small device that relays frames over the air. It
// never touches a socket or a clock: it is fed the socket's events and time, and answers with actions
// (connect, send, close, tell the operator) that a driver carries out. Connecting waits up to 5.0 s
// without holding anything up, and every wait it keeps shows in nextDeadline().

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "links/tcp_socket.h"
#include "links/timed_machine.h"

namespace halvane {

// One thing the driver must do for the link.
struct WifiAction {
    enum class Kind { Connect, Send, Close, Tell };
    Kind kind;
    std::string host;        // Connect
    std::uint16_t port = 0;  // Connect
    std::string bytes;       // Send
    std::string text;        // Tell, with the application's title
    bool critical = false;   // Tell
};

class WifiLink : public TimedMachine {
  public:
    static constexpr std::chrono::milliseconds kConnectBudget{5000};
    static constexpr std::chrono::milliseconds kHelloWait{200};
    static constexpr std::string_view kHello = "*KRV_CONN*";
    static constexpr const char* kDefaultPort = "31689";

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
    void onState(int state, TimePoint now);
    void onData(std::string_view chunk);
    void onError(int number, const std::string& description);
    // The device ended the connection in an orderly way: no fault, the socket just closes.
    void onClosedByPeer();
    // The socket would not take a frame: whatever its state said, the connection is gone, and the
    // frame goes the way of one sent while the link is down.
    void onSendFailed(std::string_view frame, TimePoint now);

    // The earliest of the link's waits (connect, hello), if it waits.
    std::optional<TimePoint> nextDeadline() const override;
    void onTime(TimePoint now) override;

    // The actions due since the last call, in order.
    std::vector<WifiAction> takeActions() { return std::exchange(m_actions, {}); }
    // Called when an entry point leaves actions behind, whoever called it, so that the driver carries
    // them out at once.
    void setActionsReady(std::function<void()> ready) { m_actionsReady = std::move(ready); }

    // While set, what comes goes to `receiver`, chunk by chunk as the socket hands it over, rather
    // than into sock_GetData: a reply waited for must arrive whole.
    void setReceiver(std::function<void(std::string_view chunk)> receiver) {
        m_receiver = std::move(receiver);
    }
    std::string sock_GetData() const { return m_rxData; }
    void sock_ClearData() { m_rxData.clear(); }
    // Everything received, a chunk a line, for the Wi-Fi window's log.
    const std::string& log() const { return m_log; }
    // The socket's state as last reported.
    int state() const { return m_state; }

  private:
    void update(TimePoint now);
    void finishConnect(TimePoint now);
    void sendWaitingFrames();
    void dropWaitingFrames();
    void act(WifiAction action) { m_actions.push_back(std::move(action)); }
    void tell(std::string text) { act({WifiAction::Kind::Tell, {}, 0, {}, std::move(text), true}); }
    // Hands the actions over; the last thing each entry point does, so that the driver finds the link
    // settled when it calls back in.
    void flush() {
        if (!m_actions.empty() && m_actionsReady) m_actionsReady();
    }

    int m_state = TcpSocket::Closed;
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
    std::vector<WifiAction> m_actions;
    std::function<void()> m_actionsReady;
    std::function<void(std::string_view)> m_receiver;
};

}  // namespace halvane
