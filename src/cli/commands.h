#pragma once
// The subcommands of halvane-cli.

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

#include "authoring/program_file.h"
#include "authoring/program_grid.h"
#include "authoring/shared_state.h"
#include "links/program_image.h"

namespace halvane::cli {

// `config`: the shared state as read at start-up, one Name=Value line each.
void printConfig(const SharedState& state, std::ostream& out);

// Loads a Program file as Open does, into `state` and `grid`.
std::optional<ProgramFileError> loadProgram(const std::string& path, SharedState& state,
                                            std::unique_ptr<ProgramGrid>& grid);

// `grid`: a line of the Program's shape, then every grid row from row 0, cells as text@BBGGRR.
void printGrid(const SharedState& state, const ProgramGrid& grid, std::ostream& out);

// `image`: the Program image exactly as temp.lm47 would hold it. Returns what would stop a send of
// it, so that the caller can say so beside the image.
std::optional<ImageProblem> printImage(const SharedState& state, ProgramGrid& grid, std::ostream& out);

}  // namespace halvane::cli
