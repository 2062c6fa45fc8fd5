// The line controller: the console's text frames and the faces of the targets on its lines.

#include "sim/line_controller.h"

#include "sim/devices.h"
#include "sim_support.h"

namespace halvane::sim {
namespace {

using testing::at;

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
        std::vector<const char*> pieces;
        const char* after;
    };
    const char* const kAllDown = "DDDDDDDD DDDDDDDD DDDDDDDD DDDDDDDD D";
    const Case cases[] = {
        {"the live window's opening",
         {" \rSPA00000000\rCPA00000000\rSPB00000000\rCPB00000000\rSPC00000000\rCPC00000000\rSPD00000000\rCPD0"
          "\r"},
         kAllDown},
        {"first and last line", {"SETPA0\r", "SETPD7\r"}, "ODDDDDDD DDDDDDDD DDDDDDDD DDDDDDDO D"},
        {"line off lays it down", {"SETPB3\rSETPB4\r", "RESPB3\r"}, "DDDDDDDD DDDDODDD DDDDDDDD DDDDDDDD D"},
        {"a whole bank, in any pieces", {"SPC1111", "1111\r\n"}, "DDDDDDDD DDDDDDDD OOOOOOOO DDDDDDDD D"},
        {"each digit its line", {"SPA10000001\r"}, "ODDDDDDO DDDDDDDD DDDDDDDD DDDDDDDD D"},
        {"frames that are none",
         {"SETPE0\rSETPA8\rsetpa0\rSPA1111111\rSPA111111111\rSPA1111111x\rSETPA\rSETPA00\rCPA11111111\r"},
         kAllDown},
        {"no CR, no frame", {"SETPA0"}, kAllDown},
    };
    for (const Case& c : cases) {
        Range range(33);
        auto controller = makeLineController(range, {});
        for (const char* piece : c.pieces) controller->receive(piece, at(0));
        EXPECT_EQ(faces(range), c.after) << c.name;
        EXPECT_TRUE(controller->takeDue(at(1000)).empty()) << c.name;
        EXPECT_FALSE(controller->nextDue()) << c.name;
    }
}

TEST(LineController, LinesBeyondTheRangeAreNotWired) {
    Range range(3);
    LineController controller(range);
    range.withTargets([](std::vector<Target>& ts) { ts[2].face = Face::Friend; });
    controller.receive("SPA11111111\rRESPA2\rSETPD7\r", at(0));
    EXPECT_EQ(faces(range), "OOD");
}

}  // namespace
}  // namespace halvane::sim
