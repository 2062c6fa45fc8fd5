// Fuzzes key reading and writing of private-profile files: input is content, section, key and value
// separated by NUL bytes.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "authoring/profile_file.h"

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

bool hasLineBreak(std::string_view s) {
    return s.find_first_of("\r\n") != std::string_view::npos;
}

// Inputs for which a written key must read back as written: nothing that would end the line, turn
// the key's line into a section or comment line, or be trimmed or unquoted on reading.
bool readsBack(std::string_view section, std::string_view key, std::string_view value) {
    if (hasLineBreak(section) || hasLineBreak(key) || hasLineBreak(value)) return false;
    if (key.find('=') != std::string_view::npos) return false;
    const std::size_t first = key.find_first_not_of(" \t");
    if (first != std::string_view::npos && (key[first] == '[' || key[first] == ';')) return false;
    if (value.size() > halvane::kProfileValueLimit) return false;
    if (!value.empty() && (isBlank(value.front()) || isBlank(value.back()))) return false;
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"') return false;
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    std::string_view parts[4];
    for (int i = 0; i < 4 && !rest.empty(); ++i) {
        const std::size_t nul = i < 3 ? rest.find('\0') : std::string_view::npos;
        parts[i] = rest.substr(0, nul);
        rest = nul == std::string_view::npos ? std::string_view() : rest.substr(nul + 1);
    }
    const auto [content, section, key, value] = parts;

    if (halvane::profileRead(content, section, key).size() > halvane::kProfileValueLimit) std::abort();
    const std::string written = halvane::profileWrite(content, section, key, value);
    if (readsBack(section, key, value)) {
        if (halvane::profileRead(written, section, key) != value) std::abort();
        if (halvane::profileWrite(written, section, key, value) != written) std::abort();
    }
    return 0;
}
