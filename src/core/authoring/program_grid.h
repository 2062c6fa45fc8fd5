#pragma once
// The Program grid: seconds by targets (or groups), with the text and look of every cell.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "authoring/cell_words.h"

namespace halvane {

// A matrix of cells with a fixed heading row 0 and a fixed seconds column 0, and a current cell that
// the single-cell accessors act on. A cell takes 8 bytes: its text and colours are indices into small
// tables, so the largest Program (201 x 32767 cells) fits in about 53 MB.
class ProgramGrid {
  public:
    ProgramGrid();

    int Rows() const { return m_rows; }
    int Cols() const { return m_cols; }
    // Rows and columns that stay keep their cells; new ones are empty. Throws Fault for counts
    // below 1 or above what the grid can hold.
    void setRows(int rows);
    void setCols(int cols);

    int Row() const { return m_row; }
    int Col() const { return m_col; }
    void setRow(int row);  // Throws Fault when the row does not exist.
    void setCol(int col);

    const std::string& TextMatrix(int row, int col) const;
    void setTextMatrix(int row, int col, std::string_view text);
    Color cellBackColor(int row, int col) const;
    void setCellBackColor(int row, int col, Color color);
    Color cellForeColor(int row, int col) const;
    void setCellForeColor(int row, int col, Color color);
    std::uint8_t cellAlignment(int row, int col) const;
    void setCellAlignment(int row, int col, std::uint8_t alignment);

    // The same on the current cell.
    const std::string& Text() const { return TextMatrix(m_row, m_col); }
    void setText(std::string_view text) { setTextMatrix(m_row, m_col, text); }
    Color CellBackColor() const { return cellBackColor(m_row, m_col); }
    void setCellBackColor(Color color) { setCellBackColor(m_row, m_col, color); }
    Color CellForeColor() const { return cellForeColor(m_row, m_col); }
    void setCellForeColor(Color color) { setCellForeColor(m_row, m_col, color); }
    std::uint8_t CellAlignment() const { return cellAlignment(m_row, m_col); }
    void setCellAlignment(std::uint8_t alignment) { setCellAlignment(m_row, m_col, alignment); }

    bool MergeRow(int row) const;
    void setMergeRow(int row, bool merge);

    int ColWidth(int col) const;  // twips
    void setColWidth(int col, int twips);

    // Whole-grid properties.
    Color BackColor = colors::Window;
    Color BackColorSel = colors::Highlight;
    int MergeCells = 0;  // 0 never, 2 within rows
    int FocusRect = 1;
    int HighLight = 1;
    int Height = 0;  // twips
    int Width = 0;
    bool Visible = false;

    static constexpr int kMaxRows = 32767;
    static constexpr int kMaxCols = 201;
    static constexpr int kDefaultColWidth = 960;

  private:
    struct Cell {
        std::uint32_t text = 0;
        std::uint16_t back = 0;
        std::uint8_t fore = 0;
        std::uint8_t alignment = align::General;
    };
    Cell& at(int row, int col);
    const Cell& at(int row, int col) const;
    Cell blankCell(int row, int col) const;
    std::uint32_t intern(std::string_view text);
    std::uint16_t colorIndex(Color color);
    void checkCell(int row, int col) const;

    int m_rows = 0;
    int m_cols = 0;
    int m_row = 0;
    int m_col = 0;
    std::vector<Cell> m_cells;  // row-major
    std::vector<bool> m_mergeRow;
    std::vector<int> m_colWidth;
    std::vector<std::string> m_texts;
    std::unordered_map<std::string, std::uint32_t> m_textIndex;
    std::vector<Color> m_palette;
    std::uint16_t m_windowIndex = 0;
    std::uint16_t m_fixedIndex = 0;
    std::uint8_t m_windowTextIndex = 0;
    std::uint8_t m_fixedTextIndex = 0;
};

}  // namespace halvane
