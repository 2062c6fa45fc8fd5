#pragma once
// The platform's TCP client as the Wi-Fi link uses it. States are numbered as the console always
// numbered them. Beside the bytes and the loss of a link (the device closed the connection), it tells
// when its state changed and when it failed, with the error's number and words.

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "links/link.h"

namespace halvane {

class TcpSocket : public Link {
  public:
    enum State : int { Closed = 0, Connecting = 6, Connected = 7, Closing = 8, Error = 9 };

    struct Events {
        std::function<void()> stateChanged;
        std::function<void(int number, const std::string& description)> error;
    };

    virtual int state() const = 0;
    virtual void connectTo(const std::string& host, std::uint16_t port) = 0;
    virtual void close() = 0;
    bool isOpen() const override { return state() == Connected; }

    void watch(Events events) { m_events = std::move(events); }

  protected:
    void stateChanged() {
        if (m_events.stateChanged) m_events.stateChanged();
    }
    void failed(int number, const std::string& description) {
        if (m_events.error) m_events.error(number, description);
    }

  private:
    Events m_events;
};

}  // namespace halvane
