#pragma once
// Cuts a byte stream into target frames, as a receiver does that knows each command's length.
//
// A frame starts at a byte that begins a frame (target_air.h) and runs to its length; a byte that
// begins none, where a frame would start, is skipped. Bytes of one frame come together on a radio,
// so a partial frame that sees no further byte for kGap is dropped: the five-byte write frame the
// console sends for an empty box is lost that way instead of swallowing the next frame's first
// byte. With a leading zero, as on the Wi-Fi link, every frame is 00 followed by the frame, and the
// zero is taken off.

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "sim/device.h"

namespace halvane::sim {

// Frames out of a stream of bytes from the console.
class FrameSplitter {
  public:
    static constexpr std::chrono::milliseconds kGap{50};

    explicit FrameSplitter(bool leadingZero = false) : m_leadingZero(leadingZero) {}

    // The frames completed by these bytes, without their leading zero.
    std::vector<std::string> feed(std::string_view bytes, TimePoint now);

  private:
    bool m_leadingZero;
    bool m_zeroSeen = false;
    std::string m_partial;
    TimePoint m_lastByteAt{};
};

}  // namespace halvane::sim
