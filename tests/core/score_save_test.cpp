// The score files' bytes and the window's Save: the dialog, the format by its filter, and its faults.

#include <gtest/gtest.h>

#include "scores/score_files.h"
#include "scripted_operator.h"
#include "temp_dir.h"

namespace halvane {
namespace {

using testing::readBytes;
using testing::writeBytes;

const std::string kDialog =
    "save dialog: Comma Delimited (*.csv)|*.csv|Tab Delimited (*.txt)|*.txt|Excel (*.xls)|*.xls #1";

// A workbook writer that keeps what it was given.
struct FakeWorkbooks : WorkbookWriter {
    std::string path, error;
    std::vector<std::vector<std::string>> rows;
    std::string write(const std::string& p, const std::vector<std::vector<std::string>>& r) override {
        path = p;
        rows = r;
        return error;
    }
};

struct ScoreSave : ::testing::Test {
    SharedState state;
    testing::ScriptedOperator op;
    FakeWorkbooks workbooks;
    FrmHitScores window{state, nullptr, nullptr, op, &workbooks};
    testing::TempDir dir;

    void SetUp() override {
        window.Load();
        state.FilePath = "/programs/range.hvn";
    }
    // The grid a transmitter download leaves: packed, one row a scored target.
    void pack() {
        window.Grid.setRows(3);
        window.Grid.setTextMatrix(1, 0, "4");
        window.Grid.setTextMatrix(1, 1, "12");
        window.Grid.setTextMatrix(2, 0, "17");
        window.Grid.setTextMatrix(2, 1, "0");
    }
    void save(std::optional<ChosenFile> file) {
        op.files = {std::move(file)};
        window.CmdSave_Click();
    }
};

TEST_F(ScoreSave, TextFilesHaveEveryRowHeadingsFirstInTheirExactBytes) {
    const std::string csv = scoresCsv(window.Grid), txt = scoresTxt(window.Grid);
    EXPECT_TRUE(csv.starts_with("\"Target Num\",\"Hit Score\"\r\n\"1\",\"\"\r\n\"2\",\"\"\r\n"));
    EXPECT_TRUE(csv.ends_with("\"199\",\"\"\r\n\"200\",\"\"\r\n"));
    EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 201);
    EXPECT_TRUE(txt.starts_with("Target Num\tHit Score\r\n1\t\r\n2\t\r\n"));
    EXPECT_EQ(std::count(txt.begin(), txt.end(), '\n'), 201);

    pack();
    window.Grid.setTextMatrix(2, 1, "say \"hi\", 5");
    EXPECT_EQ(scoresCsv(window.Grid),
              "\"Target Num\",\"Hit Score\"\r\n\"4\",\"12\"\r\n\"17\",\"say \"hi\", 5\"\r\n");
    EXPECT_EQ(scoresTxt(window.Grid), "Target Num\tHit Score\r\n4\t12\r\n17\tsay \"hi\", 5\r\n");
}

TEST_F(ScoreSave, TheChosenFilterGivesTheFormatAndFilePathStays) {
    pack();
    const std::string csv = scoresCsv(window.Grid), txt = scoresTxt(window.Grid);
    struct Case {
        const char* name;
        int filterIndex;
        const char* written;  // the file that appears
        const std::string* bytes;
    } cases[] = {
        {"a.csv", 1, "a.csv", &csv}, {"b.txt", 2, "b.txt", &txt},
        {"c.txt", 1, "c.txt", &csv},  // the filter decides, not the name
        {"d", 2, "d.txt", &txt},      // a bare name gets the format's extension
        {"e.txt", 0, "e.txt", &txt},  // a dialog that does not say: the extension decides
        {"f", 0, "f.csv", &csv},
    };
    for (const Case& c : cases) {
        save(ChosenFile{dir.file(c.name), c.name, c.filterIndex});
        EXPECT_EQ(readBytes(dir / c.written), *c.bytes) << c.name;
    }
    save(ChosenFile{dir.file("g"), "g", 3});
    EXPECT_EQ(workbooks.path, dir.file("g.xls"));
    EXPECT_EQ(workbooks.rows,
              (std::vector<std::vector<std::string>>{{"Target Num", "Hit Score"}, {"4", "12"}, {"17", "0"}}));
    EXPECT_EQ(op.log, std::vector<std::string>(7, kDialog));
    EXPECT_EQ(state.FilePath, "/programs/range.hvn");
}

TEST_F(ScoreSave, CancelWritesNothingAndAFileThatCannotBeWrittenIsToldAndKept) {
    writeBytes(dir / "old.csv", "old scores");
    save(ChosenFile{dir.file("old.csv"), "old.csv", 1});
    save(std::nullopt);  // an earlier name does not make Cancel save
    EXPECT_EQ(readBytes(dir / "old.csv"), scoresCsv(window.Grid));
    writeBytes(dir / "old.csv", "old scores");
    save(std::nullopt);
    EXPECT_EQ(readBytes(dir / "old.csv"), "old scores");

    std::filesystem::create_directory(dir / "taken.csv");
    writeBytes(dir / "taken.csv" / "inside", "kept");
    save(ChosenFile{dir.file("taken.csv"), "taken.csv", 1});
    save(ChosenFile{dir.file("missing/s.txt"), "s.txt", 2});
    workbooks.error = "disk full";
    save(ChosenFile{dir.file("w.xls"), "w.xls", 3});
    FrmHitScores noWriter{state, nullptr, nullptr, op};
    noWriter.Load();
    op.files = {ChosenFile{dir.file("n.xls"), "n.xls", 3}};
    noWriter.CmdSave_Click();

    EXPECT_EQ(readBytes(dir / "taken.csv" / "inside"), "kept");
    EXPECT_FALSE(std::filesystem::exists(dir / "n.xls"));
    const std::vector<std::string> tells = {
        "tell: Read Hit Scores: The scores could not be saved to " + dir.file("taken.csv") + ".",
        "tell: Read Hit Scores: The scores could not be saved to " + dir.file("missing/s.txt") + ".",
        "tell: Read Hit Scores: The scores could not be saved to " + dir.file("w.xls") + ": disk full",
        "tell: Read Hit Scores: Excel workbooks cannot be written here; save the scores as Comma Delimited "
        "or Tab Delimited.",
    };
    std::vector<std::string> told;
    for (const auto& line : op.log)
        if (line != kDialog) told.push_back(line);
    EXPECT_EQ(told, tells);
    EXPECT_EQ(state.FilePath, "/programs/range.hvn");
}

}  // namespace
}  // namespace halvane
