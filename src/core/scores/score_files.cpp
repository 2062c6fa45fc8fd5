#include "scores/score_files.h"

namespace halvane {

namespace {
std::string lines(const ProgramGrid& grid, const std::string& before, const std::string& between,
                  const std::string& after) {
    std::string out;
    for (int r = 0; r < grid.Rows(); ++r) {
        out += before + grid.TextMatrix(r, 0) + between + grid.TextMatrix(r, 1) + after;
        out += "\r\n";
    }
    return out;
}
}  // namespace

std::string scoresCsv(const ProgramGrid& grid) {
    return lines(grid, "\"", "\",\"", "\"");
}

std::string scoresTxt(const ProgramGrid& grid) {
    return lines(grid, "", "\t", "");
}

std::vector<std::vector<std::string>> scoreCells(const ProgramGrid& grid) {
    std::vector<std::vector<std::string>> rows(static_cast<std::size_t>(grid.Rows()));
    for (int r = 0; r < grid.Rows(); ++r)
        for (int c = 0; c < grid.Cols(); ++c)
            rows[static_cast<std::size_t>(r)].push_back(grid.TextMatrix(r, c));
    return rows;
}

}  // namespace halvane
