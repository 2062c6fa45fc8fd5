#include <cstdio>
#include <filesystem>
#include <ostream>

#include "cli/commands.h"
#include "text/conversions.h"

namespace halvane::cli {

std::optional<ProgramFileError> loadProgram(const std::string& path, SharedState& state,
                                            std::unique_ptr<ProgramGrid>& grid) {
    state.FilePath = path;
    state.FileTitle = std::filesystem::path(path).filename().string();
    return readProgramFile(state, standaloneHost(state, grid));
}

void printGrid(const SharedState& state, const ProgramGrid& grid, std::ostream& out) {
    out << "Rows=" << grid.Rows() << " Cols=" << grid.Cols() << " NumSeconds=" << state.NumSeconds
        << " UseGroups=" << text::boolText(state.UseGroups) << " NumTargets=" << state.NumTargets
        << " NumGroups=" << state.NumGroups << '\n';
    std::string line;
    char color[12];
    for (int r = 0; r < grid.Rows(); ++r) {
        line.clear();
        for (int c = 0; c < grid.Cols(); ++c) {
            if (c > 0) line.push_back('\t');
            line += grid.TextMatrix(r, c);
            std::snprintf(color, sizeof color, "@%08X", static_cast<unsigned>(grid.cellBackColor(r, c)));
            line += color;
        }
        line.push_back('\n');
        out << line;
    }
}

}  // namespace halvane::cli
