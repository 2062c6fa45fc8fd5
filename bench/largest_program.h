#pragma once
// The largest Program a grid can hold, written once as a file for the benchmarks: 200 targets by
// 32765 seconds, every cell a word, every hundredth row a Pause row.

#include <cstdio>
#include <filesystem>
#include <string>

#include "authoring/shared_state.h"

namespace halvane::bench {

inline constexpr int kLargestTargets = SharedState::kMaxTargets;
inline constexpr int kLargestSeconds = SharedState::kMaxSeconds;

inline std::filesystem::path writeLargestProgram(const std::string& name) {
    const auto path = std::filesystem::temp_directory_path() / name;
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return {};
    std::fprintf(f, "\"Target\",%d\r\n\"Groups\",\"0\"\r\n\"Seconds\",%d\r\n", kLargestTargets,
                 kLargestSeconds);
    const char* faces[] = {"\"Friend\"\r\n", "\"Foe\"\r\n", "\"Edge\"\r\n", "\"Down\"\r\n"};
    for (int r = 1; r <= kLargestSeconds; ++r)
        for (int c = 1; c <= kLargestTargets; ++c)
            std::fputs(r % 100 == 0 ? "\"Pause\"\r\n" : faces[(r / 3 + c) % 4], f);
    std::fclose(f);
    return path;
}

}  // namespace halvane::bench
