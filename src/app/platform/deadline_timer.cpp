#include "platform/deadline_timer.h"

#include <algorithm>
#include <chrono>

namespace halvane::app {

DeadlineTimer::DeadlineTimer(QObject* parent) : QObject(parent) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &DeadlineTimer::fire);
}

void DeadlineTimer::add(TimedMachine& machine) {
    if (std::find(m_machines.begin(), m_machines.end(), &machine) == m_machines.end())
        m_machines.push_back(&machine);
    rearm();
}

void DeadlineTimer::remove(TimedMachine& machine) {
    m_machines.erase(std::remove(m_machines.begin(), m_machines.end(), &machine), m_machines.end());
    rearm();
}

void DeadlineTimer::rearm() {
    std::optional<TimePoint> earliest;
    for (const TimedMachine* machine : m_machines)
        if (const auto deadline = machine->nextDeadline(); deadline && (!earliest || *deadline < *earliest))
            earliest = deadline;
    if (earliest == m_armedFor) return;
    m_armedFor = earliest;
    if (!earliest) {
        m_timer.stop();
        return;
    }
    // Whole milliseconds, rounded down: a timer that fires early re-arms for the rest, where one that
    // rounded up would be late by up to a millisecond every time.
    const TimePoint now = std::chrono::steady_clock::now();
    const auto wait =
        *earliest <= now ? 0 : std::chrono::duration_cast<std::chrono::milliseconds>(*earliest - now).count();
    m_timer.start(static_cast<int>(std::min<std::chrono::milliseconds::rep>(wait, 1 << 30)));
}

void DeadlineTimer::fire() {
    m_armedFor.reset();
    const TimePoint now = std::chrono::steady_clock::now();
    // A machine's onTime may register or remove machines (a window that closes when its dialogue ends).
    const auto machines = m_machines;
    for (TimedMachine* machine : machines) {
        if (std::find(m_machines.begin(), m_machines.end(), machine) == m_machines.end()) continue;
        if (const auto deadline = machine->nextDeadline(); deadline && *deadline <= now) machine->onTime(now);
    }
    rearm();
}

}  // namespace halvane::app
