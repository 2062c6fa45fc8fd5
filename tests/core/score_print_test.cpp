// The printed score sheet: which rows land in which block on which page, what the screen keeps
// hidden afterwards, and the paths on which nothing is printed and nothing changes.

#include <gtest/gtest.h>

#include "scores/hit_scores.h"
#include "scores/score_print.h"
#include "scripted_operator.h"
#include "text/fault.h"

namespace halvane::testing {
namespace {

// Row numbers as ranges: "1-50,200".
std::string ranges(const std::vector<int>& rows) {
    std::string out;
    for (std::size_t i = 0; i < rows.size();) {
        std::size_t j = i;
        while (j + 1 < rows.size() && rows[j + 1] == rows[j] + 1) ++j;
        out += (out.empty() ? "" : ",") + std::to_string(rows[i]) +
               (j > i ? "-" + std::to_string(rows[j]) : std::string());
        i = j + 1;
    }
    return out;
}

std::string hiddenRows(const std::vector<int>& heights) {
    std::vector<int> hidden;
    for (int i = 1; i < static_cast<int>(heights.size()); ++i)
        if (heights[static_cast<std::size_t>(i)] == 0) hidden.push_back(i);
    return ranges(hidden);
}

TEST(PrintRule, BlocksPagesAndWhatStaysHiddenOnScreen) {
    struct Case {
        int gridRows, h;
        std::string blocks, hiddenAfter;
    };
    // h is the range's upper end + 1; the full grid's Option1 gives 200, like a range of 199.
    const Case cases[] = {
        {201, 2, "p1 .1 1", "2-200"},
        {201, 11, "p1 .1 1-10", "11-200"},
        {201, 51, "p1 .1 1-50", "51-200"},
        {201, 52, "p1 .1 1-50,52-200 | p1 .6 51-200", ""},
        {201, 101, "p1 .1 1-50,101-200 | p1 .6 51-200 | p2 .1 101-200", ""},
        {201, 151, "p1 .1 1-50,151-200 | p1 .6 51-100,151-200 | p2 .1 101-200 | p2 .6 151-200", ""},
        {201, 200, "p1 .1 1-50,200 | p1 .6 51-100,200 | p2 .1 101-150,200 | p2 .6 151-200", ""},
        {201, 201, "p1 .1 1-50 | p1 .6 51-100 | p2 .1 101-150 | p2 .6 151-200", ""},
        {8, 8, "p1 .1 1-7", ""},  // a packed download of 7 targets
        {200, 200, "p1 .1 1-50 | p1 .6 51-100 | p2 .1 101-150 | p2 .6 151-199", ""},
    };
    for (const Case& c : cases) {
        const PrintPlan plan =
            planPrint(c.h, std::vector<int>(static_cast<std::size_t>(c.gridRows), 240), {});
        std::string blocks;
        for (const PrintBlock& b : plan.blocks) {
            EXPECT_DOUBLE_EQ(b.y, 0.1);
            blocks += (blocks.empty() ? "" : " | ") + ("p" + std::to_string(b.page)) +
                      (b.x == 0.1   ? " .1 "
                       : b.x == 0.6 ? " .6 "
                                    : " ? ") +
                      ranges(b.rows);
        }
        EXPECT_EQ(blocks, c.blocks) << "h = " << c.h;
        EXPECT_EQ(hiddenRows(plan.rowHeight), c.hiddenAfter) << "h = " << c.h;
    }
}

// Records what the window hands the printer.
class RecordingPrinter : public ScorePrinter {
  public:
    std::vector<std::string> log;
    std::vector<GridPicture> pictures;
    bool cancel = false;
    bool failAtEnd = false;

