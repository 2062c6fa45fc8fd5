#include "simulation/example_program.h"

#include <array>

#include "authoring/grid_setup.h"
#include "authoring/program_grid.h"
#include "authoring/shared_state.h"
#include "text/fault.h"

namespace halvane::app {

namespace {
// Two seconds of each, so the bands stay readable on the grid; each target starts one second later
// than the one before it, which makes them run diagonally across the range.
constexpr std::array<std::string_view, 8> kBands = {words::Friend, words::Friend, words::Foe,  words::Foe,
                                                    words::Edge,   words::Edge,   words::Down, words::Down};
}  // namespace

std::string_view ExampleProgram::word(int second, int target) {
    if (second == kPauseSecond) return words::Pause;
    const int phase = ((second - target) % 8 + 8) % 8;
    return kBands[static_cast<std::size_t>(phase)];
}

std::optional<ProgramFileError> ExampleProgram::write(const std::filesystem::path& file, int targets) {
    SharedState state;
    state.NumTargets = static_cast<std::int16_t>(targets);
    state.NumSeconds = kSeconds;
    state.FilePath = file.string();
    ProgramGrid grid;
    try {
        SetupGrid(grid, state);
    } catch (const Fault& fault) {
        return ProgramFileError{state.FilePath, 0, fault.what()};
    }
    for (int second = 1; second <= kSeconds; ++second)
        for (int target = 1; target <= targets; ++target)
            grid.setTextMatrix(second, target, word(second, target));
    return writeProgramFile(state, grid);
}

}  // namespace halvane::app
