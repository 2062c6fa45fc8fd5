#pragma once
// The start-up reader: hvn.cfg into the shared state, with the defaults of a missing file.

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "authoring/shared_state.h"

namespace halvane {

struct StartupReport {
    // One line per key whose value could not be taken as it stood, naming section, key and value
    // and saying what was used instead. Empty when the file was read cleanly (or is missing).
    std::vector<std::string> badKeys;
};

// Reads every key of hvn.cfg in the order the console always has and fills `state`.
StartupReport readStartup(const std::filesystem::path& configFile, SharedState& state);

// Where hvn.cfg lives: `override` when given; else beside the executable when that folder is
// writable or the file already exists there; else `userConfigDir`/hvn.cfg.
std::filesystem::path locateConfig(const std::filesystem::path& exeDir,
                                   const std::filesystem::path& userConfigDir,
                                   const std::optional<std::filesystem::path>& override);
// The same with the folder-writability test supplied, where ::access cannot tell (it says yes to root).
std::filesystem::path locateConfig(const std::filesystem::path& exeDir,
                                   const std::filesystem::path& userConfigDir,
                                   const std::optional<std::filesystem::path>& override,
                                   const std::function<bool(const std::filesystem::path&)>& isWritable);
// The user's configuration folder for the console: $XDG_CONFIG_HOME/halvane, else ~/.config/halvane.
std::filesystem::path userConfigDir();
// The folder of the running executable.
std::filesystem::path executableDir();

}  // namespace halvane
