// Clicks, the Delete key and Insert Pause on the Program grid, in both click interfaces.

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
    // Face Time answers by choosing Friend for one second, or by Cancel.
    void faceTimeChoosesFriend() {
        op.faceTimeScript.push_back([](Face_time& d) {
            d.setFirst(Face_time::OptFriend);
            d.OKButton();
        });
    }
    void faceTimeCancels() {
        op.faceTimeScript.push_back([](Face_time& d) { d.CancelButton(); });
    }
    int faceTimeShown() const {
        return static_cast<int>(std::count(op.log.begin(), op.log.end(), "show: Face Time"));
    }
};

TEST_F(GridEditing, MouseDownOnADataCellByButtonCtrlAndInterfaces) {
    struct Case {
        int button, shift;
        bool left, right;
        bool dialog;       // Face Time shown
        bool highlighted;  // the clicked cell highlighted afterwards
    };
    const Case cases[] = {
        {kLeft, 0, true, false, true, false},  // plain click, Face Time, selection cleared
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
    for (const auto& c : cases) {
        state.FileChanged = false;
        SetUp();
        interfaces(c.left, c.right);
        if (c.dialog) faceTimeCancels();
        form.grdInfo_MouseDown(c.button, c.shift, 5, 2);
        const std::string what = "button " + std::to_string(c.button) + " shift " + std::to_string(c.shift) +
                                 " L " + std::to_string(c.left) + " R " + std::to_string(c.right);
        EXPECT_EQ(faceTimeShown(), c.dialog ? 1 : 0) << what;
        EXPECT_EQ(highlighted(5, 2), c.highlighted) << what;
        EXPECT_EQ(state.SelRow[2], c.highlighted ? 5 : 0) << what;
    }
}

TEST_F(GridEditing, LeftClickInterfaceFillsTheClickedCellAndClearsTheHighlight) {
    interfaces(true, false);
    put(2, {{4, "Foe"}});
    faceTimeChoosesFriend();
    form.grdInfo_MouseDown(kLeft, 0, 4, 2);
    EXPECT_EQ(grid().TextMatrix(4, 2), "Friend");
    EXPECT_EQ(grid().cellBackColor(4, 2), colors::Friend);
    EXPECT_EQ(state.SelRow[2], 0);
    EXPECT_TRUE(state.FileChanged);

    // Ctrl clicks gather, a right click applies to them all.
    form.grdInfo_MouseDown(kLeft, kCtrl, 2, 1);
    form.grdInfo_MouseDown(kLeft, kCtrl, 9, 3);
    faceTimeChoosesFriend();
    form.grdInfo_MouseDown(kRight, 0, 20, 4);
    EXPECT_EQ(grid().TextMatrix(2, 1), "Friend");
    EXPECT_EQ(grid().TextMatrix(9, 3), "Friend");
    EXPECT_EQ(grid().TextMatrix(20, 4), "") << "the cell under the pointer is not added";
    EXPECT_FALSE(highlighted(2, 1));
}

TEST_F(GridEditing, RightClickInterfaceChoosesAddsAndAppliesToCellsInTwoColumns) {
    interfaces(false, true);
    form.grdInfo_MouseDown(kLeft, 0, 3, 1);
    form.grdInfo_MouseDown(kLeft, 0, 6, 1);  // a new plain click moves the highlight
    EXPECT_FALSE(highlighted(3, 1));
    form.grdInfo_MouseDown(kLeft, kCtrl, 8, 2);
    form.grdInfo_MouseDown(kLeft, kCtrl, 10, 2);  // a second cell in a column with one: no effect
    EXPECT_FALSE(highlighted(10, 2));
    faceTimeChoosesFriend();
    form.grdInfo_MouseDown(kRight, 0, 1, 4);
    EXPECT_EQ(column(1, 5, 7), ". Friend .");
    EXPECT_EQ(column(2, 7, 9), ". Friend .");
    EXPECT_EQ(state.SelRow[1] + state.SelRow[2], 0);

    // Ctrl click on the highlighted cell gives it back its word's colour.
    form.grdInfo_MouseDown(kLeft, kCtrl, 6, 1);
    EXPECT_TRUE(highlighted(6, 1));
    form.grdInfo_MouseDown(kLeft, kCtrl, 6, 1);
    EXPECT_EQ(grid().cellBackColor(6, 1), colors::Friend);
    EXPECT_EQ(state.SelRow[1], 0);
}

TEST_F(GridEditing, TheFirstPlainClickKeepsEarlierHighlightsLaterOnesClearThem) {
    interfaces(false, true);
    form.grdInfo_MouseDown(kLeft, kCtrl, 4, 3);
    form.grdInfo_MouseDown(kLeft, 0, 7, 1);
    EXPECT_TRUE(highlighted(4, 3)) << "ClickedBefore was still false";
    form.grdInfo_MouseDown(kLeft, 0, 9, 2);
    EXPECT_FALSE(highlighted(4, 3));
    EXPECT_FALSE(highlighted(7, 1));
}

TEST_F(GridEditing, SecondsColumnHighlightsTheRowAndShowsThePopup) {
    op.popupChoices = {""};
    form.grdInfo_MouseDown(kLeft, 0, 12, 0);
    EXPECT_EQ(op.log, std::vector<std::string>{"popup: Popup_Menu"});
    for (int col = 1; col <= 4; ++col) {
        EXPECT_TRUE(highlighted(12, col));
        EXPECT_EQ(state.SelRow[static_cast<std::size_t>(col)], 12);
    }
    EXPECT_EQ(grid().HighLight, 0);

    // Insert Pause on a row with words asks once; No changes nothing, Yes writes the Pause row.
    put(2, {{14, "Foe"}});
    put(3, {{14, "Down"}});
    op.popupChoices = {"M_Pause", "M_Pause"};
    op.answers = {Answer::No, Answer::Yes};
    form.grdInfo_MouseDown(kLeft, 0, 14, 0);
    EXPECT_EQ(column(2, 14, 14), "Foe");
    form.grdInfo_MouseDown(kLeft, 0, 14, 0);
    EXPECT_EQ(std::count(op.log.begin(), op.log.end(), "ask: Error: Data In row. Overwrite?"), 2);
    for (int col = 1; col <= 4; ++col) {
        EXPECT_EQ(grid().TextMatrix(14, col), "Pause");
        EXPECT_EQ(grid().cellBackColor(14, col), colors::Pause);
        EXPECT_EQ(grid().cellForeColor(14, col), colors::PauseText);
        EXPECT_EQ(grid().cellAlignment(14, col), align::CenterCenter);
    }
    EXPECT_TRUE(grid().MergeRow(14));
    EXPECT_EQ(grid().MergeCells, 2);
    EXPECT_FALSE(state.FileChanged) << "Insert Pause is not announced by the save question";

    // Its seconds cell shows no popup; the heading row does nothing.
    op.log.clear();
    form.grdInfo_MouseDown(kLeft, 0, 14, 0);
    form.grdInfo_MouseDown(kLeft, 0, 0, 3);
    EXPECT_TRUE(op.log.empty());
    EXPECT_FALSE(highlighted(1, 3));
}

TEST_F(GridEditing, InsertPauseOnAnEmptyRowAsksNothing) {
    grid().setRow(6);
    form.M_Pause();
    EXPECT_TRUE(op.log.empty());
    EXPECT_EQ(column(4, 6, 6), "Pause");
}

TEST_F(GridEditing, DeleteClearsTheHighlightedCellsOrAPauseRow) {
    put(1, {{3, "Foe"}, {4, "Foe"}});
    form.grdInfo_MouseDown(kLeft, kCtrl, 3, 1);
    form.grdInfo_MouseDown(kLeft, kCtrl, 7, 2);
    form.grdInfo_KeyDown(46, 0);
    EXPECT_EQ(column(1, 3, 4), ". Foe") << "the cell below a deleted one keeps its copy";
    EXPECT_EQ(grid().cellBackColor(3, 1), grid().BackColor);
    EXPECT_EQ(grid().cellBackColor(7, 2), grid().BackColor);
    EXPECT_EQ(state.SelRow[1] + state.SelRow[2], 0);

    // With a Pause row current the row is emptied, and the highlights are forgotten, not deleted.
    grid().setRow(9);
    form.M_Pause();
    form.grdInfo_MouseDown(kLeft, kCtrl, 4, 1);
    grid().setRow(9);
    form.grdInfo_KeyDown(46, 0);
    for (int col = 1; col <= 4; ++col) {
        EXPECT_EQ(grid().TextMatrix(9, col), "");
        EXPECT_EQ(grid().cellBackColor(9, col), grid().BackColor);
        EXPECT_EQ(grid().cellForeColor(9, col), 0u);
        EXPECT_EQ(grid().cellAlignment(9, col), align::LeftCenter);
    }
    EXPECT_EQ(grid().MergeCells, 0);
    EXPECT_TRUE(grid().MergeRow(9)) << "the row's own merge flag stays";
    EXPECT_EQ(column(1, 4, 4), "Foe");
    EXPECT_EQ(state.SelRow[1], 0);

    // Nothing highlighted and no Pause row: nothing happens; other keys are ignored.
    form.grdInfo_KeyDown(46, 0);
    form.grdInfo_KeyDown(45, 0);
    EXPECT_EQ(column(1, 4, 4), "Foe");
    EXPECT_FALSE(state.FileChanged);
}

TEST_F(GridEditing, FaceTimeFromThePopupKeepsTheRowHighlighted) {
    op.popupChoices = {"M_Face"};
    faceTimeCancels();
    form.grdInfo_MouseDown(kLeft, 0, 5, 0);
    EXPECT_TRUE(highlighted(5, 1));
    EXPECT_TRUE(highlighted(5, 4));
    EXPECT_EQ(faceTimeShown(), 1);
}

}  // namespace
}  // namespace halvane