    bool begin() override {
        log.push_back("begin");
        return !cancel;
    }
    void header(const std::string& text, const PrintFont& f, double centreX, double top) override {
        log.push_back("header " + text + " " + f.name + " " + std::to_string(f.size) +
                      (f.bold ? " bold" : "") + (f.underline ? " underline" : "") + " " +
                      std::to_string(centreX) + " " + std::to_string(top));
    }
    void paint(const GridPicture& picture, double, double) override {
        log.push_back("paint " + std::to_string(picture.rows.size() - 1));
        pictures.push_back(picture);
    }
    void newPage() override { log.push_back("page"); }
    void end() override {
        log.push_back("end");
        if (failAtEnd) throw Fault("the file is write-protected");
    }
};

// OK in the print window, with the range of Option2, or Option1 when `range` is empty.
std::function<void(frmPrint&)> ok(const std::string& header, const std::string& range) {
    return [header, range](frmPrint& d) {
        d.txtHeader = header;
        d.option2Selected = !range.empty();
        d.txtRange = range;
        d.OKButton_Click();
    };
}

struct PrintWindow {
    SharedState state;
    ScriptedOperator op;
    RecordingPrinter printer;
    FrmHitScores window{state, nullptr, nullptr, op, nullptr, &printer};
    PrintWindow() { window.Load(); }
    void print(const std::string& header, const std::string& range = "") {
        op.script<frmPrint>(ok(header, range));
        window.CmdPrint_Click();
    }
};

TEST(ScoreSheet, TheFullGridPrintsTwoPagesEachUnderItsHeader) {
    PrintWindow w;
    w.window.Grid.setTextMatrix(3, 1, "A");
    w.print("Range 3, Monday");
    const std::string header = "header Range 3, Monday Arial 14 bold underline 0.475000 0.050000";
    EXPECT_EQ(w.printer.log, (std::vector<std::string>{"begin", header, "paint 51", "paint 51", "page",
                                                       header, "paint 51", "paint 50", "end"}));
    EXPECT_EQ(w.op.log.front(), "show: Print 1-200");
    const GridPicture& first = w.printer.pictures.front();
    EXPECT_EQ(first.rows[0].texts, (std::vector<std::string>{"Target Num", "Hit Score"}));
    EXPECT_EQ(first.rows[3].texts, (std::vector<std::string>{"3", "A"}));
    EXPECT_EQ(first.rows.back().texts[0], "200");
    EXPECT_EQ(hiddenRows(w.window.RowHeight), "");

    w.printer.log.clear();
    w.print("", "10");
    EXPECT_EQ(w.printer.log[2], "paint 10");
    EXPECT_EQ(hiddenRows(w.window.RowHeight), "11-200");
}

TEST(ScoreSheet, NothingIsPrintedAndNoRowIsHiddenWhenThePrintStopsShort) {
    struct Case {
        std::function<void(frmPrint&)> dialog;
        bool cancelDialog, failAtEnd;
        std::string message;  // "" for none
        std::size_t printerCalls;
    } const cases[] = {
        {[](frmPrint& d) { d.CancelButton_Click(); }, false, false, "", 0},
        {ok("", "250"), false, false, "Print range 1 - 250 is not within rows 1 to 200: nothing was printed.",
         0},
        {ok("", "0"), false, false, "Print range 1 - 0 is not within rows 1 to 200: nothing was printed.", 0},
        {[](frmPrint&) {}, false, false, "The print range \"\" is not a number: nothing was printed.", 0},
        {ok("", "10"), true, false, "", 1},
        {ok("", "10"), false, true, "The score sheet was not printed: the file is write-protected", 4},
    };
    for (const Case& c : cases) {
        PrintWindow w;
        w.printer.cancel = c.cancelDialog;
        w.printer.failAtEnd = c.failAtEnd;
        w.op.script<frmPrint>(c.dialog);
        w.window.CmdPrint_Click();
        const std::string told = w.op.log.size() > 1 ? w.op.log.back() : "";
        EXPECT_EQ(told, c.message.empty() ? "" : "tell: Halvane: " + c.message) << c.message;
        EXPECT_EQ(w.printer.log.size(), c.printerCalls) << c.message;
        EXPECT_EQ(hiddenRows(w.window.RowHeight), "") << c.message;
    }

    ScriptedOperator op;
    SharedState state;
    FrmHitScores noPrinter(state, nullptr, nullptr, op);
    noPrinter.Load();
    op.script<frmPrint>([](frmPrint& d) { d.OKButton_Click(); });
    noPrinter.CmdPrint_Click();
    EXPECT_EQ(op.log.back(), "tell: Halvane: No printer is set up for the score sheet: nothing was printed.");
}

}  // namespace
}  // namespace halvane::testing
