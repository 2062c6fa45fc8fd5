// Core is built in floors: each folder includes only its own headers and those of the floors below,
// and only one small file speaks to the operating system.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

namespace {

const std::vector<std::string> kFloors = {"text", "authoring", "links", "range", "scores", "console"};

int floorOf(const std::string& folder) {
    for (std::size_t i = 0; i < kFloors.size(); ++i)
        if (kFloors[i] == folder) return static_cast<int>(i);
    return -1;
}

TEST(Layering, EveryCoreFolderIncludesOnlyItsOwnFloorAndThoseBelowAndOnlyOneFileCallsTheSystem) {
    const std::filesystem::path root = HALVANE_CORE_SOURCES;
    const std::regex quoted(R"(^\s*#\s*include\s*"([^"/]+)/[^"]+")");
    const std::regex system(
        R"(^\s*#\s*include\s*<(unistd|fcntl|termios|poll|pwd|signal|dirent|sys/[^>]*)\.h>)");
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        if (!entry.is_regular_file()) continue;
        const auto ext = entry.path().extension();
        if (ext != ".h" && ext != ".cpp") continue;
        ++files;
        const auto relative = std::filesystem::relative(entry.path(), root);
        const std::string folder = relative.begin()->string();
        const int own = floorOf(folder);
        ASSERT_GE(own, 0) << relative << " lies outside the floors of core";
        std::ifstream in(entry.path());
        std::string line;
        for (int number = 1; std::getline(in, line); ++number) {
            std::smatch m;
            if (std::regex_search(line, m, quoted)) {
                const int included = floorOf(m[1]);
                EXPECT_TRUE(included >= 0 && included <= own)
                    << relative.string() << ":" << number << " reaches up or out: " << line;
            }
            if (std::regex_search(line, system)) {
                EXPECT_EQ(relative.string(), "text/system_files.cpp")
                    << relative.string() << ":" << number << " calls the system: " << line;
            }
        }
    }
    EXPECT_GT(files, 40);
}

}  // namespace
