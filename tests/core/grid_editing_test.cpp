// Clicks, the Delete key and Insert Pause on the Program grid, in both click interfaces.

#include "text/fault.h"
#include "program_fixture.h"

namespace halvane {
namespace {

constexpr int kLeft = 1, kRight = 2, kMiddle = 4;
constexpr int kCtrl = 2, kShift = 1;

struct GridEditing : testing::ProgramFixture {
    void interfaces(bool left, bool right) {
        state.LeftClickIF = left;
        state.RightClickIF = right;
    }
    // Face Time answers by choosing Friend for one second.
    void faceTimeChoosesFriend() {
        op.script<Face_time>([](Face_time& d) {
            d.setFirst(Face_time::OptFriend);
            d.OKButton();
        });
    }
    void clicks(std::vector<std::tuple<int, int, int, int>> clicks) {
        for (const auto& [button, shift, row, col] : clicks) form.grdInfo_MouseDown(button, shift, row, col);
    }
};

TEST_F(GridEditing, MouseDownOnADataCellByButtonCtrlAndInterfaces) {
    // `dialog`: Face Time shown (it chooses Friend); `highlighted`: the clicked cell afterwards.
    // clang-format off
    const struct { int button, shift; bool left, right, dialog, highlighted; } cases[] = {
        {kLeft, 0, true, false, true, false},  // plain click, Face Time on the cell, selection cleared
        {kLeft, 0, true, true, true, false},
        {kLeft, 0, false, true, false, true},               // plain click only
        {kLeft, 0, false, false, false, false},             // nothing
        {kLeft, kCtrl, false, false, false, true},          // Ctrl click works whatever the interface
        {kLeft, kCtrl | kShift, false, true, false, true},  // Ctrl with Shift is a plain click
        {kLeft, kCtrl | kShift, false, false, false, false},
        {kRight, 0, true, false, true, false},  // Face Time on what is highlighted: nothing
        {kRight, kCtrl, false, true, true, false},
        {kRight, 0, false, false, false, false},
        {kMiddle, 0, true, true, false, false},
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << "case " << &c - cases);
        state.FileChanged = false;
        SetUp();
        interfaces(c.left, c.right);
        if (c.dialog) faceTimeChoosesFriend();
        form.grdInfo_MouseDown(c.button, c.shift, 5, 2);
        EXPECT_EQ(std::count(op.log.begin(), op.log.end(), "show: Face Time"), c.dialog ? 1 : 0);
        EXPECT_EQ(column(2, 5, 5), c.dialog && c.button == kLeft ? "Friend" : ".");
        EXPECT_EQ(std::make_pair(highlighted(5, 2), int{state.SelRow[2]}),
                  std::make_pair(c.highlighted, c.highlighted ? 5 : 0));
    }
}

TEST_F(GridEditing, HighlightsGatherAndARightClickAppliesToThemAll) {
    interfaces(false, true);
    clicks({{kLeft, kCtrl, 4, 3}, {kLeft, 0, 3, 1}});
    EXPECT_TRUE(highlighted(4, 3)) << "the first plain click keeps earlier highlights";
    form.grdInfo_MouseDown(kLeft, 0, 6, 1);  // later ones clear them: the highlight moves
    EXPECT_FALSE(highlighted(3, 1) || highlighted(4, 3));
    clicks({{kLeft, kCtrl, 8, 2}, {kLeft, kCtrl, 10, 2}});  // a second cell in a column with one: no effect
    EXPECT_FALSE(highlighted(10, 2));
    faceTimeChoosesFriend();
    form.grdInfo_MouseDown(kRight, 0, 1, 4);
    EXPECT_EQ(column(1, 5, 7) + " " + column(2, 7, 9), ". Friend . . Friend .");
    EXPECT_EQ(column(4, 1, 1), ".") << "the cell under the pointer is not added";
    EXPECT_EQ(state.SelRow[1] + state.SelRow[2], 0);

    // Ctrl click on the highlighted cell gives it back its word's colour.
    form.grdInfo_MouseDown(kLeft, kCtrl, 6, 1);
    EXPECT_TRUE(highlighted(6, 1));
    form.grdInfo_MouseDown(kLeft, kCtrl, 6, 1);
    EXPECT_EQ(std::make_pair(grid().cellBackColor(6, 1), int{state.SelRow[1]}),
              std::make_pair(colors::Friend, 0));
}

TEST_F(GridEditing, SecondsColumnHighlightsTheRowForThePopupsCommands) {
    // Face Time from the popup leaves the whole row highlighted.
    op.popupChoices = {"M_Face"};
    op.script<Face_time>([](Face_time& d) { d.CancelButton(); });
    form.grdInfo_MouseDown(kLeft, 0, 12, 0);
    EXPECT_EQ(op.log, (std::vector<std::string>{"popup: Popup_Menu", "show: Face Time"}));
    for (int col = 1; col <= 4; ++col) {
        EXPECT_TRUE(highlighted(12, col));
        EXPECT_EQ(state.SelRow[static_cast<std::size_t>(col)], 12);
    }

    // Insert Pause on an empty row asks nothing; on a row with words it asks, and No changes nothing.
    op.popupChoices = {"M_Pause", "M_Pause", "M_Pause"};
    op.answers = {Answer::No, Answer::Yes};
    form.grdInfo_MouseDown(kLeft, 0, 6, 0);
    EXPECT_EQ(column(4, 6, 6), "Pause");
    put(2, {{14, "Foe"}});
    put(3, {{14, "Down"}});
    form.grdInfo_MouseDown(kLeft, 0, 14, 0);
    EXPECT_EQ(column(2, 14, 14), "Foe");
    form.grdInfo_MouseDown(kLeft, 0, 14, 0);
    EXPECT_EQ(std::count(op.log.begin(), op.log.end(), "ask: Error: Data In row. Overwrite?"), 2);
    for (int col = 1; col <= 4; ++col)
        EXPECT_EQ(cell(14, col),
                  std::make_tuple("Pause", colors::Pause, colors::PauseText, align::CenterCenter));
    EXPECT_EQ(std::make_pair(grid().MergeRow(14), grid().MergeCells), std::make_pair(true, 2));
    EXPECT_TRUE(state.FileChanged) << "Insert Pause is a change Close and Exit ask about";

    // Its seconds cell shows no popup; the heading row does nothing.
    op.log.clear();
    clicks({{kLeft, 0, 14, 0}, {kLeft, 0, 0, 3}});
    EXPECT_TRUE(op.log.empty());
    EXPECT_FALSE(highlighted(1, 3));
}

TEST_F(GridEditing, DeleteClearsTheHighlightedCellsOrAPauseRow) {
    put(1, {{3, "Foe"}, {4, "Foe"}});
    clicks({{kLeft, kCtrl, 3, 1}, {kLeft, kCtrl, 7, 2}});
    form.grdInfo_KeyDown(45, 0);  // other keys are ignored
    EXPECT_EQ(column(1, 3, 3) + (state.FileChanged ? " changed" : ""), "Foe");
    form.grdInfo_KeyDown(46, 0);
    EXPECT_EQ(column(1, 3, 4), ". Foe") << "the cell below a deleted one keeps its copy";
    EXPECT_EQ(std::make_pair(grid().cellBackColor(3, 1), state.SelRow[1] + state.SelRow[2]),
              std::make_pair(grid().BackColor, 0));
    EXPECT_TRUE(state.FileChanged) << "Delete is a change Close and Exit ask about";
    state.FileChanged = false;
    form.grdInfo_KeyDown(46, 0);
    EXPECT_FALSE(state.FileChanged) << "nothing highlighted, no Pause row: nothing changed";

    // With a Pause row current the row is emptied, and the highlights are forgotten, not deleted.
    grid().setRow(9);
    form.M_Pause();
    form.grdInfo_MouseDown(kLeft, kCtrl, 4, 1);
    grid().setRow(9);
    form.grdInfo_KeyDown(46, 0);
    for (int col = 1; col <= 4; ++col)
        EXPECT_EQ(cell(9, col), std::make_tuple("", grid().BackColor, Color{0}, align::LeftCenter));
    EXPECT_TRUE(grid().MergeCells == 0 && grid().MergeRow(9)) << "the row's own merge flag stays";
    EXPECT_EQ(std::make_pair(column(1, 4, 4), int{state.SelRow[1]}), std::make_pair(std::string("Foe"), 0));
}

TEST_F(GridEditing, CursorKeysMoveTheCurrentCellThatDeleteActsOn) {
    enum { PageUp = 33, PageDown, End, Home, Left, Up, Right, Down };
    // Pause rows at 5 and 8; from (8, 3), Up then Down three times ends on row 10, not on a Pause row.
    for (int row : {5, 8}) {
        grid().setRow(row);
        form.M_Pause();
    }
    grid().setRow(8);
    grid().setCol(3);
    form.grdInfo_KeyDown(Up, 0);
    for (int i = 0; i < 3; ++i) form.grdInfo_KeyDown(Down, 0);
    EXPECT_EQ(std::make_pair(grid().Row(), grid().Col()), std::make_pair(10, 3));
    form.grdInfo_KeyDown(46, 0);
    EXPECT_EQ(column(2, 5, 8), "Pause . . Pause") << "Delete empties the row the operator sees";
    for (int key : {int{Up}, int{Up}, 46}) form.grdInfo_KeyDown(key, 0);
    EXPECT_EQ(column(2, 5, 8), "Pause . . .");

    // The keys stay inside the data cells of a 4 x 30 Program (rows 1 to 31).
    // clang-format off
    const struct { int key, shift, pageRows, row, col; } moves[] = {
        {Home, 0, 1, 8, 1}, {Left, 0, 1, 8, 1}, {Right, 0, 1, 8, 2}, {End, 0, 1, 8, 4}, {Right, 0, 1, 8, 4},
        {PageDown, 0, 10, 18, 4}, {PageDown, 0, 10, 28, 4}, {PageDown, 0, 10, 31, 4}, {Down, 0, 1, 31, 4},
        {Home, 0, 1, 31, 1}, {PageUp, 0, 25, 6, 1}, {PageUp, 0, 25, 1, 1}, {Up, 0, 1, 1, 1},
        {End, kCtrl, 1, 31, 4}, {Home, kCtrl, 1, 1, 1},
    };
    // clang-format on
    for (const auto& m : moves) {
        form.grdInfo_KeyDown(m.key, m.shift, m.pageRows);
        EXPECT_EQ(std::make_pair(grid().Row(), grid().Col()), std::make_pair(m.row, m.col))
            << "move " << &m - moves;
    }
}

TEST_F(GridEditing, AShorterProgramForgetsHighlightsPastItsEnd) {
    // Right-click interface: a highlight in row 31, then Add Time down to 10 seconds.
    clicks({{kLeft, kCtrl, 31, 1}, {kLeft, kCtrl, 9, 2}});
    op.script<Settings>(testing::ScriptedOperator::typeAndOk("10"));
    form.M_Time();
    EXPECT_EQ(std::make_tuple(grid().Rows(), int{state.SelRow[1]}, int{state.SelRow[2]}),
              std::make_tuple(12, 0, 9))
        << "a highlight the shorter Program still has stays";
    EXPECT_TRUE(state.FileChanged) << "a new length is a change Close and Exit ask about";
    faceTimeChoosesFriend();
    form.grdInfo_MouseDown(kRight, 0, 3, 3);
    EXPECT_EQ(column(2, 9, 9) + " " + column(1, 1, 11), "Friend . . . . . . . . . . .");
    EXPECT_EQ(std::count_if(op.log.begin(), op.log.end(), [](auto& l) { return l.starts_with("tell"); }), 0);

    // The same length again changes nothing.
    state.FileChanged = false;
    op.script<Settings>(testing::ScriptedOperator::typeAndOk("10"));
    form.M_Time();
    EXPECT_FALSE(state.FileChanged);
}

TEST_F(GridEditing, ATimeThatIsNoSixteenBitNumberIsRefusedBeforeAnyCellIsWritten) {
    clicks({{kLeft, kCtrl, 4, 1}, {kLeft, kCtrl, 6, 2}});
    Face_time dialog(state, grid());
    dialog.setFirst(Face_time::OptFoe);
    dialog.Text1 = "-40000";
    EXPECT_THROW(dialog.OKButton(), Fault);
    EXPECT_EQ(column(1, 4, 4) + column(2, 6, 6) + (dialog.closed() ? " closed" : "") +
                  (state.FileChanged ? " changed" : ""),
              "..");
}

TEST_F(GridEditing, TheCornerCellHighlightsTheCurrentRowAndAProgramWithoutColumnsIgnoresKeys) {
    clicks({{kLeft, 0, 7, 2}, {kRight, 0, 0, 0}});
    EXPECT_EQ(op.log.back(), "popup: Popup_Menu");
    for (int col = 1; col <= 4; ++col) EXPECT_EQ(state.SelRow[static_cast<std::size_t>(col)], 7);

    testing::Console empty;
    empty.newProgram(0, "5");
    ASSERT_EQ(empty.grid().Cols(), 1);
    for (int key : {46, 37, 40, 35}) empty.form.grdInfo_KeyDown(key, 0);
    EXPECT_TRUE(empty.op.log.empty() && !empty.state.FileChanged);
}

}  // namespace
}  // namespace halvane
