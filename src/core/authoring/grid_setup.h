#pragma once
// Shaping the Program grid from the shared state: rows by length, columns by targets or groups.

#include "authoring/program_grid.h"
#include "authoring/shared_state.h"

namespace halvane {

// The number of data columns of the Program in the current mode.
int programColumns(const SharedState& state);

// Rows, columns, headings, seconds labels and column widths. Clears no cell: rows and columns that
// stay keep their contents. Throws Fault when the length or column count cannot be held.
void SetupGrid(ProgramGrid& grid, const SharedState& state);

}  // namespace halvane
