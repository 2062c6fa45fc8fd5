#include "links/com_port.h"

#include "authoring/about_box.h"
#include "authoring/operator.h"
#include "authoring/shared_state.h"

namespace halvane {

ComPortModule::ComPortModule(SharedState& state, SerialPort& port, PortNames& names, Operator& op)
    : m_state(state), m_port(port), m_names(names), m_operator(op) {}

std::string ComPortModule::inUseMessage(int port, const SerialPort* serial) {
    std::string text = "Comm Port " + std::to_string(port) + " in use or invalid";
    if (serial && serial->deniedToUser()) text += std::string("\n") + kPermissionHint;
    return text;
}

void ComPortModule::OpenComPort() {
    const std::string device = m_names.device(m_state.ComPort);
    // Every window shares this one port: already open on this device, it is simply made ready again.
    if (m_port.isOpen() && m_port.deviceName() != device) m_port.close();
    if (device.empty() || (!m_port.isOpen() && !m_port.open(device))) {
        m_operator.critical(inUseMessage(m_state.ComPort, &m_port), kAppTitle);
        return;
    }
    m_port.setRts(false);
    m_port.setDtr(false);
    m_port.dropInput();
    m_port.dropOutput();
}

void ComPortModule::CloseComPort() {
    if (!m_port.isOpen()) return;
    m_port.dropInput();
    m_port.dropOutput();
    m_port.close();
}

}  // namespace halvane
