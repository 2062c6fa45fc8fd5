// Any bytes as a Program file: the reader either fills a grid that matches the state it read, or names
// a line; it never crashes. A file it reads is written back and read again to the same grid.

#include <unistd.h>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "authoring/grid_setup.h"
#include "authoring/program_file.h"

using namespace halvane;

namespace {

std::optional<ProgramFileError> load(SharedState& state, std::unique_ptr<ProgramGrid>& grid,
                                     std::string_view content) {
    return readProgramText(state, standaloneHost(state, grid), content);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    SharedState state;
    std::unique_ptr<ProgramGrid> grid;
    const auto error = load(state, grid, {reinterpret_cast<const char*>(data), size});
    if (error) {
        if (error->line < 1) std::abort();
        return 0;
    }
    if (grid->Rows() != state.NumSeconds + 2 || grid->Cols() != programColumns(state) + 1) std::abort();
    // Keep the round trip cheap: only small Programs are written back.
    if (static_cast<long>(grid->Rows()) * grid->Cols() > 20000) return 0;
    if (state.UseGroups && state.NumTargets > SharedState::kMaxTargets)
        return 0;  // table cannot be rewritten
    for (int r = 1; r <= state.NumSeconds; ++r)
        for (int c = 1; c < grid->Cols(); ++c)
            if (grid->TextMatrix(r, c).find('"') != std::string::npos) return 0;
    const auto path = std::filesystem::temp_directory_path() / ("hvn-fuzz-" + std::to_string(::getpid()));
    state.FilePath = path.string();
    if (writeProgramFile(state, *grid)) std::abort();
    SharedState again;
    again.FilePath = state.FilePath;
    std::unique_ptr<ProgramGrid> second;
    if (readProgramFile(again, standaloneHost(again, second))) std::abort();
    if (again.NumSeconds != state.NumSeconds || again.UseGroups != state.UseGroups) std::abort();
    for (int r = 1; r <= state.NumSeconds; ++r)
        for (int c = 1; c < grid->Cols(); ++c)
            if (grid->TextMatrix(r, c) != second->TextMatrix(r, c)) std::abort();
    std::filesystem::remove(path);
    return 0;
}
