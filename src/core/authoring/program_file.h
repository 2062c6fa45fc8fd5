#pragma once
// The .hvn Program file: writing the grid out and reading it back, byte for byte.

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "authoring/program_grid.h"
#include "authoring/shared_state.h"

namespace halvane {

// Why a Program file could not be read or written, with the file and (for reading) the line.
struct ProgramFileError {
    std::string file;
    int line = 0;  // 0 when no line is concerned
    std::string reason;
    std::string message() const;
};

// Writes the Program of `grid` to `state.FilePath`: header, group table in groups mode, then rows 1
// to NumSeconds cell by cell. The old file is replaced only once the new one is complete.
std::optional<ProgramFileError> writeProgramFile(const SharedState& state, const ProgramGrid& grid);

// What reading a Program needs from the window that holds the grid.
struct ProgramLoadHost {
    std::function<void()> enableProgramMenus;  // M_Run, M_Send, M_Time
    // Removes any old grid and creates a new one shaped by SetupGrid (which may throw Fault).
    std::function<ProgramGrid&()> recreateGrid;
};

// A host for reading a Program without a window: the grid is kept in `grid`.
ProgramLoadHost standaloneHost(SharedState& state, std::unique_ptr<ProgramGrid>& grid);

// Reads `state.FilePath` into the shared state and a new grid, step by step as the file goes. On a
// failure the steps already done stay done and the error names the line that could not be read.
std::optional<ProgramFileError> readProgramFile(SharedState& state, const ProgramLoadHost& host);
// The same over the file's bytes, for tests and fuzzing.
std::optional<ProgramFileError> readProgramText(SharedState& state, const ProgramLoadHost& host,
                                                std::string_view content);

}  // namespace halvane
