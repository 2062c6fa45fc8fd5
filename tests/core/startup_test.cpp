// Start-up reading of hvn.cfg (edge cases and golden configs) and where hvn.cfg is looked for.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <sstream>

#include "authoring/startup.h"
#include "cli/commands.h"
#include "temp_dir.h"

using namespace halvane;
using namespace halvane::testing;
using ::testing::Contains, ::testing::IsSupersetOf, ::testing::Not, ::testing::StartsWith;

namespace {

// The state as `config` prints it, then one "bad: " line per reported key.
std::vector<std::string> startupLines(const std::filesystem::path& file, SharedState& state) {
    const auto report = readStartup(file, state);
    std::ostringstream out;
    cli::printConfig(state, out);
    std::vector<std::string> lines;
    std::istringstream in(out.str());
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    for (const auto& bad : report.badKeys) lines.push_back("bad: " + bad);
    return lines;
}

std::vector<std::string> startupLines(const std::string& content) {
    TempDir dir;
    writeBytes(dir / "hvn.cfg", content);
    SharedState state;
    return startupLines(dir / "hvn.cfg", state);
}

}  // namespace

// clang-format off
// Rows the golden configs below do not already cover.
TEST(Startup, EdgeCases) {
    const std::string s = "[Settings]\r\n";
    // `absent` lists line beginnings that must not appear.
    const struct { std::string cfg; std::vector<std::string> want, absent; } rows[] = {
        {s + "Targets=201\r\n[Group Num]\r\n 1= 4\r\n", {"NumTargets=0", "TargetsValid=False"},
         {"GroupNum(1)"}},
        {s + "Targets=0\r\n[Group Num]\r\n 1= 4\r\n", {"NumTargets=0", "TargetsValid=False"},
         {"GroupNum(1)"}},
        {s + "Targets=12ab\r\n", {"NumTargets=12", "TargetsValid=True"}, {}},
        {s + "Targets=200.5\r\n", {"NumTargets=200"}, {"bad:"}},
        {s + "Targets=2.5\r\n[Group Num]\r\n 3= 4\r\n", {"NumTargets=2"}, {"GroupNum(3)"}},
        {s + "Targets=0.4\r\n", {"NumTargets=0", "TargetsValid=True"}, {}},
        // The writer's key is " 7"; a hand-written "7" is a different key.
        {s + "Targets=10\r\n[Serial Num]\r\n7=1234\r\n[Group Num]\r\n 7=3\r\n", {"GroupNum(7)=3"},
         {"SerialNum(7)"}},
        {s + "ComPort=0\r\n", {"ComPort=1"}, {}},       {s + "ComPort=17\r\n", {"ComPort=17"}, {}},
        {s + "ComPort=1.5\r\n", {"ComPort=2"}, {}},     {s + "ComPort=2.5\r\n", {"ComPort=2"}, {}},
        {s + "Icon=\r\n", {"IconSize=Medium"}, {}},
        {s + "Cols=-3\r\nNum Groups=7.5\r\n", {"NumCols=-3", "NumGroups=8"}, {}},
        {s + "Cols=8.5\r\nNum Groups=abc\r\n", {"NumCols=8", "NumGroups=0"}, {}},
    };
    for (const auto& r : rows) {
        const auto lines = startupLines(r.cfg);
        EXPECT_THAT(lines, IsSupersetOf(r.want)) << r.cfg;
        for (const auto& a : r.absent) EXPECT_THAT(lines, Not(Contains(StartsWith(a)))) << r.cfg;
    }
}

TEST(Startup, GoldenConfigs) {
    const auto dir = std::filesystem::path(HALVANE_TEST_DATA) / "startup";
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dir)) {
        if (entry.path().extension() != ".cfg") continue;
        SharedState state;
        const auto lines = startupLines(entry.path(), state);
        std::string got;
        for (const auto& l : lines) got += l + "\n";
        EXPECT_EQ(got, readBytes(std::filesystem::path(entry.path()).replace_extension(".expected")))
            << entry.path();
        EXPECT_EQ(state.ConfigFile, entry.path().string());
        ++count;
    }
    EXPECT_GE(count, 2);
}

// The `config` command's edges the golden start-up files cannot reach: index 0, which stands for no
// target, is never printed, and the serial numbers run to index 201.
TEST(Startup, ConfigPrintsTheNonZeroTargetsFrom1To201) {
    SharedState state;
    state.GroupNum[0] = state.SerialNum[0] = 9;
    state.GroupNum[1] = -32768;
    state.SerialNum[201] = 2147483647;
    std::ostringstream out;
    cli::printConfig(state, out);
    const std::string text = out.str();
    EXPECT_EQ(text.substr(text.find("GroupNum")), "GroupNum(1)=-32768\nSerialNum(201)=2147483647\n");
}

TEST(Startup, MissingFileGivesDefaultsEvenOverAnEarlierRead) {
    SharedState state;
    readStartup(std::filesystem::path(HALVANE_TEST_DATA) / "startup" / "full.cfg", state);
    EXPECT_EQ(startupLines("/nonexistent/hvn.cfg", state), startupLines(std::string()));
    EXPECT_EQ(state.ConfigFile, "/nonexistent/hvn.cfg");
}

TEST(Startup, LocateConfigPrefersTheProgramFolder) {
    TempDir exe, user, withFile;
    writeBytes(withFile / "hvn.cfg", "");
    const std::filesystem::path chosen = "/elsewhere/my.cfg";
    const struct { std::filesystem::path exeDir; bool writable; std::optional<std::filesystem::path> override;
                   std::filesystem::path want; } rows[] = {
        {exe.path(), true, std::nullopt, exe / "hvn.cfg"},
        {exe.path(), false, std::nullopt, user / "hvn.cfg"},
        {withFile.path(), false, std::nullopt, withFile / "hvn.cfg"},
        {exe.path(), true, chosen, chosen},
        {exe.path(), false, chosen, chosen},
    };
    for (const auto& r : rows) {
        const auto writable = [&](const std::filesystem::path& dir) { return dir == r.exeDir && r.writable; };
        EXPECT_EQ(locateConfig(r.exeDir, user.path(), r.override, writable), r.want) << r.exeDir;
    }
}

TEST(Startup, LocateConfigAsksTheSystemWhetherTheFolderIsWritable) {
    if (::geteuid() == 0) GTEST_SKIP() << "access() reports every folder writable for root";
    TempDir exe, user;
    EXPECT_EQ(locateConfig(exe.path(), user.path(), std::nullopt), exe / "hvn.cfg");
    ::chmod(exe.path().c_str(), 0555);
    EXPECT_EQ(locateConfig(exe.path(), user.path(), std::nullopt), user / "hvn.cfg");
}

TEST(Startup, ConfigAndProgramFolders) {
    const struct { const char* xdg; const char* want; } rows[] = {
        {"/xdg", "/xdg/halvane"}, {"relative", "/home/op/.config/halvane"},
        {nullptr, "/home/op/.config/halvane"},
    };
    for (const auto& r : rows) {
        EnvVar xdg("XDG_CONFIG_HOME", r.xdg), home("HOME", "/home/op");
        EXPECT_EQ(userConfigDir(), r.want);
    }
    EXPECT_TRUE(std::filesystem::exists(executableDir() / "halvane_core_tests"));
}
// clang-format on
