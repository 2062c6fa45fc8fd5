// The Wi-Fi bridge: its hello, leading-zero frames relayed to the targets, replies as chunks, faults.

#include "sim/wifi_bridge.h"

#include "sim/devices.h"
#include "sim_support.h"

namespace halvane::sim {
namespace {

using testing::at;
using testing::describe;
using testing::dueHex;
using testing::hex;

constexpr const char* kHelloHex = "2A 4B 52 56 5F 43 4F 4E 4E 2A";

TEST(WifiBridge, GreetsAloneThenRelaysFramesAndReplies) {
    Range range(3, {1875});
    range.addHit(2);
    range.withTargets([](std::vector<Target>& ts) { ts[2].parameters[parameter::kChannel] = 1; });
    auto bridge = makeWifiBridge(range, {});
    EXPECT_EQ(bridge->nextDue(), TimePoint{});
    EXPECT_EQ(dueHex(*bridge, at(0)), kHelloHex);
    EXPECT_FALSE(bridge->nextDue());

    struct Step {
        const char* in;
        const char* out;
    };
    const Step steps[] = {
        {"00 F3 E7", ""},
        {"00 FA 02", "EA 01"},
        {"00 FA 02 00 FA 01", "EA 01 | EA 00"},
        {"00 F6 00 18 75 13 ED", "F6 01 00 18 75 00"},
        {"00 F4 02 00 00 00 00", "F4 02 01 00 02 02"},
        {"00 FB E7 00 FA 02", "EA 00"},
        {"00 F6 00 18 75 01", ""},  // the rest comes in the next segment
        {"ED", "F6 01 00 18 75 0A"},
        {"F3 01 00 FA 03", ""},  // no zero before the first frame; target 3 is on another channel
    };
    int ms = 0;
    for (const Step& s : steps) {
        bridge->receive(hex(s.in), at(++ms));
        EXPECT_EQ(dueHex(*bridge, at(ms)), s.out) << s.in;
    }
    EXPECT_EQ(describe(range), "F0 F0 D0@1");
    EXPECT_FALSE(bridge->wantsClose());
}

TEST(WifiBridge, DropsTheConnectionAfterItsFrames) {
    Range range(2);
    Faults faults;
    faults.dropAfterFrames = 2;
    auto bridge = makeWifiBridge(range, faults);
    bridge->takeDue(at(0));
    bridge->receive(hex("00 FA 01"), at(1));
    EXPECT_FALSE(bridge->wantsClose());
    bridge->receive(hex("00 F3 02 00 FA 01"), at(2));
    EXPECT_TRUE(bridge->wantsClose());
    EXPECT_EQ(dueHex(*bridge, at(2)), "EA 00");  // the first frame's reply only
    bridge->receive(hex("00 F3 01"), at(3));
    EXPECT_EQ(describe(range), "D0 F0");
}

TEST(WifiBridge, FaultsBendRepliesButNeverTheHello) {
    Range range(1);
    Faults split, silent, late;
    split.splitReplies = true;
    silent.silent = true;
    late.lateBy = std::chrono::milliseconds(100);
    auto bridge = makeWifiBridge(range, late);
    bridge->receive(hex("00 FA 01"), at(0));
    EXPECT_EQ(dueHex(*bridge, at(99)), kHelloHex);
    EXPECT_EQ(dueHex(*bridge, at(100)), "EA 00");

    bridge = makeWifiBridge(range, split);
    bridge->receive(hex("00 F4 01 00 00 00 00"), at(0));
    EXPECT_EQ(dueHex(*bridge, at(0)), std::string(kHelloHex) + " | F4 01 01");
    EXPECT_EQ(dueHex(*bridge, at(50)), "00 01 01");

    bridge = makeWifiBridge(range, silent);
    bridge->receive(hex("00 FA 01 00 F2 01"), at(0));
    EXPECT_EQ(dueHex(*bridge, at(1000)), kHelloHex);
    EXPECT_EQ(describe(range), "O0");
}

}  // namespace
}  // namespace halvane::sim
