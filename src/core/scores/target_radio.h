#pragma once
// The radio of the target setup window: the window's own serial port, open while the window is, and
// the Wi-Fi link. Frames go out and replies come back here for the read and write windows, which say
// which carrier each frame takes.

#include <functional>
#include <string>
#include <string_view>

#include "authoring/shared_state.h"
#include "links/port_names.h"
#include "links/reply_wait.h"
#include "links/serial_port.h"
#include "links/wifi_link.h"

namespace halvane {

class Operator;

class TargetRadio {
  public:
    TargetRadio(SharedState& state, SerialPort& port, const PortNames& names, WifiLink* wifi, Operator& op);
    ~TargetRadio();
    TargetRadio(const TargetRadio&) = delete;
    TargetRadio& operator=(const TargetRadio&) = delete;

    // The setup window's load: the port for the serial radio, RTS and DTR on and nothing dropped, or
    // else the Wi-Fi link connected. False, with the operator told, when the port will not open.
    bool open(TimePoint now);
    // Drops both buffers and closes the port; the Wi-Fi link stays up.
    void close();

    // Replies, and the line vanishing, go to whoever waits for them now.
    struct Listener {
        std::function<void(std::string_view)> serial;
        std::function<void(std::string_view)> socket;
        std::function<void()> lost;
    };
    void listen(Listener listener) { m_listener = std::move(listener); }
    void stopListening() { m_listener = {}; }

    // Writes a frame as it stands. False when it cannot go out: the port is not open or would not
    // take it (the caller stops and tells the operator, lostMessage).
    [[nodiscard]] bool sendSerial(std::string_view frame);
    // Sends a frame over Wi-Fi with its leading zero; the link tells the operator its own troubles.
    void sendWifi(std::string_view frame, TimePoint now);
    void dropInput();
    std::string notOpenMessage() const;

    // Where replies are looked for: the serial radio, else Wi-Fi, else nowhere.
    ReplyWait::Road replyRoad() const;
    // The Wi-Fi frames still wait for the connection; the link could not connect.
    bool wifiWaiting() const { return m_wifi && m_wifi->framesWaiting(); }
    bool wifiDown() const { return m_wifi && m_wifi->state() != TcpSocket::Connected && !wifiWaiting(); }

  private:
    SharedState& m_state;
    SerialPort& m_port;
    const PortNames& m_names;
    WifiLink* m_wifi;
    Operator& m_operator;
    Listener m_listener;
};

}  // namespace halvane
