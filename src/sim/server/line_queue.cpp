#include "sim/server/line_queue.h"

#include <algorithm>

namespace halvane::sim {

void LineQueue::push(std::string_view bytes, TimePoint now) {
    if (bytes.empty()) return;
    // Bytes only leave once they have crossed, so an empty queue is an idle line: the next byte starts
    // now. Bytes that join a queue still crossing follow back to back.
    if (empty()) {
        m_bytes.clear();
        m_head = 0;
        m_anchor = now;
        m_crossed = 0;
    }
    m_bytes.append(bytes);
}

std::string_view LineQueue::ready(TimePoint now) const {
    const std::string_view waiting = std::string_view(m_bytes).substr(m_head);
    if (!m_paced) return waiting;
    if (now < m_anchor) return {};
    const std::int64_t through = std::chrono::floor<ByteTimes>(now - m_anchor).count() - m_crossed;
    return waiting.substr(0, static_cast<std::size_t>(std::clamp<std::int64_t>(
                                 through, 0, static_cast<std::int64_t>(waiting.size()))));
}

void LineQueue::consume(std::size_t count) {
    count = std::min(count, m_bytes.size() - m_head);
    m_head += count;
    m_crossed += static_cast<std::int64_t>(count);
    // A line that never falls idle would otherwise keep every byte it ever carried.
    if (m_head >= 4096 && m_head * 2 >= m_bytes.size()) {
        m_bytes.erase(0, m_head);
        m_head = 0;
    }
}

std::optional<TimePoint> LineQueue::nextReady(TimePoint now) const {
    if (empty() || !ready(now).empty()) return std::nullopt;
    return arrivalOf(m_crossed + 1);
}

TimePoint LineQueue::arrivalOf(std::int64_t byteCount) const {
    return m_anchor + std::chrono::ceil<Clock::duration>(ByteTimes(byteCount));
}

}  // namespace halvane::sim
