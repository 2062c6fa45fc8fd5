// The range layout window: what each answer to the serial and group boxes stores, the exact lines of
// hvn.cfg, who sees which popup item, and a file that will not take the numbers.

#include "range/range_display.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "scripted_operator.h"
#include "temp_dir.h"
#include "text/fault.h"

namespace halvane::testing {
namespace {

constexpr int L = RangeDisplay::kLeftButton, R = RangeDisplay::kRightButton;
const std::string kSerialBox = "input: Serial Number: Enter Serial Number [0]";
const std::string kGroupBox = "input: 0: Group Number (1-20) []";

class RangeLayout : public ::testing::Test {
  protected:
    void SetUp() override {
        state.NumTargets = 8;
        state.NumCols = 4;
        state.TypeLMSeries = true;
        state.SerialNum[7] = 100007;
        state.ConfigFile = dir.file("hvn.cfg");
    }
    RangeDisplay& open() {
        window = std::make_unique<RangeDisplay>(state, op);
        window->Load();
        return *window;
    }
    // Clicks tile `target`, picks `item` and answers its box.
    void enter(int target, const char* item, std::optional<std::string> answer) {
        op.popupChoices = {item};
        op.inputs = {std::move(answer)};
        window->PicTarget_MouseDown(target, L);
    }
    const RangeTile& tile(int target) const { return window->view().tiles().at(target - 1); }
    std::string config() const { return readBytes(dir / "hvn.cfg"); }

