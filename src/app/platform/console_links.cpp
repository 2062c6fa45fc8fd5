#include "platform/console_links.h"

#include "authoring/shared_state.h"

namespace halvane::app {

ConsoleLinks::ConsoleLinks(SharedState& state, Operator& op)
    : m_comPort(state, m_serial, m_names, op), m_wifi(m_socket, op) {
    m_names.readOverrides(state.ConfigFile);
    m_wifi.ServerIP = state.EthernetIP;
    m_wifi.ServerPort = state.EthernetPort;
    m_socket.attach(m_wifi);
}

}  // namespace halvane::app
