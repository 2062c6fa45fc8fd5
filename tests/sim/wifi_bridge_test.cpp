// The Wi-Fi bridge: its hello, leading-zero frames relayed to the targets, replies as chunks, faults.

#include "sim/wifi_bridge.h"

#include "sim/devices.h"
#include "sim_support.h"

namespace halvane::sim {
namespace {

using namespace testing;

const std::string kHelloHex = "2A 4B 52 56 5F 43 4F 4E 4E 2A";

TEST(WifiBridge, GreetsAloneThenRelaysFramesAndReplies) {
    Range range(3, {1875});
    range.addHit(2);
    range.withTargets([](std::vector<Target>& ts) { ts[2].parameters[parameter::kChannel] = 1; });
    auto bridge = makeWifiBridge(range, {});
    EXPECT_EQ(bridge->nextDue(), TimePoint{});
    EXPECT_EQ(dueHex(*bridge, at(0)), kHelloHex);
    EXPECT_FALSE(bridge->nextDue());

    // How frames are cut and what targets make of them is the splitter's and the targets' to show.
    bridge->receive(hex("00 FA 02 00 F2 03"), at(1));
    EXPECT_EQ(dueHex(*bridge, at(1)), "EA 01");
    EXPECT_EQ(describe(range), "D0 D1 D0@1") << "target 3 is on another channel";
    EXPECT_FALSE(bridge->wantsClose());
}

TEST(WifiBridge, FaultsBendRepliesButNeverTheHelloAndDropTheConnection) {
    Range range(1);
    auto bridge = makeWifiBridge(range, {.lateBy = std::chrono::milliseconds(100)});
    bridge->receive(hex("00 FA 01"), at(0));
    EXPECT_EQ(dueHex(*bridge, at(99)), kHelloHex);
    EXPECT_EQ(bridge->nextDue(), at(100));
    EXPECT_EQ(dueHex(*bridge, at(100)), "EA 00");

    bridge = makeWifiBridge(range, {.splitReplies = true});
    bridge->receive(hex("00 F4 01 00 00 00 00"), at(0));
    EXPECT_EQ(dueHex(*bridge, at(0)), kHelloHex + " | F4 01 01");
    EXPECT_EQ(dueHex(*bridge, at(50)), "00 01 01");

    bridge = makeWifiBridge(range, {.silent = true});
    bridge->receive(hex("00 FA 01 00 F2 01"), at(0));
    EXPECT_EQ(dueHex(*bridge, at(1000)), kHelloHex);
    EXPECT_FALSE(bridge->nextDue());
    EXPECT_EQ(describe(range), "O0");

    bridge = makeWifiBridge(range, {.dropAfterFrames = 2});
    bridge->receive(hex("00 FA 01"), at(1));
    EXPECT_FALSE(bridge->wantsClose());
    bridge->receive(hex("00 F3 01"), at(2));
    EXPECT_TRUE(bridge->wantsClose());  // at its second frame, which still reached the targets
    bridge->receive(hex("00 FA 01 00 F2 01"), at(3));
    EXPECT_EQ(dueHex(*bridge, at(3)), kHelloHex + " | EA 00");  // what came before stays; nothing after
    EXPECT_EQ(describe(range), "F0");
}

}  // namespace
}  // namespace halvane::sim
