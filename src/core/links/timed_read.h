#pragma once
// The serial line's timed readers as waits that are fed bytes and time: ReadChars, ReadReply and
// ReadHitBlock. Each has its own RxBuffer slot and one budget of 1.0 s for the whole reply.

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace halvane {

using SteadyClock = std::chrono::steady_clock;
using TimePoint = SteadyClock::time_point;

// The RxBuffer slots of the readers, so that no reader sees another's remains.
enum RxSlot : std::size_t {
    kSlotReadChars = 0,
    kSlotHitBlock = 2,
    kSlotProbeRadio = 3,
    kSlotProbeTransmitter = 4,
    kSlotDownload = 5,
    kSlotReadReply = 6,
    kRxSlots = 7,
};

// A wait for `count` bytes within a budget. The caller drops the port's input before starting it:
// whatever arrived before is lost, so a reader starts right after the write whose reply it awaits.
// Bytes beyond the count are not taken; they stay with the port for the next reader to drop.
class TimedRead {
  public:
    enum class Status { Waiting, Done, TimedOut };
    static constexpr std::chrono::milliseconds kBudget{1000};

    TimedRead(std::string& slot, std::size_t count, TimePoint now,
              std::chrono::milliseconds budget = kBudget);

    // Takes bytes one at a time until the count is reached; returns how many it took. Nothing is
    // taken at or after the deadline.
    std::size_t feed(std::string_view bytes, TimePoint now);
    // Ends the wait when its time is up.
    void tick(TimePoint now);

    Status status() const { return m_status; }
    TimePoint deadline() const { return m_deadline; }
    const std::string& received() const { return m_slot; }

  private:
    std::string& m_slot;
    std::size_t m_count;
    TimePoint m_deadline;
    Status m_status = Status::Waiting;
};

// What each reader makes of a finished wait. On a time-out the caller's result stays untouched and the
// slot keeps the partial data; on success the slot is cleared.
std::optional<std::string> ReadCharsResult(TimedRead& read, std::string& slot);
std::optional<char> ReadReplyResult(TimedRead& read, std::string& slot);
// The 201-byte hit block into ReplyHex: entry i-1 is byte i in upper-case hexadecimal without a
// leading zero. ReplyHex(0) is "0" until a whole block has come.
inline constexpr std::size_t kHitBlockSize = 201;
void beginHitBlock(std::array<std::string, 202>& replyHex);
bool ReadHitBlockResult(TimedRead& read, std::string& slot, std::array<std::string, 202>& replyHex);

}  // namespace halvane
