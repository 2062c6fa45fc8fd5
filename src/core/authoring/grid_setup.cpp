#include "authoring/grid_setup.h"

#include <string>

#include "text/fault.h"

namespace halvane {

int programColumns(const SharedState& state) {
    return state.UseGroups ? state.NumGroups : state.NumTargets;
}

void SetupGrid(ProgramGrid& grid, const SharedState& state) {
    // The row count is worked out in 16 bits, so 32766 and 32767 seconds never fit.
    const int rows = state.NumSeconds + 2;
    if (state.NumSeconds < 0 || rows > 32767)
        throw Fault("A Program of " + std::to_string(state.NumSeconds) +
                    " seconds cannot be held: the length must be 0 to " +
                    std::to_string(SharedState::kMaxSeconds) + " seconds.");
    const int columns = programColumns(state);
    if (columns < 0 || columns + 1 > ProgramGrid::kMaxCols)
        throw Fault("A Program of " + std::to_string(columns) + (state.UseGroups ? " groups" : " targets") +
                    " cannot be held: the range has at most 200.");
    grid.setRows(rows);
    grid.FocusRect = 2;
    grid.setRow(0);
    grid.setCol(0);
    grid.setText("Seconds");

    grid.setCols(columns + 1);
    grid.setRow(0);
    const char* heading = state.UseGroups ? "Groups # " : "Target # ";
    for (int c = 1; c <= columns; ++c) {
        grid.setCol(c);
        int width;
        if (state.UseGroups)
            width = state.NumGroups < 100 ? 1000 : 1100;
        else
            width = c < 100 ? 1000 : 1200;
        grid.setColWidth(c, width);
        grid.setText(heading + std::to_string(c));
    }

    grid.setCol(0);
    grid.setRow(1);
    grid.setText("0");
    for (int s = 1; s <= state.NumSeconds; ++s) {
        grid.setRow(s + 1);
        grid.setText(std::to_string(s));
    }
}

}  // namespace halvane
