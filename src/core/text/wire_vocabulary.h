#pragma once
// The bytes that name what a target does, the same in a Program image and in a frame to a target.

#include <cstdint>

namespace halvane::wire {

enum class Action : std::uint8_t { Down = 0xF0, Edge = 0xF1, Foe = 0xF2, Friend = 0xF3 };

}  // namespace halvane::wire
