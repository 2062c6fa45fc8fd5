#pragma once
// A carrier of bytes to a device, as the code above the carriers sees it, whether a serial line or a
// TCP connection: bytes go out with write(), bytes that come in and the loss of the line are events.

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace halvane {

class Link {
  public:
    // Who hears the link. Bytes that come while nobody listens are dropped, as every reader of the line
    // drops what came before it.
    struct Listener {
        std::function<void(std::string_view bytes)> received;
        // The line vanished under the open link (`why` in words); the link is closed by then.
        std::function<void(const std::string& why)> lost;
    };

    virtual ~Link() = default;
    // Open (a port) or connected (a socket): bytes can go out.
    virtual bool isOpen() const = 0;
    // Queues bytes without waiting. False when they cannot go out (the link is closed, or was lost):
    // a write never vanishes in silence.
    [[nodiscard]] virtual bool write(std::string_view bytes) = 0;
    // Drops what was received and not yet delivered.
    virtual void dropInput() = 0;

    // One listener at a time; a new one replaces the last.
    void listen(Listener listener) { m_listener = std::move(listener); }
    void stopListening() { m_listener = {}; }

    // The line went away under the open link. The state stays until the link is opened again.
    bool lost() const { return m_lost; }
    // Why, in words ("" when not lost).
    const std::string& lostReason() const { return m_lostReason; }

  protected:
    // For carriers: bytes came in.
    void deliver(std::string_view bytes) {
        if (!bytes.empty() && m_listener.received) m_listener.received(bytes);
    }
    // For carriers: the line is gone (`why`); the carrier has closed itself first.
    void reportLost(std::string why) {
        m_lost = true;
        m_lostReason = why.empty() ? std::string("the line went away") : std::move(why);
        if (m_listener.lost) m_listener.lost(m_lostReason);
    }
    // For carriers: a successful open ends the loss.
    void clearLost() {
        m_lost = false;
        m_lostReason.clear();
    }

  private:
    Listener m_listener;
    bool m_lost = false;
    std::string m_lostReason;
};

}  // namespace halvane
