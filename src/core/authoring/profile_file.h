#pragma once
// Reading and writing one key of a private-profile file (hvn.cfg): "[Section]" lines and "key=value" lines.

#include <filesystem>
#include <string>
#include <string_view>

namespace halvane {

// Values are cut to this many characters on reading, as the old fixed read buffer did.
inline constexpr std::size_t kProfileValueLimit = 255;

// Pure forms over the file's bytes, for tests and fuzzing. Section and key names compare without
// regard to ASCII case; a key's leading blanks are part of it (" 7" is not "7"). A missing key, a
// missing section and an empty value all read as "".
std::string profileRead(std::string_view content, std::string_view section, std::string_view key);
// The whole new content after setting one key: the key's line is replaced, or a line is added at
// the end of its section, or the section is added at the end. Every other line stays byte for byte.
std::string profileWrite(std::string_view content, std::string_view section, std::string_view key,
                         std::string_view value);

// The file forms. A missing or unreadable file reads as empty. WriteIni creates the file when needed
// and reports whether the file could be written.
std::string ReadIni(const std::filesystem::path& file, std::string_view section, std::string_view key);
bool WriteIni(const std::filesystem::path& file, std::string_view section, std::string_view key,
              std::string_view value);

// The whole file, for readers that take many keys at once; "" when it is missing or unreadable.
std::string readProfileFile(const std::filesystem::path& file);

}  // namespace halvane
