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
    // The device name the port is open on ("" when closed).
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
};

}  // namespace halvane
