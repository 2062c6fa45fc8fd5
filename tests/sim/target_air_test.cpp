// What targets do with frames heard over the air, and how a stream is cut into frames.

#include "sim/target_air.h"

#include "sim/frame_splitter.h"
#include "sim_support.h"

namespace halvane::sim {
namespace {

using namespace testing;

TEST(TargetAir, FramesChangeTargetsAndAreAnsweredSixOrTwoBytes) {
    struct Case {
        const char* name;
        int channel;
        std::vector<const char*> frames;
        const char* replies;  // every reply of every frame, joined by " | "
        const char* after;
    };
    const char* const kAsBefore = "D7 D0 D0 D0@3";
    // Slots 1..4: serials 1875, 123456, 12, 999998; slot 1 has 7 hits; slot 4 is on channel 3.
    // clang-format off
    const Case cases[] = {
        {"actions to all on the channel and to one", 0, {"F3 E7", "F1 02", "F2 03", "F0 01"}, "",
         "D7 E0 O0 D0@3"},
        {"a target on another channel hears nothing", 0, {"F2 04", "FA 04"}, "", kAsBefore},
        {"the sender's channel reaches it", 3, {"F2 04", "F2 01"}, "", "D7 D0 D0 O0@3"},
        {"hit query", 0, {"FA 01", "FA 02", "FA 09"}, "EA 07 | EA 00", kAsBefore},
        {"FA to all clears, unanswered", 0, {"FA E7", "FA 01"}, "EA 00", "D0 D0 D0 D0@3"},
        {"FB to one clears that one", 0, {"FB 02", "FB 01"}, "", "D0 D0 D0 D0@3"},
        {"FB to all clears", 0, {"FB E7"}, "", "D0 D0 D0 D0@3"},
        {"lookup answers command, number, serial, number", 0, {"F4 02 00 00 00 00"}, "F4 02 12 34 56 02",
         kAsBefore},
        {"lookup of a number nobody has", 0, {"F4 00 00 00 00 00", "F4 E7 00 00 00 00"}, "", kAsBefore},
        {"reads: hit sense, battery, version, channel, a spare index", 0,
         {"F6 00 18 75 01 ED", "F6 00 18 75 0A ED", "F6 00 18 75 10 ED", "F6 00 18 75 13 ED",
          "F6 00 18 75 08 ED"},
         "F6 01 00 18 75 0A | F6 01 00 18 75 7D | F6 01 00 18 75 12 | F6 01 00 18 75 00 | F6 01 00 18 75 00",
         kAsBefore},
        {"reads outside the block or to another serial go unanswered", 0,
         {"F6 00 18 75 00 ED", "F6 00 18 75 14 ED", "F6 00 18 76 01 ED", "F6 99 99 98 01 ED"}, "", kAsBefore},
        {"write then read back; battery and version are not written", 0,
         {"F6 12 34 56 01 0C", "F6 12 34 56 01 ED", "F6 00 00 12 0A 01", "F6 00 00 12 10 01",
          "F6 00 00 12 0A ED", "F6 00 00 12 10 ED"},
         "F6 02 12 34 56 0C | F6 03 00 00 12 7D | F6 03 00 00 12 12", kAsBefore},
        {"a new target number: frames follow the number, not the slot", 0,
         {"F6 12 34 56 06 09", "F3 09", "F2 02", "FA 09"}, "EA 00", "D7 F0#9 D0 D0@3"},
        {"a new channel: the old one no longer reaches it", 0, {"F6 12 34 56 13 03", "F3 E7"}, "",
         "F7 D0@3 F0 D0@3"},
        {"die face written, then a frame of the wrong length is ignored", 0, {"F6 00 18 75 05 02", "F3"}, "",
         kAsBefore},
    };
    // clang-format on
    for (const Case& c : cases) {
        Range range(4, {1875, 123456, 12, 999998});
        range.withTargets([](std::vector<Target>& ts) {
            ts[0].hits = 7;
            ts[3].parameters[parameter::kChannel] = 3;
        });
        std::string replies;
        for (const char* frame : c.frames) {
            for (const std::string& reply : hearFrame(range, hex(frame), c.channel))
                replies += (replies.empty() ? "" : " | ") + hexOf(reply);
        }
        EXPECT_EQ(replies, c.replies) << c.name;
        EXPECT_EQ(describe(range), c.after) << c.name;
    }
}

TEST(FrameSplitter, CutsStreamsByCommandLength) {
    struct Case {
        const char* name;
        bool leadingZero;
        std::vector<std::pair<int, const char*>> pieces;  // at ms, bytes
        const char* frames;
    };
    // clang-format off
    const Case cases[] = {
        {"back to back, split anywhere", false, {{0, "F3 01 F2"}, {1, "02 F6 00"}, {2, "18 75 13 ED"}},
         "F3 01 | F2 02 | F6 00 18 75 13 ED"},
        {"bytes that start no frame are skipped", false, {{0, "0A 20 2B F3 05"}}, "F3 05"},
        {"a five-byte write is dropped at the gap, not joined to the next frame", false,
         {{0, "F6 00 18 75 02"}, {100, "F6 00 18 75 01 05"}}, "F6 00 18 75 01 05"},
        {"a pause shorter than the gap keeps the frame", false, {{0, "F6 00 18"}, {49, "75 13 ED"}},
         "F6 00 18 75 13 ED"},
        {"Wi-Fi: the leading zero is taken off, zeros inside a frame are its bytes", true,
         {{0, "00 F3 01 00 F4 05 00 00"}, {1, "00 00 00 F0 E7"}}, "F3 01 | F4 05 00 00 00 00 | F0 E7"},
        {"Wi-Fi: no frame without its zero, none for an unknown command", true, {{0, "F3 01 00 99 00 F0 E7"}},
         "F0 E7"},
    };
    // clang-format on
    for (const Case& c : cases) {
        FrameSplitter splitter(c.leadingZero);
        std::string frames;
        for (const auto& [ms, bytes] : c.pieces) {
            for (const std::string& f : splitter.feed(hex(bytes), at(ms)))
                frames += (frames.empty() ? "" : " | ") + hexOf(f);
        }
        EXPECT_EQ(frames, c.frames) << c.name;
    }
}

}  // namespace
}  // namespace halvane::sim
