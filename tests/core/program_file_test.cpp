// The .hvn file: byte-exact writing, reading back with the words' colours, and what a bad file leaves.

#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "authoring/grid_setup.h"
#include "authoring/program_file.h"
#include "cli/commands.h"
#include "temp_dir.h"

namespace halvane {
namespace {

using testing::readBytes;
using testing::TempDir;
using testing::writeBytes;

const std::string kData = HALVANE_TEST_DATA;

struct Loaded {
    SharedState state;
    std::unique_ptr<ProgramGrid> grid;
    std::optional<ProgramFileError> error;
    bool menusEnabled = false;
};

Loaded load(const std::string& path, SharedState state = {}) {
    Loaded out;
    out.state = std::move(state);
    out.state.FilePath = path;
    ProgramLoadHost host = standaloneHost(out.state, out.grid);
    host.enableProgramMenus = [&] { out.menusEnabled = true; };
    out.error = readProgramFile(out.state, host);
    return out;
}

// Target mode is written byte for byte in the round trip below.
TEST(ProgramFile, WritesTheGroupExampleByteForByte) {
    TempDir dir;
    // Groups mode: the table follows the targets, the cells follow the groups.
    SharedState g;
    std::tie(g.NumTargets, g.UseGroups, g.NumGroups, g.NumSeconds) = std::make_tuple(3, true, 2, 1);
    g.GroupNum[1] = g.GroupNum[2] = 1;
    g.GroupNum[3] = 2;
    ProgramGrid groups;
    SetupGrid(groups, g);
    groups.setTextMatrix(1, 1, "Foe");
    groups.setTextMatrix(1, 2, "Down");
    g.FilePath = dir.file("groups");  // no extension: the name is used as typed
    ASSERT_FALSE(writeProgramFile(g, groups));
    EXPECT_EQ(readBytes(dir.file("groups")), readBytes(kData + "/three_targets_two_groups.hvn"));
}

TEST(ProgramFile, ReadsWordsWithTheirColoursAndPauseRowsMergedAndWritesThemBack) {
    Loaded l = load(kData + "/mixed.hvn");
    ASSERT_FALSE(l.error) << l.error->message();
    std::ostringstream dump;
    cli::printGrid(l.state, *l.grid, dump);
    EXPECT_EQ(dump.str(), readBytes(kData + "/mixed.grid"));
    EXPECT_EQ(std::make_tuple(l.grid->MergeRow(1), l.grid->MergeRow(2), l.grid->MergeCells,
                              l.grid->cellForeColor(2, 3), l.grid->cellAlignment(2, 3)),
              std::make_tuple(false, true, 2, colors::PauseText, align::CenterCenter));

    // Written again, it gives the same bytes.
    TempDir dir;
    l.state.FilePath = dir.file("again.hvn");
    ASSERT_FALSE(writeProgramFile(l.state, *l.grid));
    EXPECT_EQ(readBytes(l.state.FilePath), readBytes(kData + "/mixed.hvn"));
}

TEST(ProgramFile, TheFileDecidesModeAndSizesOverTheConfiguration) {
    SharedState configured;
    std::tie(configured.UseGroups, configured.NumGroups, configured.NumTargets) =
        std::make_tuple(true, 5, 40);
    configured.GroupNum[7] = 9;
    // Mode, targets, groups, columns, and two entries of the group table.
    const auto shape = [](const Loaded& l) {
        return std::make_tuple(l.state.UseGroups, int{l.state.NumTargets}, int{l.state.NumGroups},
                               l.grid->Cols(), int{l.state.GroupNum[3]}, int{l.state.GroupNum[7]});
    };
    Loaded l = load(kData + "/two_targets.hvn", configured);
    ASSERT_FALSE(l.error);
    EXPECT_EQ(shape(l), std::make_tuple(false, 2, 0, 3, 0, 9))
        << "a target-mode file leaves the group table alone";
    Loaded g = load(kData + "/three_targets_two_groups.hvn", configured);
    ASSERT_FALSE(g.error);
    EXPECT_EQ(shape(g), std::make_tuple(true, 3, 2, 3, 2, 9));
}

TEST(ProgramFile, ABadFileNamesItsLineAndKeepsWhatWasReadBeforeIt) {
    // clang-format off
    const struct { const char* content; int line; const char* reason; } cases[] = {
        {"", 1, "ends early"}, {"\"Target\",x2\r\n", 1, "not a number"},
        {"\"Target\",2\r\n\"Groups\",\"0\"\r\n", 3, "ends early"},
        {"\"Target\",2\r\n\"Groups\",1\r\n1,1\r\n201,1\r\n", 4, "not 0 to 200"},
        {"\"Target\",2\r\n\"Groups\",\"0\"\r\n\"Seconds\",40000\r\n", 3, "out of range"},
        {"\"Target\",2\r\n\"Groups\",\"0\"\r\n\"Seconds\",32766\r\n", 3, "32765"},
        {"\"Target\",300\r\n\"Groups\",\"0\"\r\n\"Seconds\",3\r\n", 3, "at most 200"},
        {"\"Target\",2\r\n\"Groups\",\"0\"\r\n\"Seconds\",2\r\n\"Foe\"\r\n\"Down\"\r\n\"Edge\"\r\n", 7,
         "ends early"},
    };
    // clang-format on
    TempDir dir;
    for (const auto& c : cases) {
        writeBytes(dir.file("bad.hvn"), c.content);
        Loaded l = load(dir.file("bad.hvn"));
        ASSERT_TRUE(l.error) << c.content;
        EXPECT_EQ(l.error->line, c.line) << c.content;
        EXPECT_NE(l.error->reason.find(c.reason), std::string::npos) << l.error->reason;
        EXPECT_NE(l.error->message().find("bad.hvn\" at line " + std::to_string(c.line)), std::string::npos)
            << l.error->message();
        EXPECT_TRUE(l.menusEnabled) << "the menus are enabled before anything is read";
    }
    // What was read before the failure stays: the sizes and the cells already written.
    Loaded partial = load(dir.file("bad.hvn"));
    ASSERT_TRUE(partial.grid);
    EXPECT_EQ(std::make_tuple(int{partial.state.NumTargets}, int{partial.state.NumSeconds},
                              partial.grid->TextMatrix(1, 2), partial.grid->cellBackColor(2, 1)),
              std::make_tuple(2, 2, std::string("Down"), colors::Edge));

    Loaded missing = load(dir.file("nothing-here.hvn"));
    ASSERT_TRUE(missing.error);
    EXPECT_EQ(missing.error->line, 0);
}

TEST(ProgramFile, ToleratesExtraDataLineEndingsAndBlanksAroundNumbers) {
    TempDir dir;
    writeBytes(dir.file("loose.hvn"),
               "\"Target\", 1 \n\"Groups\",\"0\"\n\"Seconds\",1\n\"Foe\"\n\"x\"\nmore, data\n");
    Loaded l = load(dir.file("loose.hvn"));
    ASSERT_FALSE(l.error) << l.error->message();
    EXPECT_EQ(l.grid->TextMatrix(1, 1) + " " + std::to_string(l.state.NumTargets), "Foe 1");
}

TEST(ProgramFile, AFailedSaveLeavesTheOldFileAndReportsWhy) {
    TempDir dir;
    Loaded l = load(kData + "/mixed.hvn");
    ASSERT_FALSE(l.error);
    // The target is a folder: nothing can be written there.
    std::filesystem::create_directories(dir.path() / "folder.hvn");
    l.state.FilePath = dir.file("folder.hvn");
    const auto error = writeProgramFile(l.state, *l.grid);
    ASSERT_TRUE(error);
    EXPECT_NE(error->message().find("folder.hvn"), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_directory(dir.path() / "folder.hvn"));
    EXPECT_FALSE(std::filesystem::exists(dir.file("folder.hvn.saving")));

    // A grid whose shape no longer matches the setup (the mode changed under it) is not half written.
    writeBytes(dir.file("keep.hvn"), "old");
    l.state.FilePath = dir.file("keep.hvn");
    l.state.NumTargets = 9;
    ASSERT_TRUE(writeProgramFile(l.state, *l.grid));
    EXPECT_EQ(readBytes(dir.file("keep.hvn")), "old");

    // Switched to groups with none set up: the file would read back as another Program.
    Loaded targets = load(kData + "/two_targets.hvn");
    targets.state.UseGroups = true;
    targets.state.FilePath = dir.file("keep.hvn");
    const auto noGroups = writeProgramFile(targets.state, *targets.grid);
    ASSERT_TRUE(noGroups);
    EXPECT_NE(noGroups->reason.find("no groups are set up"), std::string::npos);
    EXPECT_EQ(readBytes(dir.file("keep.hvn")), "old");
}

}  // namespace
}  // namespace halvane
