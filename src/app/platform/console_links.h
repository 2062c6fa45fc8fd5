#pragma once
// The console's device links, one of each for the whole run: the shared serial line and the Wi-Fi link.

#include <memory>

#include "links/com_port.h"
#include "links/port_names.h"
#include "links/wifi_driver.h"
#include "links/wifi_link.h"
#include "platform/qt_serial_port.h"
#include "platform/qt_tcp_socket.h"

namespace halvane {
class Operator;
struct SharedState;
}  // namespace halvane

namespace halvane::app {

class ConsoleLinks {
  public:
    // Port names come from the configuration file; the Wi-Fi server fields from the state read at start-up.
    // The Wi-Fi link keeps its time on the application's timer.
    ConsoleLinks(SharedState& state, Operator& op);
    ~ConsoleLinks();
    ConsoleLinks(const ConsoleLinks&) = delete;
    ConsoleLinks& operator=(const ConsoleLinks&) = delete;

    ComPortModule& comPort() { return m_comPort; }
    WifiLink& wifi() { return m_wifi; }
    QtSerialPort& serialPort() { return m_serial; }
    PortNames& portNames() { return m_names; }
    // The run and live windows each open a port of their own on the same line.
    static std::unique_ptr<SerialPort> newWindowPort() { return std::make_unique<QtSerialPort>(); }

  private:
    QtSerialPort m_serial;
    PortNames m_names;
    ComPortModule m_comPort;
    QtTcpSocket m_socket;
    WifiLink m_wifi;
    WifiDriver m_driver;
};

}  // namespace halvane::app
