#pragma once
// The platform's serial port as the console's routines use it: 9600 baud, 8N1, no flow control, every
// byte value unchanged. One object serves every window that talks on the line.

#include <string>

#include "links/link.h"

namespace halvane {

class SerialPort : public Link {
  public:
    // Opens the named device; false when it is absent or held by another program.
    virtual bool open(const std::string& deviceName) = 0;
    virtual void close() = 0;
    // The device name the port is open on, exactly as it was given to open() ("" when closed).
    virtual std::string deviceName() const = 0;
    // Drops what was queued and not sent.
    virtual void dropOutput() = 0;
    virtual void setRts(bool on) = 0;
    virtual void setDtr(bool on) = 0;
    // The last open failed because this user may not use the device, not because it is absent or held.
    virtual bool deniedToUser() const { return false; }
};

}  // namespace halvane
