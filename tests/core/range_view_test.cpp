// The range view: where tiles, captions and row labels stand in each window, what the captions say,
// the record of each target's face, and how far the scroll bars step.

#include "range/range_view.h"

#include <gtest/gtest.h>

#include "range/range_scroll.h"
#include "text/fault.h"

namespace halvane {
namespace {

using wire::Action;
using K = RangeWindowKind;

std::string at(TwipsPoint p) {
    return "@" + std::to_string(static_cast<int>(p.left)) + "," + std::to_string(static_cast<int>(p.top));
}

RangeView built(SharedState& state, K kind, const char* iconSize, bool startBottom, int targets, int cols) {
    state.IconSize = iconSize;
    state.StartBottom = startBottom;
    state.NumTargets = static_cast<std::int16_t>(targets);
    state.NumCols = static_cast<std::int16_t>(cols);
    RangeView view(state, kind);
    view.build();
    return view;
}

TEST(RangeView, LayoutsPlaceTilesAndRowLabelsSizeTheRangeAndLeaveCurTileOnTheLastTileBuilt) {
    // "7@920,370" for each target shown, "Row 3@120,770" for each row label in build order, then the
    // range's size in twips and CurTile.
    // clang-format off
    struct Case { const char* name; K kind; const char* size; bool bottom; int targets, cols;
                  std::initializer_list<int> shown; const char* expected; };
    const Case cases[] = {
        {"7 by 3 top left: rows of 3, 3, 1", K::Run, "Medium", false, 7, 3, {1, 3, 4, 7},
         "1@920,370 3@3080,370 4@920,2370 7@920,4370 Row 1@120,770 Row 2@120,2770 Row 3@120,4770 4160x6870 7"},
        {"7 by 3 bottom left: target 1 lowest, 7 alone on top", K::Run, "Medium", true, 7, 3, {1, 3, 4, 7},
         "1@920,4370 3@3080,4370 4@920,2370 7@920,370 Row 3@120,770 Row 2@120,2770 Row 1@120,4770 4160x6370 3"},
        {"6 by 3 top left: no third label, only 250 below", K::Live, "Medium", false, 6, 3, {6},
         "6@3080,2370 Row 1@120,770 Row 2@120,2770 4160x4620 6"},
        {"more columns than targets, top left", K::Run, "Large", false, 4, 10, {4},
         "4@5720,370 Row 1@120,770 7320x3000 4"},
        {"more columns than targets, bottom left", K::Run, "Large", true, 4, 10, {4},
         "4@5720,370 Row 1@120,770 7320x2870 4"},
        {"layout window, Small", K::Layout, "Small", false, 7, 3, {4, 7},
         "4@920,1720 7@920,3070 Row 1@120,770 Row 2@120,2120 Row 3@120,3470 3620x4920 7"},
        {"layout window, Medium", K::Layout, "Medium", true, 4, 2, {1, 3},
         "1@920,2170 3@920,370 Row 2@120,770 Row 1@120,2570 3080x3970 2"},
        {"run window, Small", K::Run, "Small", true, 3, 2, {1, 3},
         "1@920,2020 3@920,370 Row 2@120,770 Row 1@120,2420 2720x3670 2"},
        {"an unknown size lays out as Medium", K::Run, "Huge", false, 2, 2, {2},
         "2@2000,370 Row 1@120,770 3080x2620 2"},
    };
    // clang-format on
    for (const auto& c : cases) {
        SharedState state;
        const RangeView view = built(state, c.kind, c.size, c.bottom, c.targets, c.cols);
        std::string got;
        for (int t : c.shown) got += std::to_string(t) + at(view.tiles()[t - 1].tile) + " ";
        for (const auto& label : view.rowLabels()) got += label.caption + at(label.place) + " ";
        got += std::to_string(int(view.picMainWidth())) + "x" + std::to_string(int(view.picMainHeight())) +
               " " + std::to_string(view.CurTile);
        EXPECT_EQ(got, c.expected) << c.name;
    }
}

TEST(RangeView, TileMapOfSevenByThreeAndTheGuards) {
    SharedState state;
    const RangeView view = built(state, K::Layout, "Medium", true, 7, 3);
    const auto& map = view.TileMap();
    EXPECT_EQ(std::vector<std::int16_t>(map[3].begin(), map[3].begin() + 4),
              (std::vector<std::int16_t>{0, 7, 0, 0}));
    EXPECT_EQ(std::vector<std::int16_t>(map[1].begin(), map[1].begin() + 4),
              (std::vector<std::int16_t>{0, 1, 2, 3}));
    EXPECT_EQ(view.TileRows(), 3);

    const RangeView empty = built(state, K::Run, "Medium", true, 0, 0);
    EXPECT_EQ(std::make_tuple(state.NumTargets, state.NumCols, empty.tiles().size(), int{empty.CurTile}),
              std::make_tuple(std::int16_t{1}, std::int16_t{1}, std::size_t{1}, 1));
    EXPECT_THROW(built(state, K::Run, "Medium", true, 201, 10), Fault);
}

TEST(RangeView, CaptionsOfTarget1ByWindowSizeTypeAndGroups) {
    // Number | serial | hits caption, "-" for one not built.
    // clang-format off
    struct Case { const char* name; K kind; const char* size; bool lmSeries, groups; const char* expected; };
    const Case cases[] = {
        {"Large stands right of the tile", K::Run, "Large", true, false,
         "Target 1@1070,90|SN 100001@1070,2070|Hits: 12@1070,2270"},
        {"Medium stands over it", K::Live, "Medium", true, false,
         "Target 1@920,120|SN 100001@920,1570|Hits: 12@920,1770"},
        {"Small stands left of it", K::Run, "Small", true, false,
         "Target 1@770,120|SN 100001@770,1270|Hits: 12@770,1470"},
        {"the layout window has no hits", K::Layout, "Medium", true, false, "Target 1@920,120|SN 100001@920,1570|-"},
        {"groups: group caption and no hits", K::Run, "Medium", true, true, "Group 2@920,120|SN 100001@920,1570|-"},
        {"other target types: number only", K::Live, "Medium", false, false, "Target 1@920,120|-|-"},
    };
    // clang-format on
    for (const auto& c : cases) {
        SharedState state;
        state.TypeLMSeries = c.lmSeries;
        state.UseGroups = c.groups;
        state.GroupNum[1] = 2;
        state.SerialNum[1] = 100001;
        state.ReplyHex[1] = "12";
        const RangeTile t = built(state, c.kind, c.size, false, 1, 1).tiles()[0];
        EXPECT_EQ(t.numberText + at(t.numberCaption) + "|" +
                      (t.serialText ? *t.serialText + at(t.serialCaption) : "-") + "|" +
                      (t.hitsText ? *t.hitsText + at(t.hitsCaption) : "-"),
                  c.expected)
            << c.name;
    }
}

TEST(RangeView, HitCaptionsOfCurTile) {
    SharedState state;
    state.TypeLMSeries = true;
    state.ReplyHex[7] = "FF";
    RangeView view = built(state, K::Run, "Medium", false, 7, 3);
    std::vector<int> told;
    view.setObserver([&](int target) { told.push_back(target); });
    view.CurTile = 6;
    view.DrawHitsZero();
    const std::string zero = *view.tiles()[5].hitsText;
    view.DrawHitsRaw();
    view.CurTile = 7;
    view.DrawHitsZero();
    EXPECT_EQ(zero + "|" + *view.tiles()[5].hitsText + "|" + *view.tiles()[6].hitsText,
              "Hits: 0|Hits: |Hits: FF");
    EXPECT_EQ(told, (std::vector<int>{6, 6, 7}));

    // With groups the live window hides the caption; the run window has none to draw on.
    state.UseGroups = true;
    RangeView live = built(state, K::Live, "Medium", false, 7, 3);
    live.DrawHitsZero();
    EXPECT_FALSE(live.tiles()[6].hitsVisible);
    RangeView run = built(state, K::Run, "Medium", false, 7, 3);
    EXPECT_THROW(run.DrawHitsZero(), Fault);
}

TEST(RangeView, FacesStartDownAreKeptPerTargetTellTheObserverAndShowTheirPicture) {
    SharedState state;
    RangeView view(state, K::Run);
    std::vector<int> told;
    view.setObserver([&](int target) { told.push_back(target); });
    state.NumTargets = 7;
    state.NumCols = 3;
    view.build();
    view.setFace(3, Action::Friend);
    view.setFace(3, Action::Friend);
    view.setFace(7, Action::Edge);
    EXPECT_EQ(std::make_tuple(view.face(1), view.face(3), view.face(7)),
              std::make_tuple(Action::Down, Action::Friend, Action::Edge));
    EXPECT_EQ(told, (std::vector<int>{0, 3, 7})) << "the whole range once, then each change once";
    for (int outside : {0, 8, -1}) {
        EXPECT_THROW(view.face(outside), Fault) << outside;
        EXPECT_THROW(view.setFace(outside, Action::Foe), Fault) << outside;
    }

    std::string names;
    for (auto [size, face] : {std::pair{"Large", Action::Friend},
                              {"Medium", Action::Foe},
                              {"Small", Action::Edge},
                              {"Small", Action::Down},
                              {"large", Action::Down}}) {
        state.IconSize = size;
        names += view.pictureName(face) + " ";
    }
    EXPECT_EQ(names, "friend_lg foe_md edge_sm down_sm  ");
}

TEST(RangeScroll, StepsAndReach) {
    std::string steps;
    for (auto [size, lines] : {std::pair{"Large", 1}, {"Medium", 0}, {"Small", 5}}) {
        const RangeScroll scroll(size, lines);
        steps += std::to_string(scroll.lineStep()) + "/" + std::to_string(scroll.wheelStep()) + " ";
    }
    EXPECT_EQ(steps, "107/107 72/216 55/275 ");
    EXPECT_EQ(std::make_tuple(RangeScroll::maximum(1000, 400), RangeScroll::maximum(300, 400),
                              RangeScroll::toPixels(6870, 15), RangeScroll::toPixels(6871, 15),
                              RangeScroll::toPixels(6870, 10)),
              std::make_tuple(600, 0, 458, 459, 687));
}

}  // namespace
}  // namespace halvane
