// The Program image: golden Programs and their temp.lm47, the scan's bounds, and the one-byte check.

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "authoring/grid_setup.h"
#include "authoring/program_file.h"
#include "links/program_image.h"
#include "temp_dir.h"

namespace halvane {
namespace {

using testing::readBytes;
using testing::TempDir;
using testing::writeBytes;

const std::string kImages = std::string(HALVANE_TEST_DATA) + "/image/";

TEST(ProgramImage, GoldenProgramsGiveTheirImageFileByteForByte) {
    TempDir dir;
    for (const char* name :
         {"worked_example", "empty", "pause_first", "two_pauses", "gap", "unknown_word", "groups"}) {
        SCOPED_TRACE(name);
        SharedState state;
        std::unique_ptr<ProgramGrid> grid;
        state.FilePath = kImages + name + ".hvn";
        ASSERT_FALSE(readProgramFile(state, standaloneHost(state, grid)));
        const auto image = WriteProgramImage(state, *grid);
        const std::string expected = readBytes(kImages + name + ".lm47");
        EXPECT_EQ(imageText(image), expected);
        // The file replaces a longer one entirely.
        writeBytes(dir / "temp.lm47", std::string(4096, 'x'));
        ASSERT_FALSE(writeTempImage(image, dir / "temp.lm47"));
        EXPECT_EQ(readBytes(dir / "temp.lm47"), expected);
    }
}

TEST(ProgramImage, RecordsCarryTheirCellAndDelaysTheRowTheyLeadTo) {
    SharedState state;
    std::unique_ptr<ProgramGrid> grid;
    state.FilePath = kImages + "worked_example.hvn";
    ASSERT_FALSE(readProgramFile(state, standaloneHost(state, grid)));
    // clang-format off
    EXPECT_EQ(WriteProgramImage(state, *grid),
              (std::vector<ImageRecord>{{0xF3, 1, 1, 1}, {0xF2, 2, 1, 2}, {0xFD, 2, 3, 0}, {0xF0, 1, 3, 1},
                                        {0xFD, 1, 4, 0}, {0xFE, 1, 4, 1}, {0xFD, 1, 5, 0}, {0xF0, 1, 5, 1}}));
    // clang-format on
}

// Grids shaped by hand: the last row is scanned, columns beyond the mode's count are not.
TEST(ProgramImage, ScansTheLastRowAndOnlyTheModesColumns) {
    // `cells`: (row, col) set to "Foe" in a 3-second, 4-column grid.
    // clang-format off
    struct Case { const char* name; bool useGroups; std::vector<std::pair<int, int>> cells;
                  std::string expected; };
    const Case cases[] = {
        {"last row", false, {{4, 1}}, "\"FD\"\r\n\"3\"\r\n\"F2\"\r\n\"1\"\r\n"},
        {"targets beyond NumTargets", false, {{1, 3}, {2, 2}}, "\"FD\"\r\n\"1\"\r\n\"F2\"\r\n\"2\"\r\n"},
        {"groups beyond NumGroups", true, {{1, 2}, {2, 1}}, "\"FD\"\r\n\"1\"\r\n\"F2\"\r\n\"1\"\r\n"},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        SharedState state;
        state.NumSeconds = 3;
        state.NumTargets = 4;
        ProgramGrid grid;
        SetupGrid(grid, state);
        state.NumTargets = 2;
        state.UseGroups = c.useGroups;
        state.NumGroups = 1;
        for (const auto& [row, col] : c.cells) grid.setTextMatrix(row, col, "Foe");
        EXPECT_EQ(imageText(WriteProgramImage(state, grid)), c.expected);
        EXPECT_EQ(grid.Row(), 4);
        EXPECT_EQ(grid.Col(), c.useGroups ? 1 : 2);
    }
}

TEST(ProgramImage, FindsTheFirstValueThatIsNotOneByte) {
    // clang-format off
    struct Case { const char* name; std::vector<ImageRecord> image; std::optional<ImageProblem> expected; };
    const Case cases[] = {
        {"all at 255", {{0xFD, 255, 256, 0}, {0xFE, 255, 256, 1}, {0xF3, 255, 257, 255}}, std::nullopt},
        {"delay 256", {{0xF3, 1, 1, 1}, {0xFD, 256, 257, 0}, {0xF2, 2, 257, 2}},
         ImageProblem{"The Program cannot be sent: 256 seconds pass without a change before the one at "
                      "second 256 (row 257, column 2), and the transmitter takes at most 255.", 257, 2}},
        {"column 256", {{0xF1, 256, 3, 256}, {0xFD, 300, 303, 0}, {0xF0, 1, 303, 1}},
         ImageProblem{"The Program cannot be sent: \"Edge\" at second 2 (row 3, column 256) is in column "
                      "256, and the transmitter takes column numbers up to 255.", 3, 256}},
        {"Pause 256", {{0xFE, 256, 600, 1}},
         ImageProblem{"The Program cannot be sent: the Pause at second 599 (row 600, column 1) is Pause "
                      "number 256, and the transmitter takes at most 255.", 600, 1}},
    };
    // clang-format on
    const auto describe = [](const std::optional<ImageProblem>& p) {
        return p ? p->message + " @" + std::to_string(p->row) + "," + std::to_string(p->col) : "none";
    };
    for (const Case& c : cases) EXPECT_EQ(describe(findByteProblem(c.image)), describe(c.expected)) << c.name;
}

TEST(ProgramImage, BytesAreTheValuesWithLargerOnesCutToTheLowByte) {
    EXPECT_EQ(
        imageBytes({{0xF3, 1, 1, 1}, {0xFD, 0x80, 129, 0}, {0xFE, 0x1FF, 129, 1}, {0xF0, 0x100, 129, 256}}),
        std::string("\xF3\x01\xFD\x80\xFE\xFF\xF0\x00", 8));
}

TEST(ProgramImage, TempFileLiesInTmpThenTmpdirThenTheSystemsFolder) {
    // `expected` nullptr: the system's temporary folder.
    // clang-format off
    const struct { const char* tmp; const char* tmpdir; const char* expected; } cases[] = {
        {"/a/tmp", "/b", "/a/tmp/temp.lm47"}, {nullptr, "/b", "/b/temp.lm47"}, {"", "/b/", "/b/temp.lm47"},
        {nullptr, nullptr, nullptr},
    };
    // clang-format on
    for (const auto& c : cases) {
        testing::EnvVar tmp("TMP", c.tmp), tmpdir("TMPDIR", c.tmpdir);
        const auto expected = c.expected ? std::filesystem::path(c.expected)
                                         : std::filesystem::temp_directory_path() / "temp.lm47";
        EXPECT_EQ(tempImagePath(), expected) << (c.expected ? c.expected : "system folder");
    }
}

TEST(ProgramImage, AFolderThatCannotBeWrittenIsReportedByName) {
    TempDir dir;
    const auto path = dir / "missing" / "temp.lm47";
    const auto error = writeTempImage({{0xF3, 1, 1, 1}}, path);
    ASSERT_TRUE(error);
    EXPECT_EQ(*error, "The Program image could not be written to \"" + path.string() +
                          "\": No such file or directory.");
}

}  // namespace
}  // namespace halvane
