#include "links/port_search.h"

#include <utility>

#include "authoring/about_box.h"
#include "authoring/operator.h"
#include "authoring/profile_file.h"
#include "links/com_port.h"
#include "text/conversions.h"

namespace halvane {

frmCommPorts::frmCommPorts(SharedState& state, ComPortModule& comPort, PortProbes::PortFactory newPort,
                           Operator& op, std::function<TimePoint()> clock, int atOnce)
    : m_state(state),
      m_comPort(comPort),
      m_newPort(std::move(newPort)),
      m_operator(op),
      m_clock(std::move(clock)),
      m_atOnce(atOnce) {}

frmCommPorts::~frmCommPorts() = default;

std::string frmCommPorts::OptionCaption(int port) {
    // The caption of port 15 was drawn without its blank.
    return port == 15 ? "Com15" : "Com " + std::to_string(port);
}

void frmCommPorts::Load(TimePoint now) {
    m_timer1 = now + kTimer1;
}

std::optional<TimePoint> frmCommPorts::nextDeadline() const {
    if (m_timer1) return m_timer1;
    // A round can end on an answer, between two times: the window takes it up at once.
    if (m_round && m_round->done()) return TimePoint{};
    return m_round ? m_round->nextDeadline() : std::nullopt;
}

void frmCommPorts::onTime(TimePoint now) {
    if (m_timer1) {
        if (now < *m_timer1) return;
        // Timer1 runs once. The shared port is closed; each port is opened by a probe of its own.
        m_timer1.reset();
        m_comPort.CloseComPort();
        m_comPortBefore = m_state.ComPort;
        std::vector<int> all;
        for (int port = kFirstPort; port <= kLastPort; ++port) all.push_back(port);
        startRound(kTransmitterProbe, PortProbes::Opening::Scan, all, now);
    } else if (m_round) {
        m_round->onTime(now);
    }
    while (m_round && m_round->done()) {
        // Each finding overwrites the one before, so of several ports that answer the highest wins.
        if (m_stage == Stage::Transmitter) {
            m_state.PortPresent.fill(false);
            for (const int port : m_round->opened())
                m_state.PortPresent[static_cast<std::size_t>(port)] = true;
        }
        const std::vector<int> answered = m_round->answered();
        std::int16_t& finding = m_stage == Stage::Transmitter ? m_state.PortVer : m_state.PortOk;
        if (!answered.empty()) finding = static_cast<std::int16_t>(answered.back());
        // A port that could not be asked is told once, and not asked again.
        std::vector<int> next;
        for (const auto& [port, text] : m_round->failures()) m_failures.push_back(text);
        for (int port = kFirstPort; port <= kLastPort; ++port) {
            if (!m_state.PortPresent[static_cast<std::size_t>(port)]) continue;
            bool failed = false;
            for (const auto& [failedPort, text] : m_round->failures()) failed = failed || failedPort == port;
            if (!failed) next.push_back(port);
        }
        m_finished.push_back(std::move(m_round));
        if (m_stage == Stage::Transmitter)
            startRound(kRadioProbe, PortProbes::Opening::Told, next, now);
        else
            endSearch();
    }
}

void frmCommPorts::startRound(const ProbeQuestion& question, PortProbes::Opening opening,
                              std::vector<int> ports, TimePoint now) {
    m_stage = &question == &kTransmitterProbe ? Stage::Transmitter : Stage::Radio;
    m_round = std::make_unique<PortProbes>(question, opening, std::move(ports), m_comPort.names(), m_newPort,
                                           m_clock, m_atOnce);
    m_round->start(now);
}

void frmCommPorts::endSearch() {
    // Each round of the probes notes ComPort before it moves on: it is left on the port asked next to last.
    m_state.ComPort = comPortAfterProbes(m_state, m_comPortBefore);
    m_choice = choosePort(m_state);
    m_stage = Stage::Choosing;
    for (const std::string& text : std::exchange(m_failures, {})) m_operator.critical(text, kAppTitle);
}

std::string frmCommPorts::progressText() const {
    if (!m_round) return {};
    const std::vector<int> ports = m_round->underWay();
    if (ports.empty()) return {};
    std::string names;
    for (const int port : ports) names += (names.empty() ? "" : ", ") + OptionCaption(port);
    return "Asking " + names + (m_stage == Stage::Transmitter ? " for a transmitter" : " for a radio");
}

bool frmCommPorts::OptionEnabled(int port) const {
    return port >= kFirstPort && port <= kLastPort && m_choice.enabled[static_cast<std::size_t>(port)];
}

void frmCommPorts::Option1_Click(int port) {
    if (m_stage == Stage::Choosing && OptionEnabled(port)) m_choice.selected = port;
}

bool frmCommPorts::OKButton_Click() {
    if (m_stage != Stage::Choosing || m_choice.selected == 0) return false;
    m_state.ComPort = static_cast<std::int16_t>(m_choice.selected);
    m_stage = Stage::Closed;
    const bool written =
        WriteIni(m_state.ConfigFile, "Settings", "ComPort", text::Str(std::int64_t{m_state.ComPort}));
    if (!written)
        m_operator.tell("The port could not be written to " + m_state.ConfigFile + "; Com Port " +
                            std::to_string(m_state.ComPort) + " holds until the program ends.",
                        kAppTitle);
    return written;
}

void frmCommPorts::CancelButton_Click() {
    if (m_stage == Stage::Choosing) m_stage = Stage::Closed;
}

}  // namespace halvane
