#pragma once
// The Workbook stream of a spreadsheet file of the 97-2003 kind: one sheet, "Sheet1", every cell a
// text from the shared string table.

#include <string>
#include <vector>

namespace halvane {

// The largest sheet the format holds, and the longest text a cell may show.
inline constexpr std::size_t kWorkbookMaxRows = 65536;
inline constexpr std::size_t kWorkbookMaxCols = 256;
inline constexpr std::size_t kWorkbookMaxText = 32767;

// The stream's bytes for `rows` of cell texts; an empty text leaves its cell empty. Texts are the
// console's bytes, one character each (the Latin-1 letters the grid shows). Throws Fault, before
// anything is built, for a sheet or a text beyond the limits above.
std::string biffWorkbook(const std::vector<std::vector<std::string>>& rows);

}  // namespace halvane
