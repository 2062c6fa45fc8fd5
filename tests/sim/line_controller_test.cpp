// The line controller: the console's text frames and the faces of the targets on its lines.

#include "sim/line_controller.h"

#include "sim/devices.h"
#include "sim_support.h"

namespace halvane::sim {
namespace {

using namespace testing;

// The faces of slots 1..33 as letters, banks apart: "DDDDDDDD DDDDDDDD DDDDDDDD DDDDDDDD D".
std::string faces(const Range& range) {
    std::string out;
    for (const TargetView& t : range.snapshot()) {
        if (t.slot > 1 && (t.slot - 1) % 8 == 0) out.push_back(' ');
        out.push_back("DEOF"[static_cast<int>(t.face) - 0xF0]);
    }
    return out;
}

TEST(LineController, FramesSetTheLinesOfTheirTargets) {
    struct Case {
        const char* name;
        int targets;
        std::vector<const char*> pieces;
        const char* after;
    };
    const char* const kAllDown = "DDDDDDDD DDDDDDDD DDDDDDDD DDDDDDDD D";
    // clang-format off
    const Case cases[] = {
        {"the live window's opening lays every line down", 33,
         {"SETPA1\rSETPD0\r", " \rSPA00000000\rCPA00000000\rSPB00000000\rCPB00000000\rSPC00000000"
          "\rCPC00000000\rSPD00000000\rCPD0\r"}, kAllDown},
        {"first and last line", 33, {"SETPA0\r", "SETPD7\r"}, "ODDDDDDD DDDDDDDD DDDDDDDD DDDDDDDO D"},
        {"line off lays it down", 33, {"SETPB3\rSETPB4\r", "RESPB3\r"},
         "DDDDDDDD DDDDODDD DDDDDDDD DDDDDDDD D"},
        {"a whole bank, each digit its line, in any pieces", 33, {"SPC1000", "0011\r\n"},
         "DDDDDDDD DDDDDDDD ODDDDDOO DDDDDDDD D"},
        {"frames that are none", 33,
         {"SETPE0\rSETPA8\rsetpa0\rSPA1111111\rSPA111111111\rSPA1111111x\rSETPA\rSETPA00\rCPA11111111\r"},
         kAllDown},
        {"no CR, no frame", 33, {"SETPA0"}, kAllDown},
        {"lines beyond the range are not wired", 3, {"SPA11111111\rRESPA2\rSETPD7\r"}, "OOD"},
    };
    // clang-format on
    for (const Case& c : cases) {
        Range range(c.targets);
        auto controller = makeLineController(range, {});
        for (const char* piece : c.pieces) controller->receive(piece, at(0));
        EXPECT_EQ(faces(range), c.after) << c.name;
    }
}

}  // namespace
}  // namespace halvane::sim
