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
    // Saves as the operator names `name` and leaves `filter` selected; nullopt cancels.
    void save(const char* name, int filter = 1) {
        op.files = {name ? std::optional(ChosenFile{dir.file(name), name, filter}) : std::nullopt};
        window.CmdSave_Click();
    }
    // What the operator was told, the save dialogs left out.
    std::vector<std::string> told() const {
        std::vector<std::string> lines;
        for (const auto& line : op.log)
            if (line != kDialog) lines.push_back(line.substr(line.find(": ") + 2));
        return lines;
    }
};

TEST_F(ScoreSave, EveryRowInTheFormatOfTheChosenFilterAndFilePathStays) {
    const std::string csv = scoresCsv(window.Grid), txt = scoresTxt(window.Grid);
    EXPECT_TRUE(csv.starts_with("\"Target Num\",\"Hit Score\"\r\n\"1\",\"\"\r\n\"2\",\"\"\r\n"));
    EXPECT_TRUE(txt.starts_with("Target Num\tHit Score\r\n1\t\r\n2\t\r\n"));
    EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 201);
    EXPECT_EQ(std::count(txt.begin(), txt.end(), '\n'), 201);
    save("g", 3);
    EXPECT_EQ(workbooks.path, dir.file("g.xls"));
    EXPECT_EQ(workbooks.rows.back(), (std::vector<std::string>{"200", ""}));

    // Packed after a transmitter download; texts go in unescaped.
    window.Grid.setRows(3);
    window.Grid.setTextMatrix(1, 1, "12");
    window.Grid.setTextMatrix(2, 0, "17");
    window.Grid.setTextMatrix(2, 1, "say \"hi\", 5");
    const std::string packedCsv =
        "\"Target Num\",\"Hit Score\"\r\n\"1\",\"12\"\r\n\"17\",\"say \"hi\", 5\"\r\n";
    const std::string packedTxt = "Target Num\tHit Score\r\n1\t12\r\n17\tsay \"hi\", 5\r\n";
    const struct {
        const char* name;
        int filter;
        const char* written;
        const std::string& bytes;
    } cases[] = {
        {"c.txt", 1, "c.txt", packedCsv},  // the filter decides, not the name
        {"d", 2, "d.txt", packedTxt},      // a bare name gets the format's extension
        {"e.txt", 0, "e.txt", packedTxt},  // a dialog that does not say: the extension decides
        {"f", 0, "f.csv", packedCsv},
    };
    for (const auto& c : cases) {
        save(c.name, c.filter);
        EXPECT_EQ(readBytes(dir / c.written), c.bytes) << c.name;
    }
    EXPECT_EQ(op.log, std::vector<std::string>(5, kDialog));
    EXPECT_EQ(state.FilePath, "/programs/range.hvn");
}

TEST_F(ScoreSave, CancelWritesNothingAndAFileThatCannotBeWrittenIsToldAndKept) {
    save("old.csv");
    writeBytes(dir / "old.csv", "old scores");
    save(nullptr);  // an earlier name does not make Cancel save
    EXPECT_EQ(readBytes(dir / "old.csv"), "old scores");

    std::filesystem::create_directory(dir / "taken.csv");
    writeBytes(dir / "taken.csv" / "inside", "kept");
    save("taken.csv");
    save("missing/s.txt", 2);
    workbooks.error = "disk full";
    save("w.xls", 3);
    FrmHitScores noWriter{state, nullptr, nullptr, op};
    op.files = {ChosenFile{dir.file("n.xls"), "n.xls", 3}};
    noWriter.CmdSave_Click();

    EXPECT_EQ(readBytes(dir / "taken.csv" / "inside"), "kept");
    EXPECT_FALSE(std::filesystem::exists(dir / "n.xls"));
    const std::string cannot = "Read Hit Scores: The scores could not be saved to " + dir.file("");
    EXPECT_EQ(told(), (std::vector<std::string>{
                          cannot + "taken.csv.", cannot + "missing/s.txt.", cannot + "w.xls: disk full",
                          "Read Hit Scores: Excel workbooks cannot be written here; save the scores as Comma "
                          "Delimited or Tab Delimited."}));
    EXPECT_EQ(state.FilePath, "/programs/range.hvn");
}

}  // namespace
}  // namespace halvane
