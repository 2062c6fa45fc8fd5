// Workbooks as others read them: cell for cell through xlrd, and converted by LibreOffice without a
// word on stderr.

#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>

#include "biff_workbook.h"
#include "gsf_workbook_writer.h"
#include "temp_dir.h"

namespace halvane {
namespace {

using testing::readBytes;
using Rows = std::vector<std::vector<std::string>>;

struct Outcome {
    int status;
    std::string out, err;
};

Outcome run(const testing::TempDir& dir, const std::string& command) {
    const int status = std::system((command + " >" + dir.file("out") + " 2>" + dir.file("err")).c_str());
    return {status, readBytes(dir / "out"), readBytes(dir / "err")};
}

// Rows of two cells as read_cells.py prints them.
std::string printed(const Rows& rows) {
    std::string out;
    for (const auto& row : rows) out += (out.empty() ? "" : "\x1e") + row[0] + "\x1f" + row[1];
    return out;
}

TEST(Workbook, ReadsBackCellForCellAndConvertsWithoutAWarning) {
    testing::TempDir dir;
    if (run(dir, HALVANE_PYTHON " -c 'import xlrd'").status != 0 ||
        run(dir, "command -v soffice").status != 0)
        GTEST_SKIP() << "python3-xlrd or soffice is missing: scripts/setup installs them";

    Rows full = {{"Target Num", "Hit Score"}};
    for (int i = 1; i <= 200; ++i)
        full.push_back({std::to_string(i), i % 3 ? std::to_string(i * 7 % 256) : ""});
    std::string long1(9000, 'a'), long2(20000, 'b');
    long1[8000] = '\xE9';
    long2.back() = 'z';
    const Rows odd = {{"", "x"},       {long1, "caf\xE9 \xFC\xDF"},
                      {"007", "=1+1"}, {"say \"hi\", then", long2},
                      {"", ""},        {std::string(kWorkbookMaxText, 'c'), "caf\xE9 \xFC\xDF"}};
    const std::pair<std::string, Rows> cases[] = {{"full", full}, {"odd", odd}};

    GsfWorkbookWriter writer;
    std::string files;
    for (const auto& [name, rows] : cases) {
        ASSERT_EQ(writer.write(dir.file(name + ".xls"), rows), "") << name;
        const Outcome read =
            run(dir, HALVANE_PYTHON " " HALVANE_READ_CELLS " xls " + dir.file(name + ".xls"));
        EXPECT_EQ(read.status, 0) << name << read.err;
        EXPECT_EQ(read.err, "") << name;
        EXPECT_EQ(read.out, printed(rows)) << name;
        files += " " + dir.file(name + ".xls");
    }
    const Outcome convert =
        run(dir, "soffice --headless -env:UserInstallation=file://" + dir.file("profile") +
                     " --convert-to 'csv:Text - txt - csv (StarCalc):44,34,76' --outdir " + dir.file("csv") +
                     files);
    EXPECT_EQ(convert.status, 0);
    // The launcher's notice that no Java runtime is installed concerns the suite, not the file.
    EXPECT_EQ(std::regex_replace(convert.err, std::regex("Warning: failed to launch javaldx.*\n"), ""), "");
    for (const auto& [name, rows] : cases) {
        const Outcome read =
            run(dir, HALVANE_PYTHON " " HALVANE_READ_CELLS " csv " + dir.file("csv/" + name + ".csv"));
        EXPECT_EQ(read.out, printed(rows)) << name << read.err;
    }
}

TEST(Workbook, WhatDoesNotFitOrCannotBeWrittenIsRefusedAndNoFileAppears) {
    testing::TempDir dir;
    GsfWorkbookWriter writer;
    EXPECT_EQ(writer.write(dir.file("big.xls"), {{"a"}, std::vector<std::string>(kWorkbookMaxCols + 1, "b")}),
              "257 columns do not fit on a sheet of 256.");
    EXPECT_EQ(writer.write(dir.file("big.xls"), {{"a", std::string(kWorkbookMaxText + 1, 'x')}}),
              "A text of 32768 characters does not fit in a cell of 32767.");
    EXPECT_FALSE(std::filesystem::exists(dir / "big.xls"));
    EXPECT_NE(writer.write(dir.file("missing/s.xls"), {{"a"}}), "");
}

}  // namespace
}  // namespace halvane
