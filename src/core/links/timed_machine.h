#pragma once
// Something that waits for time without a clock of its own: it says when it next wants to be woken, and
// is told when that time has come. One timer in the application serves them all.

#include <optional>

#include "links/timed_read.h"

namespace halvane {

class TimedMachine {
  public:
    virtual ~TimedMachine() = default;
    // The earliest moment it waits for; nothing when it waits for no time at all.
    virtual std::optional<TimePoint> nextDeadline() const = 0;
    // Time has passed: the deadline, or any moment after it.
    virtual void onTime(TimePoint now) = 0;
};

}  // namespace halvane
