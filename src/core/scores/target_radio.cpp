#include "scores/target_radio.h"

#include "authoring/about_box.h"
#include "authoring/operator.h"
#include "links/com_port.h"
#include "links/target_parameters.h"

namespace halvane {

TargetRadio::TargetRadio(SharedState& state, SerialPort& port, const PortNames& names, WifiLink* wifi,
                         Operator& op)
    : m_state(state), m_port(port), m_names(names), m_wifi(wifi), m_operator(op) {
    m_port.listen({[this](std::string_view bytes) {
                       if (m_listener.serial) m_listener.serial(bytes);
                   },
                   [this](const std::string&) {
                       if (m_listener.lost) m_listener.lost();
                   }});
    if (m_wifi)
        m_wifi->setReceiver([this](std::string_view chunk) {
            if (m_listener.socket) m_listener.socket(chunk);
        });
}

TargetRadio::~TargetRadio() {
    m_port.stopListening();
    if (m_wifi) m_wifi->setReceiver({});
}

bool TargetRadio::open(TimePoint now) {
    if (m_state.RadioUSB) {
        const std::string device = m_names.device(m_state.ComPort);
        if (device.empty() || !m_port.open(device)) {
            m_operator.critical(ComPortModule::inUseMessage(m_state.ComPort, &m_port), kAppTitle);
            return false;
        }
        // Unlike the shared port, both lines are raised and nothing is dropped.
        m_port.setRts(true);
        m_port.setDtr(true);
    } else if (m_state.RadioWiFi && m_wifi) {
        m_wifi->EthernetConnect(now);
    }
    return true;
}

void TargetRadio::close() {
    if (!m_port.isOpen()) return;
    m_port.dropInput();
    m_port.dropOutput();
    m_port.close();
}

bool TargetRadio::sendSerial(std::string_view frame) {
    return m_port.isOpen() && m_port.write(frame);
}

void TargetRadio::sendWifi(std::string_view frame, TimePoint now) {
    if (m_wifi) m_wifi->EthernetCommand(target::wifiFrame(frame), now);
}

void TargetRadio::dropInput() {
    if (m_port.isOpen()) m_port.dropInput();
}

std::string TargetRadio::notOpenMessage() const {
    if (m_port.lost())
        return "Comm Port " + std::to_string(m_state.ComPort) + ": the line went away (" +
               m_port.lostReason() + "). Nothing more was sent.";
    return "Comm Port " + std::to_string(m_state.ComPort) +
           " is not open, so the frames for the target cannot go out. Nothing more was sent.";
}

ReplyWait::Road TargetRadio::replyRoad() const {
    if (m_state.RadioUSB) return ReplyWait::Road::Serial;
    if (m_state.RadioWiFi) return ReplyWait::Road::Socket;
    return ReplyWait::Road::NoCarrier;
}

}  // namespace halvane