    TempDir dir;
    SharedState state;
    ScriptedOperator op;
    std::unique_ptr<RangeDisplay> window;
};

TEST_F(RangeLayout, SerialNumbersBetweenZeroAndTheLimitAreStoredAndEverythingElseIsDroppedInSilence) {
    const struct {
        std::optional<std::string> answer;
        int stored;
    } cases[] = {{"999998", 999998}, {"999999", 100007}, {"12ab", 12},           {"0", 100007},
                 {"-5", 100007},     {"", 100007},       {std::nullopt, 100007}, {" 41.5", 42}};
    for (const auto& c : cases) {
        std::filesystem::remove(dir / "hvn.cfg");
        state.SerialNum[7] = 100007;
        open();
        int observed = 0;
        window->view().setObserver([&observed](int target) { observed = target; });
        enter(7, "M_SN", c.answer);
        const std::string label = c.answer.value_or("Cancel");
        EXPECT_EQ(state.SerialNum[7], c.stored) << label;
        EXPECT_EQ(tile(7).serialText, "SN " + std::to_string(c.stored)) << label;
        const bool kept = c.stored != 100007;
        EXPECT_EQ(observed, kept ? 7 : 0) << label << ": the tile is redrawn at once";
        EXPECT_EQ(config(), kept ? "[Serial Num]\r\n 7= " + std::to_string(c.stored) + "\r\n" : "") << label;
        EXPECT_EQ(op.log, (std::vector<std::string>{"popup: Target_Popup", kSerialBox})) << label;
        op.log.clear();
    }
}

TEST_F(RangeLayout, GroupsAreTakenAsTheyComeAndTheCountOnlyGrows) {
    state.UseGroups = true;
    state.NumGroups = 3;
    state.GroupNum[2] = 1;
    writeBytes(dir / "hvn.cfg", "[Settings]\r\nTargets=8\r\nNum Groups=3\r\n[Group Num]\r\n 2=1\r\n");
    open();
    EXPECT_EQ(tile(2).numberText, "Group 1");
    const struct {
        int target;
        std::optional<std::string> answer;
        int group, numGroups;
    } steps[] = {{2, "25", 25, 25}, {3, "2", 2, 25}, {2, std::nullopt, 0, 25}, {4, "", 0, 25}};
    for (const auto& s : steps) {
        enter(s.target, "M_Group", s.answer);
        EXPECT_EQ(state.GroupNum[s.target], s.group) << s.target;
        EXPECT_EQ(state.NumGroups, s.numGroups) << s.target;
        EXPECT_EQ(tile(s.target).numberText, "Group " + std::to_string(s.group)) << s.target;
    }
    EXPECT_EQ(config(),
              "[Settings]\r\nTargets=8\r\nNum Groups= 25\r\n[Group Num]\r\n 2= 0\r\n 3= 2\r\n 4= 0\r\n");
    EXPECT_EQ(op.log.at(1), kGroupBox);

    // Beyond what a group number can hold: told, and nothing changes.
    const std::string before = config();
    EXPECT_THROW(enter(3, "M_Group", "40000"), Fault);
    EXPECT_EQ(state.GroupNum[3], 2);
    EXPECT_EQ(config(), before);
}

TEST_F(RangeLayout, ThePopupOffersWhatTheSettingsAllowAndOnlyALeftClickOpensIt) {
    const struct {
        bool lm, groups;
        std::vector<std::string> offered;  // visible items; empty: no popup at all
    } cases[] = {{true, false, {"M_SN"}},
                 {false, true, {"M_Group"}},
                 {true, true, {"M_SN", "M_Group"}},
                 {false, false, {}}};
    for (const auto& c : cases) {
        state.TypeLMSeries = c.lm;
        state.UseGroups = c.groups;
        open();
        op.log.clear();
        op.popupItems.clear();
        window->PicTarget_MouseDown(5, R);
        EXPECT_TRUE(op.log.empty()) << "a right click does nothing";
        window->PicTarget_MouseDown(5, L);
        std::vector<std::string> offered;
        for (const PopupItem& item : op.popupItems)
            if (item.visible && item.enabled) offered.push_back(item.name);
        EXPECT_EQ(offered, c.offered) << c.lm << c.groups;
        EXPECT_EQ(op.log.size(), c.offered.empty() ? 0u : 1u) << c.lm << c.groups;
        if (!c.offered.empty()) {
            EXPECT_EQ(op.popupItems.front().caption, "Change Serial #");
        }
    }
    // A hidden item picked all the same (a stale menu) asks nothing.
    state.TypeLMSeries = true;
    open();
    op.log.clear();
    op.popupChoices = {"M_Group"};
    window->PicTarget_MouseDown(5, L);
    EXPECT_EQ(op.log, std::vector<std::string>{"popup: Target_Popup"});
}

TEST_F(RangeLayout, AFileThatWillNotTakeTheNumbersIsToldOnceAndTheNumbersHoldForTheRun) {
    writeBytes(dir / "blocked", "a file where a folder should be");
    state.ConfigFile = (dir / "blocked" / "hvn.cfg").string();
    state.UseGroups = true;
    open();
    enter(1, "M_SN", "500");
    enter(2, "M_Group", "4");  // two writes, group and count
    EXPECT_EQ(state.SerialNum[1], 500);
    EXPECT_EQ(state.GroupNum[2], 4);
    EXPECT_EQ(state.NumGroups, 4);
    EXPECT_EQ(std::count_if(
                  op.log.begin(), op.log.end(),
                  [](const std::string& l) { return l.rfind("tell: Halvane: The target numbers", 0) == 0; }),
              1);
}

TEST_F(RangeLayout, ResizeCentresTheTextAndButtonAndTheRangeFillsTheRest) {
    open();
    window->Resize(3000, 1800);  // too narrow and too low: nothing moves
    EXPECT_EQ(std::make_pair(window->Label1.Left, window->OKButton.Left), std::make_pair(1200.0f, 2880.0f));
    EXPECT_EQ(window->picScrollBox.Height, 0);
    window->Resize(9000, 6000);
    EXPECT_EQ(std::make_pair(window->Label1.Left, window->OKButton.Left), std::make_pair(2452.5f, 4012.5f));
    EXPECT_EQ(std::make_pair(window->picScrollBox.Width, window->picScrollBox.Height),
              std::make_pair(8850.0f, 4000.0f));
    EXPECT_EQ(window->picScrollBox.Top, 1440);
}

}  // namespace
}  // namespace halvane::testing
