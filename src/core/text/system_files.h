#pragma once
// The few calls on the operating system that core makes: whole-file reads and replacements that keep
// a file's permissions, and where the user's folders are. Everything else in core is standard C++.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace halvane {

// What reading a file found: missing is fine (empty), unreadable is not.
struct FileBytes {
    enum class State { Missing, Present, Unreadable } state = State::Missing;
    std::string bytes;
    unsigned mode = 0;  // the permission bits, when present
};

FileBytes loadFile(const std::filesystem::path& file);
// Writes a temporary file beside `file` and renames it over, so a failed write leaves the old file
// whole. `mode` carries the old file's permissions; a new file gets the usual ones (0666 less umask).
bool replaceFile(const std::filesystem::path& file, std::string_view bytes, std::optional<unsigned> mode);
// The process may create files in `dir`.
bool folderWritable(const std::filesystem::path& dir);
// The user's home folder: $HOME, else the password database's entry; "" when neither says.
std::string homeFolder();

}  // namespace halvane
