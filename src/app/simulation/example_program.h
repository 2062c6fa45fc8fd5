#pragma once
// The Program a newcomer finds open on the simulated range: a wave of Friend, Foe, Edge and Down that
// runs across the targets, one second per target, with a Pause halfway.

#include <filesystem>
#include <optional>
#include <string_view>

#include "authoring/program_file.h"

namespace halvane::app {

struct ExampleProgram {
    static constexpr int kSeconds = 60;
    static constexpr int kPauseSecond = 30;
    static constexpr const char* kFileTitle = "Example wave.hvn";

    // What target `target` (from 1) does in second `second` (from 1).
    static std::string_view word(int second, int target);
    // Writes the Program for `targets` targets to `file`, through the console's own Program writer.
    static std::optional<ProgramFileError> write(const std::filesystem::path& file, int targets);
};

}  // namespace halvane::app
