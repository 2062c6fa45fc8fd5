#include "platform/console_links.h"

#include "authoring/shared_state.h"
#include "platform/guarded_application.h"

namespace halvane::app {

ConsoleLinks::ConsoleLinks(SharedState& state, Operator& op)
    : m_comPort(state, m_serial, m_names, op), m_driver(m_wifi, m_socket, op) {
    m_names.readOverrides(state.ConfigFile);
    m_wifi.ServerIP = state.EthernetIP;
    m_wifi.ServerPort = state.EthernetPort;
    if (auto* app = GuardedApplication::instance()) app->deadlines().add(m_wifi);
}

ConsoleLinks::~ConsoleLinks() {
    if (auto* app = GuardedApplication::instance()) app->deadlines().remove(m_wifi);
}

}  // namespace halvane::app
