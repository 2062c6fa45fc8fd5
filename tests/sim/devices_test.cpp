// The simulated range and the devices that reach its targets over the air or by wire: what the range
// refuses and how hits count, frames heard by targets and how a stream is cut into frames, the line
// controller's text frames, the radio modem's escape and AT lines, and the Wi-Fi bridge's faults.

#include "sim/devices.h"
#include "sim/frame_splitter.h"
#include "sim/line_controller.h"
#include "sim/radio_modem.h"
#include "sim/range.h"
#include "sim/target_air.h"
#include "sim/wifi_bridge.h"
#include "sim_support.h"

namespace halvane::sim {
namespace {

using namespace testing;

TEST(Range, RefusesWhatNoRangeHolds) {
    EXPECT_THROW(Range(0), std::invalid_argument);
    EXPECT_THROW(Range(201), std::invalid_argument);
    EXPECT_THROW(Range(2, {1, -1}), std::invalid_argument);
    EXPECT_THROW(Range(1, {999999}), std::invalid_argument);
    EXPECT_NO_THROW(Range(200, {999998, 0}));
}

TEST(Range, HitsCountAndADyingTargetShowsItsDieFace) {
    // clang-format off
    struct Case { const char* name; std::uint8_t mode, count, dieFace; int hits; const char* after; };
    const Case cases[] = {
        {"as delivered: Die at the first hit, face Down", 2, 1, 0, 1, "D1"},
        {"Die after three: two hits leave it up", 2, 3, 1, 2, "F2"},
        {"Die after three: the third shows the die face", 2, 3, 1, 3, "E3"},
        {"Die face Foe", 2, 1, 2, 1, "O1"},
        {"Off only counts", 0, 1, 0, 4, "F4"},
        {"Bob only counts", 1, 1, 0, 2, "F2"},
        {"the count stops at 255", 0, 1, 0, 300, "F255"},
        {"a die face that is no face changes nothing", 2, 1, 7, 1, "F1"},
    };
    // clang-format on
    for (const Case& c : cases) {
        Range range(1);
        range.withTargets([&](std::vector<Target>& ts) {
            ts[0].face = Face::Friend;
            ts[0].parameters[parameter::kHitMode] = c.mode;
            ts[0].parameters[parameter::kHitCount] = c.count;
            ts[0].parameters[parameter::kDieFace] = c.dieFace;
        });
        for (int i = 0; i < c.hits; ++i) range.addHit(1);
        range.addHit(0);
        range.addHit(2);
        EXPECT_EQ(describe(range), c.after) << c.name;
    }
}

TEST(Range, HitBlockListsScoredTargetsByNumber) {
    Range range(4);
    range.withTargets([](std::vector<Target>& ts) {
        ts[0].hits = 2;
        ts[2].hits = 255;
        ts[2].parameters[parameter::kTargetNumber] = 150;
        ts[3].hits = 9;
        ts[3].parameters[parameter::kTargetNumber] = 0;  // answers to no number: not in the table
    });
    std::string expected(201, '\xFF');
    expected[0] = 2;
    expected[1] = 2;
    expected[150] = '\xFE';
    EXPECT_EQ(hexOf(range.hitBlock()), hexOf(expected));
    EXPECT_EQ(hexOf(Range(5).hitBlock()), hexOf(std::string(1, '\0') + std::string(200, '\xFF')));
}

TEST(TargetAir, FramesChangeTargetsAndAreAnsweredSixOrTwoBytes) {
    // clang-format off
    // `replies`: every reply of every frame, joined by " | ".
    struct Case { const char* name; int channel; std::vector<const char*> frames; const char* replies;
                  const char* after; };
    const char* const kAsBefore = "D7 D0 D0 D0@3";
    // Slots 1..4: serials 1875, 123456, 12, 999998; slot 1 has 7 hits; slot 4 is on channel 3.
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
    // clang-format off
    // `pieces`: at ms, bytes.
    struct Case { const char* name; bool leadingZero; std::vector<std::pair<int, const char*>> pieces;
                  const char* frames; };
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
    // clang-format off
    struct Case { const char* name; int targets; std::vector<const char*> pieces; const char* after; };
    const char* const kAllDown = "DDDDDDDD DDDDDDDD DDDDDDDD DDDDDDDD D";
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

TEST(RadioModem, EscapeNeedsItsGuardOnBothSides) {
    // clang-format off
    struct Case { const char* name; std::vector<Step> steps; bool commandMode; };
    const Case cases[] = {
        {"the console's probe", {{0, "+++", ""}, {99, "", ""}, {100, "", "OK\r"}}, true},
        {"a plus at a time", {{0, "+", ""}, {30, "+", ""}, {60, "+", ""}, {160, "", "OK\r"}}, true},
        {"a byte inside the guard after", {{0, "+++", ""}, {50, "\xF3\x01", ""}, {500, "", ""}}, false},
        {"no guard before", {{0, "\xF3\x01", ""}, {50, "+++", ""}, {500, "", ""}}, false},
        {"a fourth plus", {{0, "++++", ""}, {500, "", ""}}, false},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Range range(1);
        RadioModem modem(range, {});
        run(modem, c.steps);
        EXPECT_EQ(modem.inCommandMode(), c.commandMode);
    }
}

// Target 3 is on channel 2: the modem reaches it only once set to that channel. Late, split and silent
// replies are the reply queue's, shown on the Wi-Fi bridge and the transmitter.
TEST(RadioModem, AtLinesSetTheChannelThatDataGoesOutOn) {
    Range range(3);
    range.addHit(1);
    range.withTargets([](std::vector<Target>& ts) { ts[2].parameters[parameter::kChannel] = 2; });
    RadioModem modem(range, {});
    run(modem, {
                   {0, hex("F3 E7 FA 01 FA 03"), hex("EA 01")},
                   {1000, "+++", ""},
                   {1100, "", "OK\r"},
                   {1200, "ATHP\r", "0\r"},
                   {1300, "ATHP7\r", "ERROR\r"},
                   {1310,
                    "\xF2\x01"
                    "ATXY\r\r\nAT\r",
                    "ERROR\rOK\r"},                                // in command mode: not on the air
                   {2200, "ATHP2\rATWR\rATCN\r", "OK\rOK\rOK\r"},  // the radio setup's burst
                   {2300, hex("F6 01 00 03 13 ED F2 E7"), hex("F6 03 01 00 03 02")},
                   {3000, "+++", ""},
                   {3100, "", "OK\r"},
                   {3200, "athp\r", "2\r"},
                   {3300, "ATCN\r\n", "OK\r"},  // the probe's ATCN, LF and all
                   {4000, "+++", ""},
                   {4100, "", "OK\r"},
                   {14099, "AT\r", "OK\r"},  // just inside ten quiet seconds
                   {24099, "ATHP\r", ""},    // ten quiet seconds: back in data mode
               });
    EXPECT_EQ(describe(range), "F1 F0 O0@2");
    EXPECT_EQ(modem.channel(), 2);
}

const std::string kHelloHex = "2A 4B 52 56 5F 43 4F 4E 4E 2A";

// The hello alone and frames relayed to the targets show end to end, on the console's socket.
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
