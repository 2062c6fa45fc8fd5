#pragma once
// A main window with a new Program of 4 targets and 30 seconds, a scripted operator, and helpers to
// write and read a column compactly.

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "scripted_operator.h"

namespace halvane::testing {

class ProgramFixture : public ::testing::Test, public Console {
  protected:
    void SetUp() override { newProgram(4, "30"); }

    // Writes words into rows of a column with their colours, as Face Time leaves them.
    void put(int col, std::vector<std::pair<int, std::string>> cells) {
        for (const auto& [row, word] : cells) {
            grid().setTextMatrix(row, col, word);
            grid().setCellBackColor(row, col, wordColor(word, grid().BackColor));
        }
    }
    // The words of rows `from` to `to` of a column, "." for an empty cell: "Foe Foe . Down".
    std::string column(int col, int from, int to) {
        std::string out;
        for (int r = from; r <= to; ++r) {
            if (r > from) out += ' ';
            const std::string& t = grid().TextMatrix(r, col);
            out += t.empty() ? "." : t;
        }
        return out;
    }
    bool highlighted(int row, int col) { return grid().cellBackColor(row, col) == grid().BackColorSel; }
    // A cell's text, back colour, fore colour and alignment.
    std::tuple<std::string, Color, Color, int> cell(int row, int col) {
        return {grid().TextMatrix(row, col), grid().cellBackColor(row, col), grid().cellForeColor(row, col),
                grid().cellAlignment(row, col)};
    }
};

}  // namespace halvane::testing
