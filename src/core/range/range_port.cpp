#include "range/range_port.h"

#include <utility>

#include "authoring/about_box.h"
#include "authoring/operator.h"
#include "links/com_port.h"

namespace halvane {

void showHitScoreButtons(const SharedState& state, Control& get, Control& clear) {
    for (Control* button : {&get, &clear}) {
        button->Enabled = state.TypeLMSeries;
        button->Visible = !state.UseGroups;
    }
}

RangePort::RangePort(SharedState& state, SerialPort& port, const PortNames& names, WifiSend wifi,
                     Operator& op)
    : m_state(state), m_port(port), m_names(names), m_wifi(std::move(wifi)), m_operator(op) {}

RangePort::Opening RangePort::open() {
    if (m_state.TypeVMR4000)
        m_state.RadioUSB = false;  // a line controller never also receives binary frames
    else if (!m_state.RadioUSB)
        return Opening::NotNeeded;
    const std::string device = m_names.device(m_state.ComPort);
    if (device.empty() || !m_port.open(device)) {
        m_operator.critical(ComPortModule::inUseMessage(m_state.ComPort, &m_port), kAppTitle);
        return Opening::Failed;
    }
    m_port.setRts(false);
    m_port.setDtr(false);
    m_port.dropInput();
    m_port.dropOutput();
    return Opening::Opened;
}

void RangePort::close() {
    m_serialOut.clear();
    if (m_port.isOpen()) m_port.close();
}

void RangePort::listen(std::function<void(std::string_view)> received, std::function<void()> lost) {
    m_port.listen({std::move(received), [lost = std::move(lost)](const std::string&) { lost(); }});
}

void RangePort::dropInput() {
    if (m_port.isOpen()) m_port.dropInput();
}

void RangePort::dropOutput() {
    m_serialOut.clear();
    if (m_port.isOpen()) m_port.dropOutput();
}

void RangePort::queue(const std::vector<Frame>& frames, TimePoint now) {
    for (const Frame& frame : frames) {
        if (frame.carrier == Carrier::Serial)
            m_serialOut += frame.bytes;
        else if (m_wifi)
            m_wifi(frame.bytes, now);
    }
}

bool RangePort::flush() {
    if (m_serialOut.empty()) return true;
    const std::string bytes = std::exchange(m_serialOut, {});
    return !m_port.isOpen() || m_port.write(bytes);
}

std::string RangePort::lostMessage(const std::string& after) const {
    const std::string why =
        m_port.lostReason().empty() ? "it would not take the frames" : m_port.lostReason();
    return "Comm Port " + std::to_string(m_state.ComPort) + ": the line went away (" + why + "). " + after;
}

}  // namespace halvane
