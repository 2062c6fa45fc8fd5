#include "links/timed_read.h"

#include "text/conversions.h"

namespace halvane {

TimedRead::TimedRead(std::string& slot, std::size_t count, TimePoint now, std::chrono::milliseconds budget)
    : m_slot(slot), m_count(count), m_deadline(now + budget) {
    m_slot.clear();
    if (m_count == 0) m_status = Status::Done;
}

std::size_t TimedRead::feed(std::string_view bytes, TimePoint now) {
    tick(now);
    if (m_status != Status::Waiting) return 0;
    std::size_t taken = 0;
    while (taken < bytes.size() && m_slot.size() < m_count) m_slot.push_back(bytes[taken++]);
    if (m_slot.size() == m_count) m_status = Status::Done;
    return taken;
}

void TimedRead::tick(TimePoint now) {
    if (m_status == Status::Waiting && now >= m_deadline) m_status = Status::TimedOut;
}

std::optional<std::string> ReadCharsResult(TimedRead& read, std::string& slot) {
    if (read.status() != TimedRead::Status::Done) return std::nullopt;
    std::string result = std::move(slot);
    slot.clear();
    return result;
}

std::optional<char> ReadReplyResult(TimedRead& read, std::string& slot) {
    if (read.status() != TimedRead::Status::Done || slot.empty()) return std::nullopt;
    const char first = slot.front();
    slot.clear();
    return first;
}

void beginHitBlock(std::array<std::string, 202>& replyHex) {
    replyHex[0] = "0";
}

bool ReadHitBlockResult(TimedRead& read, std::string& slot, std::array<std::string, 202>& replyHex) {
    if (read.status() != TimedRead::Status::Done || slot.size() != kHitBlockSize) return false;
    for (std::size_t i = 0; i < kHitBlockSize; ++i)
        replyHex[i] = text::Hex(static_cast<unsigned char>(slot[i]));
    slot.clear();
    return true;
}

}  // namespace halvane
