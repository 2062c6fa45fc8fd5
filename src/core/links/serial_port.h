#pragma once
// The platform's serial port as the console's routines use it: 9600 baud, 8N1, no flow control, every
// byte value unchanged. One object serves every window that talks on the line.

#include <cstddef>
#include <string>
#include <string_view>

namespace halvane {

class SerialPort {
  public:
    virtual ~SerialPort() = default;
    // Opens the named device; false when it is absent or held by another program.
    virtual bool open(const std::string& deviceName) = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;
    // The device name the port is open on, exactly as it was given to open() ("" when closed).
    virtual std::string deviceName() const = 0;
    // Queues bytes without waiting.
    virtual void write(std::string_view bytes) = 0;
    // Received bytes not yet taken, and taking them.
    virtual std::size_t bytesAvailable() const = 0;
    virtual std::string read(std::size_t max) = 0;
    // Drops what was received and not taken / what was queued and not sent.
    virtual void dropInput() = 0;
    virtual void dropOutput() = 0;
    virtual void setRts(bool on) = 0;
    virtual void setDtr(bool on) = 0;

    // The line went away under the open port (a device unplugged, the far end of a pty closed). The
    // adapter closes the port when it finds that out, so that nothing waits on a dead line; the
    // state stays until the port is opened again.
    bool lost() const { return m_lost; }
    // Why, in the system's words ("" when not lost).
    const std::string& lostReason() const { return m_lostReason; }

  protected:
    // For adapters: the line is gone (`why`), or back with a successful open.
    void reportLost(std::string why) {
        m_lost = true;
        m_lostReason = why.empty() ? std::string("the line went away") : std::move(why);
    }
    void clearLost() {
        m_lost = false;
        m_lostReason.clear();
    }

  private:
    bool m_lost = false;
    std::string m_lostReason;
};

}  // namespace halvane
