#pragma once
// The shared serial line (modComPort): opening and closing it on ComPort, and the scan of ports 1-16.

#include <string>

#include "links/port_names.h"
#include "links/serial_port.h"

namespace halvane {

class Operator;
struct SharedState;

class ComPortModule {
  public:
    ComPortModule(SharedState& state, SerialPort& port, PortNames& names, Operator& op);

    // Opens the shared port on ComPort and drops both buffers; when the port cannot be opened the
    // operator is told "Comm Port n in use or invalid" and the port stays closed.
    void OpenComPort();
    void CloseComPort();
    bool PortOpen() const { return m_port.isOpen(); }
    SerialPort& port() { return m_port; }
    PortNames& names() { return m_names; }

    // The text of the failure message for a port number; when `serial` failed to open for want of
    // permission, a second line says how a user gets it.
    static std::string inUseMessage(int port, const SerialPort* serial = nullptr);
    static constexpr const char* kPermissionHint =
        "This user may not open serial ports: add it to the group dialout (sudo adduser $USER dialout), "
        "then log in again.";

  private:
    SharedState& m_state;
    SerialPort& m_port;
    PortNames& m_names;
    Operator& m_operator;
};

}  // namespace halvane
