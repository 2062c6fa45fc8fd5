#pragma once
// The platform's TCP client as the Wi-Fi link uses it. States are numbered as the console always
// numbered them; received data and errors come back as events to WifiLink.

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane {

class TcpSocket {
  public:
    enum State : int { Closed = 0, Connecting = 6, Connected = 7, Closing = 8, Error = 9 };

    virtual ~TcpSocket() = default;
    virtual int state() const = 0;
    virtual void connectTo(const std::string& host, std::uint16_t port) = 0;
    virtual void close() = 0;
    virtual void send(std::string_view bytes) = 0;
};

}  // namespace halvane
