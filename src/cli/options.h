#pragma once
// What the device commands of halvane-cli read from their options alike.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace halvane::cli {

// A whole decimal number and nothing else ("7", "-2"); nothing for anything else.
std::optional<int> wholeNumber(const std::string& text);

// `--port N` (1 to 16) and `--device PATH` at args[i]: true when it is one of them, with `i` moved onto
// its value; `bad` is set, and stderr told, when the value cannot be used.
bool portOption(const std::vector<std::string>& args, std::size_t& i, int& port, std::string& device,
                bool& bad);

}  // namespace halvane::cli
