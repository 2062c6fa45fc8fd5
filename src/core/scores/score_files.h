#pragma once
// The score grid as the bytes of its text files and as the cells of a workbook.

#include <string>
#include <vector>

#include "authoring/program_grid.h"

namespace halvane {

// One line a row, row 0 (the headings) first: "column 0","column 1" CR LF. Texts go in as they stand,
// quotes unescaped, as the score files have always been read.
std::string scoresCsv(const ProgramGrid& grid);
// The same lines with a TAB between the columns and no quotes.
std::string scoresTxt(const ProgramGrid& grid);
// Every cell's text, row by row, for a spreadsheet.
std::vector<std::vector<std::string>> scoreCells(const ProgramGrid& grid);

}  // namespace halvane
