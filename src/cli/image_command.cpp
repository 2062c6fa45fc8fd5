#include <ostream>

#include "cli/commands.h"

namespace halvane::cli {

std::optional<ImageProblem> printImage(const SharedState& state, ProgramGrid& grid, std::ostream& out) {
    const auto image = WriteProgramImage(state, grid);
    const std::string text = imageText(image);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    return findByteProblem(image);
}

}  // namespace halvane::cli
