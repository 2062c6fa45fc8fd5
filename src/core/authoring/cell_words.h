#pragma once
// The words a Program cell can hold, and the colours the grid shows them in.

#include <cstdint>
#include <string_view>

#include "text/wire_vocabulary.h"

namespace halvane {

// Colours as the grid keeps them: 0x00BBGGRR, or 0x800000nn for one of the system's colours.
using Color = std::uint32_t;

namespace colors {
inline constexpr Color Friend = 255;          // red
inline constexpr Color Foe = 65280;           // green
inline constexpr Color Edge = 65535;          // yellow
inline constexpr Color Down = 0x8000000F;     // button face
inline constexpr Color Pause = 0;             // black
inline constexpr Color PauseText = 0xFFFFFF;  // white
inline constexpr Color Window = 0x80000005;   // the grid's BackColor
inline constexpr Color WindowText = 0x80000008;
inline constexpr Color Highlight = 0x8000000D;   // the grid's BackColorSel
inline constexpr Color ButtonFace = 0x8000000F;  // fixed row and column
inline constexpr Color ButtonText = 0x80000012;
}  // namespace colors

namespace words {
inline constexpr std::string_view Friend = wire::wordOfAction(wire::Action::Friend);
inline constexpr std::string_view Foe = wire::wordOfAction(wire::Action::Foe);
inline constexpr std::string_view Edge = wire::wordOfAction(wire::Action::Edge);
inline constexpr std::string_view Down = wire::wordOfAction(wire::Action::Down);
inline constexpr std::string_view Pause = "Pause";
}  // namespace words

// Cell alignments of the grid.
namespace align {
inline constexpr std::uint8_t LeftCenter = 1;
inline constexpr std::uint8_t CenterCenter = 4;
inline constexpr std::uint8_t General = 9;
}  // namespace align

// The colour a cell of this text goes back to when its highlight is taken away; `backColor` for
// any text that is not one of the five words.
constexpr Color wordColor(std::string_view text, Color backColor) {
    if (text == words::Friend) return colors::Friend;
    if (text == words::Foe) return colors::Foe;
    if (text == words::Edge) return colors::Edge;
    if (text == words::Down) return colors::Down;
    if (text == words::Pause) return colors::Pause;
    return backColor;
}

}  // namespace halvane
