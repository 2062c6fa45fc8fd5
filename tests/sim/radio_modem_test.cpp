// The radio modem: the "+++" escape and its guard, the AT lines, and its transparency to the targets.

#include "sim/radio_modem.h"

#include "sim/devices.h"
#include "sim_support.h"

namespace halvane::sim {
namespace {

using namespace testing;

TEST(RadioModem, EscapeNeedsItsGuardOnBothSides) {
    struct Case {
        const char* name;
        std::vector<Step> steps;
        bool commandMode;
    };
    const Case cases[] = {
        {"the console's probe", {{0, "+++", ""}, {99, "", ""}, {100, "", "OK\r"}}, true},
        {"a plus at a time", {{0, "+", ""}, {30, "+", ""}, {60, "+", ""}, {160, "", "OK\r"}}, true},
        {"a byte inside the guard after", {{0, "+++", ""}, {50, "\xF3\x01", ""}, {500, "", ""}}, false},
        {"no guard before", {{0, "\xF3\x01", ""}, {50, "+++", ""}, {500, "", ""}}, false},
        {"a fourth plus", {{0, "++++", ""}, {500, "", ""}}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Range range(1);
        RadioModem modem(range, {});
        run(modem, c.steps);
        EXPECT_EQ(modem.inCommandMode(), c.commandMode);
    }
}

// Target 3 is on channel 2: the modem reaches it only once set to that channel.
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
                   {1310, "ATXY\r\r\nAT\r", "ERROR\rOK\r"},
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

// Late and silent replies are the reply queue's, shown on the Wi-Fi bridge and the transmitter.
TEST(RadioModem, SplitRepliesKeepTheirOrder) {
    Range range(1);
    auto modem = makeRadioModem(range, {.splitReplies = true});
    modem->receive("+++", at(0));
    EXPECT_EQ(modem->nextDue(), at(100));
    EXPECT_EQ(dueHex(*modem, at(149)), "4F");
    EXPECT_EQ(dueHex(*modem, at(150)), "4B 0D");
    modem->receive(hex("F3 01"), at(1000));  // in command mode: not on the air
    modem->receive("X\rATCN\r", at(1000));
    EXPECT_EQ(dueHex(*modem, at(1100)), "45 52 52 | 4F 52 0D | 4F | 4B 0D");
    EXPECT_EQ(describe(range), "D0");
}

}  // namespace
}  // namespace halvane::sim
