#pragma once
// The hand-held transmitter standing in PC Comm Mode on a serial line. What it answers:
//
//   "?" CR LF     "VER 3.12" CR LF, its firmware version.
//   "H" CR LF     the 201-byte hit block, taken from the range (Range::hitBlock).
//   "Snn" CR LF   (nn 01..10) the seven-byte status of place nn, then the send dialogue: 0xFF
//                 abandons it; otherwise blocks of 258 bytes, the first 02 N and 254 image bytes,
//                 the others 256 image bytes, each followed by its 16-bit sum, high byte first.
//                 Each block but the last is acknowledged "1", the last "1nn" CR LF; a block whose
//                 sum is wrong (or the first block announcing 0 blocks) is refused with "0", or
//                 "0nn" CR LF in the last block's place, and the send ends there with the place
//                 unchanged. The place takes the image only when the last block is in.
//   "Rnn" CR LF   "0" for an empty place; otherwise the status and the first block in one reply,
//                 then one further block for each "1"; the "1" after the last block closes the
//                 dialogue. Any other byte in its stead ends the download and counts as a command.
//
// The status is the digit "1" for a place that holds a program ("0" for a free one), the place as
// two digits, the number of blocks as two hexadecimal digits ("00" when free), CR, LF: place 3 with
// two blocks is "10302" CR LF. Places are stored as the image bytes that arrived, zero fill
// included, and a download gives them back in as many blocks as they came in.
//
// Commands are lines ending in CR (the LF behind it is dropped); "?", "S", "R" or "H" starts a new
// line, so a stray byte before a command does not spoil it, and a line it does not know goes
// unanswered. A line, a send or a download that sees no byte for kIdleReset is given up and the
// transmitter waits for a command again; only the overwrite question, which waits on the operator,
// may take as long as it likes. Replies fall due when the byte that completes the request arrives.
// Not thread-safe: one owner drives it.

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "sim/device.h"
#include "sim/range.h"
#include "sim/reply_queue.h"

namespace halvane::sim {

// The transmitter: its ten program places and its PC Comm Mode dialogues.
class Transmitter : public Device {
  public:
    static constexpr int kPlaces = 10;
    static constexpr std::size_t kFirstImageBytes = 254;
    static constexpr std::size_t kBlockImageBytes = 256;
    static constexpr std::chrono::seconds kIdleReset{2};
    static constexpr std::string_view kVersion = "VER 3.12\r\n";

    Transmitter(Range& range, Faults faults);

    std::string name() const override { return "transmitter"; }
    void receive(std::string_view bytes, TimePoint now) override;
    std::vector<std::string> takeDue(TimePoint now) override { return m_out.takeDue(now); }
    std::optional<TimePoint> nextDue() const override { return m_out.nextDue(); }

    // The image bytes of place 1..10 as stored, zero fill included; nothing for an empty place.
    std::optional<std::string> place(int number) const;
    // Stores an image in place 1..10, zero-filled to whole blocks, as if it had been sent. Throws
    // std::length_error for an image of more than 255 blocks.
    void setPlace(int number, std::string image);
    void clearPlace(int number);

  private:
    enum class State { Command, SendAsked, SendBlocks, Download };

    void onByte(char c, TimePoint now);
    void onCommandByte(char c, TimePoint now);
    void onLine(TimePoint now);
    void onBlock(TimePoint now);
    std::string status(int number) const;
    std::string block(int number, int index) const;  // index 1..N, with its sum
    static std::size_t placeIndex(int number);       // throws std::out_of_range outside 1..10

    Range& m_range;
    Faults m_faults;
    ReplyQueue m_out;
    std::array<std::optional<std::string>, kPlaces> m_places;

    State m_state = State::Command;
    std::string m_buffer;  // the line, or the block coming in
    bool m_swallowLf = false;
    int m_place = 0;
    int m_block = 0;   // the block of a send or download under way, from 1
    int m_blocks = 0;  // N of a send under way
    std::string m_image;
    TimePoint m_lastByteAt{};
};

}  // namespace halvane::sim
