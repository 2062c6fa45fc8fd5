#pragma once
// The chunks a device owes the console, each with the time it falls due. The faults that bend
// replies act here, once for every device: a silent device drops its replies, a late one adds
// lateBy, a splitting one sends the first half of each reply at once and the rest kSplitGap later
// (a one-byte reply cannot be split and goes whole). Chunks never overtake each other: one that
// would fall due before the chunk ahead of it waits for that one.

#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "sim/device.h"

namespace halvane::sim {

// A device's output, in order, on the virtual clock.
class ReplyQueue {
  public:
    static constexpr std::chrono::milliseconds kSplitGap{50};

    explicit ReplyQueue(const Faults& faults) : m_faults(faults) {}

    // A reply to something the console sent at `now`.
    void reply(std::string bytes, TimePoint now);
    // A chunk that is no reply (the Wi-Fi hello): no fault touches it.
    void put(std::string bytes, TimePoint due);

    std::vector<std::string> takeDue(TimePoint now);
    std::optional<TimePoint> nextDue() const;

  private:
    struct Chunk {
        TimePoint due;
        std::string bytes;
    };

    Faults m_faults;
    std::deque<Chunk> m_chunks;
};

}  // namespace halvane::sim
