// Face Time: the fill, the gap fill above, the second action, and the stops at a Pause row.

#include "authoring/face_time.h"

#include "program_fixture.h"

namespace halvane {
namespace {

struct FaceTime : testing::ProgramFixture {
    // Highlights the cells and presses OK with the given actions (-1 for none) and length.
    void apply(std::vector<std::pair<int, int>> cells, int first, const std::string& seconds,
               int second = -1) {
        for (const auto& [row, col] : cells) {
            grid().setCellBackColor(row, col, grid().BackColorSel);
            state.SelRow[static_cast<std::size_t>(col)] = static_cast<std::int16_t>(row);
        }
        Face_time dialog(state, grid());
        if (first >= 0) dialog.setFirst(static_cast<Face_time::Option>(first));
        if (second >= 0) dialog.setSecond(static_cast<Face_time::Option>(second));
        dialog.Text1 = seconds;
        dialog.OKButton();
        EXPECT_TRUE(dialog.closed());
    }
};

TEST_F(FaceTime, WorkedExampleCarriesTheWordDownThenFillsThenAddsTheSecondActionPerColumn) {
    put(1, {{3, "Foe"}});
    apply({{8, 1}, {10, 3}}, Face_time::OptFriend, "3", Face_time::OptDown);
    EXPECT_EQ(column(1, 1, 12), ". . Foe Foe Foe Foe Foe Friend Friend Friend Down .");
    EXPECT_EQ(column(3, 9, 14), ". Friend Friend Friend Down .") << "each cell is filled from its own row";
    EXPECT_EQ(state.SelRow[1], 8) << "the highlight book-keeping is left to the caller";
    EXPECT_EQ(
        std::make_tuple(grid().cellBackColor(7, 1), grid().cellBackColor(9, 1), grid().cellBackColor(11, 1)),
        std::make_tuple(colors::Foe, colors::Friend, colors::Down));
    EXPECT_TRUE(state.FileChanged);
}

TEST_F(FaceTime, EdgeCasesOfTheFill) {
    constexpr int kFoe = Face_time::OptFoe;
    // `before`: words in column 1; `row`: the highlighted cell; rows `from` to `to` of column 1 `after`.
    // clang-format off
    struct Case { const char* name; std::vector<std::pair<int, std::string>> before; int row;
                  std::string seconds; int second; int from, to; const char* after; };
    const Case cases[] = {
        {"row 1 has nothing above", {}, 1, "2", -1, 1, 4, "Edge Edge . ."},
        {"clipped at the last row, no second action", {}, 29, "5", kFoe, 28, 31, ". Edge Edge Edge"},
        {"second action in the last row", {}, 29, "2", kFoe, 28, 31, ". Edge Edge Foe"},
        {"zero seconds: second action below, the cell keeps its word", {{5, "Down"}}, 5, "0", kFoe, 4, 7,
         ". Down Foe ."},
        {"text that is no number counts as zero", {}, 5, "abc", -1, 4, 6, ". . ."},
        {"a Pause above carries nothing", {{2, "Pause"}}, 5, "1", -1, 1, 6, ". Pause . . Edge ."},
        {"the nearest word above is carried, not one higher", {{2, "Foe"}, {4, "Down"}}, 6, "1", -1, 1, 7,
         ". Foe . Down Down Edge ."},
        {"the cell's own old word plays no part", {{6, "Friend"}}, 6, "1", -1, 5, 7, ". Edge ."},
        {"second action written over a Pause row after the fill", {{8, "Pause"}}, 6, "2", kFoe, 5, 9,
         ". Edge Edge Foe ."},
    };
    // clang-format on
    for (const auto& c : cases) {
        state.FileChanged = false;
        SetUp();  // a fresh Program for each case
        put(1, c.before);
        apply({{c.row, 1}}, Face_time::OptEdge, c.seconds, c.second);
        EXPECT_EQ(column(1, c.from, c.to), c.after) << c.name;
    }
}

TEST_F(FaceTime, APauseInsideTheFillEndsTheWholeCommand) {
    put(1, {{7, "Pause"}});
    put(2, {{7, "Pause"}});
    apply({{5, 1}, {3, 2}}, Face_time::OptFoe, "5");
    EXPECT_EQ(column(1, 4, 8), ". Foe Foe Pause .");
    EXPECT_EQ(column(2, 2, 4), ". . .") << "the columns after the stop stay as they were";
    EXPECT_TRUE(highlighted(3, 2) && state.FileChanged);
}

TEST_F(FaceTime, FillAndSecondActionUnmergeTheirRowsButTheGapFillDoesNot) {
    put(1, {{2, "Foe"}});
    for (int r : {3, 5, 7}) grid().setMergeRow(r, true);
    apply({{5, 1}}, Face_time::OptDown, "2", Face_time::OptEdge);
    EXPECT_EQ(std::make_tuple(grid().MergeRow(3), grid().MergeRow(5), grid().MergeRow(7)),
              std::make_tuple(true, false, false));
}

TEST_F(FaceTime, NothingChosenOrNothingHighlightedChangesNothing) {
    apply({{4, 1}}, -1, "3", Face_time::OptFoe);
    EXPECT_EQ(column(1, 4, 7) + (state.FileChanged ? " changed" : ""), ". . . .");
    state.SelRow = {};
    apply({}, Face_time::OptFoe, "3");
    EXPECT_FALSE(state.FileChanged);
}

TEST_F(FaceTime, PlusStopsAtTheSecondsLeftFromTheCurrentRowAndMinusAtOne) {
    grid().setRow(28);
    Face_time dialog(state, grid());
    for (const char* want : {"2", "3", "3"}) {  // row 28 + 3 reaches the last second
        dialog.CmdPlus();
        EXPECT_EQ(dialog.Text1, want);
    }
    dialog.Text1 = "1";
    dialog.CmdMinus();
    EXPECT_EQ(dialog.Text1, "1");
}

}  // namespace
}  // namespace halvane
