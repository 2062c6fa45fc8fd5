// The grid's shape: rows by length, columns by targets or groups, headings, widths, and what survives a
// change of length.

#include <gtest/gtest.h>

#include "authoring/grid_setup.h"
#include "authoring/program_grid.h"
#include "text/fault.h"

namespace halvane {
namespace {

SharedState targets(int numTargets, int seconds, bool groups = false) {
    SharedState s;
    s.NumTargets = static_cast<std::int16_t>(numTargets);
    s.NumSeconds = static_cast<std::int16_t>(seconds);
    s.UseGroups = groups;
    s.NumGroups = static_cast<std::int16_t>(numTargets);
    return s;
}

TEST(SetupGrid, ColumnWidthsDependOnColumnInTargetModeAndTotalInGroupMode) {
    const struct {
        bool groups;
        int count, column, width;
    } cases[] = {{false, 120, 99, 1000}, {false, 120, 100, 1200}, {true, 99, 99, 1000}, {true, 100, 1, 1100}};
    for (const auto& c : cases) {
        ProgramGrid grid;
        SetupGrid(grid, targets(c.count, 2, c.groups));
        EXPECT_EQ(grid.ColWidth(c.column), c.width) << c.groups << " " << c.count << " col " << c.column;
        EXPECT_EQ(grid.ColWidth(0), ProgramGrid::kDefaultColWidth);
    }
}

TEST(SetupGrid, ChangingTheLengthKeepsCellsOfRowsThatStay) {
    SharedState s = targets(2, 10);
    ProgramGrid grid;
    SetupGrid(grid, s);
    grid.setTextMatrix(5, 2, "Foe");
    grid.setCellBackColor(5, 2, colors::Foe);
    grid.setTextMatrix(11, 1, "Down");

    s.NumSeconds = 20;
    SetupGrid(grid, s);
    EXPECT_EQ(grid.Rows(), 22);
    EXPECT_EQ(grid.TextMatrix(5, 2), "Foe");
    EXPECT_EQ(grid.cellBackColor(5, 2), colors::Foe);
    EXPECT_EQ(grid.TextMatrix(21, 0), "20");

    s.NumSeconds = 5;
    SetupGrid(grid, s);
    EXPECT_EQ(grid.Rows(), 7);
    s.NumSeconds = 10;
    SetupGrid(grid, s);
    EXPECT_EQ(grid.TextMatrix(5, 2), "Foe");
    EXPECT_EQ(grid.TextMatrix(11, 1), "") << "rows dropped by a shorter length come back empty";
}

TEST(SetupGrid, RefusesLengthsAndColumnCountsTheGridCannotHold) {
    ProgramGrid grid;
    EXPECT_NO_THROW(SetupGrid(grid, targets(200, 32765)));
    EXPECT_EQ(std::make_pair(grid.Rows(), grid.Cols()), std::make_pair(32767, 201));
    EXPECT_EQ(grid.TextMatrix(32766, 0), "32765");
    for (int seconds : {32766, -1}) {
        ProgramGrid g;
        EXPECT_THROW(SetupGrid(g, targets(2, seconds)), Fault) << seconds;
        EXPECT_EQ(g.Rows(), 2) << "a refused length leaves the grid as it was";
    }
    ProgramGrid wide;
    EXPECT_THROW(SetupGrid(wide, targets(201, 5, true)), Fault);
    ProgramGrid none;
    SetupGrid(none, targets(0, 5));
    EXPECT_EQ(none.Cols(), 1) << "no targets configured: a Program without a data column";
}

TEST(ProgramGrid, AddingAColumnKeepsEveryCellInPlace) {
    ProgramGrid grid;
    grid.setCols(3);
    grid.setRows(4);
    grid.setTextMatrix(3, 2, "Pause");
    grid.setCellBackColor(3, 2, colors::Pause);
    grid.setCols(5);
    EXPECT_EQ(grid.TextMatrix(3, 2), "Pause");
    EXPECT_EQ(grid.cellBackColor(3, 2), colors::Pause);
    // New cells show the window's colours: the heading's or an empty data cell's.
    EXPECT_EQ(grid.cellBackColor(3, 4), colors::Window);
    EXPECT_EQ(grid.cellBackColor(0, 4), colors::ButtonFace);
    EXPECT_THROW(grid.setRow(4), Fault);
}

}  // namespace
}  // namespace halvane
