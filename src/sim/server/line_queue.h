#pragma once
// The bytes waiting to cross one direction of a serial line, and when each of them may arrive: at once,
// or paced to 9600 baud with 10 bits (start, 8 data, stop) per byte.

#include <chrono>
#include <cstdint>
#include <optional>
#include <ratio>
#include <string>
#include <string_view>

#include "sim/device.h"

namespace halvane::sim {

class LineQueue {
  public:
    // One byte's time on the line, exactly: 10 bits at 9600 baud.
    using ByteTimes = std::chrono::duration<std::int64_t, std::ratio<10, 9600>>;

    explicit LineQueue(bool paced) : m_paced(paced) {}

    // Queues bytes handed over at `now`; paced, the first of them starts when the line is free.
    void push(std::string_view bytes, TimePoint now);
    // The front bytes that have fully crossed the line by `now` (all of them when not paced).
    std::string_view ready(TimePoint now) const;
    // Takes the first `count` bytes out, once they have been passed on.
    void consume(std::size_t count);
    // When the next waiting byte will have crossed, if it has not by `now`.
    std::optional<TimePoint> nextReady(TimePoint now) const;
    bool empty() const { return m_head == m_bytes.size(); }

  private:
    // When the first `byteCount` bytes since the anchor have crossed.
    TimePoint arrivalOf(std::int64_t byteCount) const;

    bool m_paced;
    std::string m_bytes;
    std::size_t m_head = 0;
    // Paced: the bytes since `m_anchor` have gone back to back; `m_crossed` of them are through.
    TimePoint m_anchor{};
    std::int64_t m_crossed = 0;
};

}  // namespace halvane::sim
