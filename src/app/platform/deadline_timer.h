#pragma once
// The one timer of the console's machines (the Wi-Fi link, a device dialogue): a single single-shot
// precise QTimer, armed for the earliest deadline of the machines registered. The application re-arms
// it after every event, since any event may have moved a deadline; that costs a comparison when none
// moved.

#include <QObject>
#include <QTimer>
#include <optional>
#include <vector>

#include "links/timed_machine.h"

namespace halvane::app {

class DeadlineTimer : public QObject {
  public:
    explicit DeadlineTimer(QObject* parent = nullptr);

    // A machine must be removed before it goes.
    void add(TimedMachine& machine);
    void remove(TimedMachine& machine);
    // Arms the timer for the earliest deadline, unless it is armed for that one already.
    void rearm();

    // The deadline the timer is armed for, if any.
    std::optional<TimePoint> armedFor() const { return m_armedFor; }

    // How long before a deadline the timer fires, to sleep the rest precisely.
    static constexpr std::chrono::milliseconds kFinalSleep{2};

  private:
    std::optional<TimePoint> earliestDeadline() const;
    void fire();

    QTimer m_timer;
    std::vector<TimedMachine*> m_machines;
    std::optional<TimePoint> m_armedFor;
};

}  // namespace halvane::app
