#include "links/port_probes.h"

#include <algorithm>
#include <utility>

#include "links/com_port.h"

namespace halvane {

struct PortProbes::Probe {
    enum class Step { Waiting, Settling, Listening, Done };
    int port = 0;
    std::unique_ptr<SerialPort> serial;
    Step step = Step::Waiting;
    TimePoint due{};
    std::string heard;  // what came since the question, up to the answer's length
    bool opened = false;
    bool answered = false;
    std::string failure;

    bool inFlight() const { return step == Step::Settling || step == Step::Listening; }
};

PortProbes::PortProbes(ProbeQuestion question, Opening opening, std::vector<int> ports,
                       const PortNames& names, PortFactory newPort, std::function<TimePoint()> clock,
                       int atOnce)
    : m_question(std::move(question)),
      m_opening(opening),
      m_names(names),
      m_newPort(std::move(newPort)),
      m_clock(std::move(clock)),
      m_atOnce(std::max(1, atOnce)) {
    std::sort(ports.begin(), ports.end());
    for (const int port : ports) {
        auto probe = std::make_unique<Probe>();
        probe->port = port;
        m_probes.push_back(std::move(probe));
    }
}

PortProbes::~PortProbes() {
    for (auto& probe : m_probes)
        if (probe->serial) {
            probe->serial->stopListening();
            probe->serial->close();
        }
}

void PortProbes::start(TimePoint now) {
    launch(now);
}

bool PortProbes::mayLaunch() const {
    const auto inFlight =
        std::count_if(m_probes.begin(), m_probes.end(), [](const auto& p) { return p->inFlight(); });
    return inFlight < m_atOnce && m_next < m_probes.size();
}

void PortProbes::launch(TimePoint now) {
    while (mayLaunch()) {
        Probe& probe = *m_probes[m_next++];
        probe.serial = m_newPort ? m_newPort() : nullptr;
        // Opened as the shared port is opened: no handshake lines, nothing left over in either buffer.
        if (!probe.serial || !probe.serial->open(m_names.device(probe.port))) {
            // An absent port is no news to the scan, but one this user may not open is: the operator
            // would otherwise look for devices that are there.
            const bool denied = probe.serial && probe.serial->deniedToUser();
            finish(probe, m_opening == Opening::Told || denied
                              ? ComPortModule::inUseMessage(probe.port, probe.serial.get())
                              : "");
            continue;
        }
        probe.opened = true;
        probe.serial->setRts(false);
        probe.serial->setDtr(false);
        probe.serial->dropInput();
        probe.serial->dropOutput();
        probe.serial->listen({[this, &probe](std::string_view bytes) { received(probe, bytes); },
                              [this, &probe](const std::string& why) {
                                  finish(probe, "Comm Port " + std::to_string(probe.port) +
                                                    ": the line went away (" + why + ") during the search.");
                              }});
        probe.step = Probe::Step::Settling;
        probe.due = now + kSettle;
        return;
    }
}

void PortProbes::ask(Probe& probe, TimePoint now) {
    probe.serial->dropInput();
    probe.serial->dropOutput();
    if (!probe.serial->write(m_question.asked)) {
        finish(probe,
               "Comm Port " + std::to_string(probe.port) + " would not take the question of the search.");
        return;
    }
    // What came before the question is not its answer.
    probe.serial->dropInput();
    probe.heard.clear();
    probe.step = Probe::Step::Listening;
    probe.due = now + m_question.limit;
}

void PortProbes::received(Probe& probe, std::string_view bytes) {
    if (probe.step != Probe::Step::Listening || m_clock() >= probe.due) return;
    const std::size_t length = m_question.answer.size();
    probe.heard.append(bytes.substr(0, length - probe.heard.size()));
    if (probe.heard.size() < length) return;
    probe.answered = probe.heard == m_question.answer;
    finish(probe);
}

void PortProbes::finish(Probe& probe, std::string failure) {
    probe.step = Probe::Step::Done;
    probe.failure = std::move(failure);
    // The port keeps its listener, which may be running now; a closed probe hears nothing more.
    if (!probe.serial) return;
    if (probe.answered && !m_question.afterAnswer.empty() && !probe.serial->write(m_question.afterAnswer))
        probe.failure = "Comm Port " + std::to_string(probe.port) + " would not take the end of the search.";
    // Closed without dropping what is queued: the radio's way back to data mode must reach it.
    probe.serial->dropInput();
    probe.serial->close();
}

std::optional<TimePoint> PortProbes::nextDeadline() const {
    if (mayLaunch()) return TimePoint{};
    std::optional<TimePoint> next;
    for (const auto& probe : m_probes)
        if (probe->inFlight() && (!next || probe->due < *next)) next = probe->due;
    return next;
}

void PortProbes::onTime(TimePoint now) {
    bool closed = false;
    for (auto& probe : m_probes) {
        if (!probe->inFlight() || probe->due > now) continue;
        if (probe->step == Probe::Step::Settling) {
            ask(*probe, now);
        } else if (!closed) {
            finish(*probe);  // silence, or not enough of an answer in time
            closed = true;
        }
    }
    launch(now);
}

bool PortProbes::done() const {
    return m_next == m_probes.size() &&
           std::none_of(m_probes.begin(), m_probes.end(), [](const auto& p) { return p->inFlight(); });
}

std::vector<int> PortProbes::opened() const {
    std::vector<int> ports;
    for (const auto& probe : m_probes)
        if (probe->opened) ports.push_back(probe->port);
    return ports;
}

std::vector<int> PortProbes::answered() const {
    std::vector<int> ports;
    for (const auto& probe : m_probes)
        if (probe->answered) ports.push_back(probe->port);
    return ports;
}

std::vector<std::pair<int, std::string>> PortProbes::failures() const {
    std::vector<std::pair<int, std::string>> out;
    for (const auto& probe : m_probes)
        if (!probe->failure.empty()) out.emplace_back(probe->port, probe->failure);
    return out;
}

std::vector<int> PortProbes::underWay() const {
    std::vector<int> ports;
    for (const auto& probe : m_probes)
        if (probe->inFlight()) ports.push_back(probe->port);
    return ports;
}

}  // namespace halvane
