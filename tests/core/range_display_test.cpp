// The range layout window: what each answer to the serial and group boxes stores, the exact lines of
// hvn.cfg, a file that will not take them, and who sees which popup item.

#include "range/range_display.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "scripted_operator.h"
#include "temp_dir.h"
#include "text/fault.h"

namespace halvane::testing {
namespace {

struct RangeLayout : ::testing::Test {
    void SetUp() override {
        state.NumTargets = 8;
        state.TypeLMSeries = true;
        state.ConfigFile = dir.file("hvn.cfg");
    }
    void open() {
        window = std::make_unique<RangeDisplay>(state, op);
        window->Load();
    }
    // Clicks tile `target`, picks `item` and answers its box.
    void enter(int target, const char* item, std::optional<std::string> answer) {
        op.popupChoices = {item};
        op.inputs = {std::move(answer)};
        window->PicTarget_MouseDown(target, RangeDisplay::kLeftButton);
    }
    const RangeTile& tile(int target) const { return window->view().tiles().at(target - 1); }

    TempDir dir;
    SharedState state;
    ScriptedOperator op;
    std::unique_ptr<RangeDisplay> window;
};

TEST_F(RangeLayout, SerialNumbersBetweenZeroAndTheLimitAreStoredAndEverythingElseIsDroppedInSilence) {
    const std::pair<std::optional<std::string>, int> cases[] = {
        {"999998", 999998}, {"999999", 7}, {"12ab", 12}, {"0", 7}, {"-5", 7}, {"", 7}, {std::nullopt, 7}};
    std::fill(state.SerialNum.begin() + 1, state.SerialNum.end(), 7);
    open();
    int target = 0;
    for (const auto& [answer, stored] : cases) {
        enter(++target, "M_SN", answer);
        EXPECT_EQ(tile(target).serialText, "SN " + std::to_string(stored)) << answer.value_or("Cancel");
    }
    EXPECT_EQ(op.log.back(), "input: Serial Number: Enter Serial Number [0]");  // element 0, not the tile's
    EXPECT_EQ(readBytes(dir / "hvn.cfg"), "[Serial Num]\r\n 1= 999998\r\n 3= 12\r\n");
}

TEST_F(RangeLayout, GroupsAreTakenAsTheyComeTheCountOnlyGrowsAndCancelIsGroupZero) {
    state.UseGroups = true;
    state.NumGroups = 3;
    writeBytes(dir / "hvn.cfg", "[Settings]\r\nNum Groups=3\r\n[Group Num]\r\n 2=1\r\n");
    open();
    enter(2, "M_Group", "25");
    enter(3, "M_Group", "2");
    enter(2, "M_Group", std::nullopt);
    EXPECT_EQ(op.log.back(), "input: 0: Group Number (1-20) []");
    EXPECT_EQ(std::make_tuple(tile(2).numberText, tile(3).numberText, state.NumGroups),
              std::make_tuple("Group 0", "Group 2", 25));
    const std::string written = "[Settings]\r\nNum Groups= 25\r\n[Group Num]\r\n 2= 0\r\n 3= 2\r\n";
    EXPECT_EQ(readBytes(dir / "hvn.cfg"), written);
    // Beyond what a group number holds: a fault the operator is told of, and nothing changes.
    EXPECT_THROW(enter(3, "M_Group", "40000"), Fault);
    EXPECT_EQ(readBytes(dir / "hvn.cfg"), written);
    EXPECT_EQ(state.GroupNum[3], 2);

    // A file that will not take the numbers is told once; they hold for the run all the same.
    writeBytes(dir / "blocked", "");
    state.ConfigFile = (dir / "blocked" / "hvn.cfg").string();
    enter(4, "M_Group", "30");
    enter(5, "M_Group", "31");
    EXPECT_EQ(std::count_if(op.log.begin(), op.log.end(), [](auto& l) { return l.starts_with("tell:"); }), 1);
    EXPECT_EQ(std::make_tuple(state.GroupNum[4], state.GroupNum[5], state.NumGroups),
              std::make_tuple(30, 31, 31));
}

TEST_F(RangeLayout, ThePopupOffersWhatTheSettingsAllowAndOnlyALeftClickOpensIt) {
    const std::tuple<bool, bool, std::string> cases[] = {
        {true, false, "M_SN "}, {false, true, "M_Group "}, {true, true, "M_SN M_Group "}, {false, false, ""}};
    for (const auto& [lm, groups, offered] : cases) {
        state.TypeLMSeries = lm;
        state.UseGroups = groups;
        open();
        op.popupItems.clear();
        window->PicTarget_MouseDown(5, RangeDisplay::kRightButton);
        EXPECT_TRUE(op.popupItems.empty()) << "a right click does nothing";
        window->PicTarget_MouseDown(5, RangeDisplay::kLeftButton);
        std::string shown;
        for (const PopupItem& item : op.popupItems)
            if (item.visible && item.enabled) shown += item.name + " ";
        EXPECT_EQ(shown, offered);
    }
}

}  // namespace
}  // namespace halvane::testing
