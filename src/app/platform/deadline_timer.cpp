#include "platform/deadline_timer.h"

#include <algorithm>
#include <chrono>
#include <thread>

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

std::optional<TimePoint> DeadlineTimer::earliestDeadline() const {
    std::optional<TimePoint> earliest;
    for (const TimedMachine* machine : m_machines)
        if (const auto deadline = machine->nextDeadline(); deadline && (!earliest || *deadline < *earliest))
            earliest = deadline;
    return earliest;
}

void DeadlineTimer::rearm() {
    const std::optional<TimePoint> earliest = earliestDeadline();
    if (earliest == m_armedFor) return;
    m_armedFor = earliest;
    if (!earliest) {
        m_timer.stop();
        return;
    }
    // The event loop wakes its timers in whole milliseconds and may round up: armed a little early, the
    // timer sleeps the last moment itself (fire), so a machine is woken within microseconds of its
    // deadline rather than up to a millisecond after it.
    const TimePoint now = std::chrono::steady_clock::now();
    const auto wait =
        *earliest <= now + kFinalSleep
            ? 0
            : std::chrono::duration_cast<std::chrono::milliseconds>(*earliest - now - kFinalSleep).count();
    m_timer.start(static_cast<int>(std::min<std::chrono::milliseconds::rep>(wait, 1 << 30)));
}

void DeadlineTimer::fire() {
    m_armedFor.reset();
    TimePoint now = std::chrono::steady_clock::now();
    const std::optional<TimePoint> earliest = earliestDeadline();
    if (earliest && *earliest > now && *earliest - now <= kFinalSleep + std::chrono::milliseconds(1)) {
        std::this_thread::sleep_until(*earliest);
        now = std::chrono::steady_clock::now();
    }
    // A machine's onTime may register or remove machines (a window that closes when its dialogue ends).
    const auto machines = m_machines;
    for (TimedMachine* machine : machines) {
        if (std::find(m_machines.begin(), m_machines.end(), machine) == m_machines.end()) continue;
        if (const auto deadline = machine->nextDeadline(); deadline && *deadline <= now) machine->onTime(now);
    }
    rearm();
}

}  // namespace halvane::app
