// The simulated range: what it refuses, hits with the hit mode, and the transmitter's hit table.

#include "sim/range.h"

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
    struct Case {
        const char* name;
        std::uint8_t mode, count, dieFace;
        int hits;
        const char* after;
    };
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

}  // namespace
}  // namespace halvane::sim
