#include "sim/reply_queue.h"

namespace halvane::sim {

void ReplyQueue::reply(std::string bytes, TimePoint now) {
    if (m_faults.silent || bytes.empty()) return;
    const TimePoint due = now + m_faults.lateBy;
    if (m_faults.splitReplies && bytes.size() > 1) {
        const std::size_t half = bytes.size() / 2;
        put(bytes.substr(0, half), due);
        put(bytes.substr(half), due + kSplitGap);
    } else {
        put(std::move(bytes), due);
    }
}

void ReplyQueue::put(std::string bytes, TimePoint due) {
    m_chunks.push_back({due, std::move(bytes)});
}

std::vector<std::string> ReplyQueue::takeDue(TimePoint now) {
    std::vector<std::string> due;
    while (!m_chunks.empty() && m_chunks.front().due <= now) {
        due.push_back(std::move(m_chunks.front().bytes));
        m_chunks.pop_front();
    }
    return due;
}

std::optional<TimePoint> ReplyQueue::nextDue() const {
    if (m_chunks.empty()) return std::nullopt;
    return m_chunks.front().due;
}

}  // namespace halvane::sim
