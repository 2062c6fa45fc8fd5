#include "authoring/program_grid.h"

#include <array>
#include <string>

#include "text/fault.h"

namespace halvane {

namespace {
// Texts seen on almost every write: compared before any hashing.
constexpr std::array<std::string_view, 6> kCommonTexts = {"",          words::Friend, words::Foe,
                                                          words::Edge, words::Down,   words::Pause};
}  // namespace

ProgramGrid::ProgramGrid() {
    for (auto t : kCommonTexts) intern(t);
    m_windowIndex = colorIndex(colors::Window);
    m_fixedIndex = colorIndex(colors::ButtonFace);
    m_windowTextIndex = static_cast<std::uint8_t>(colorIndex(colors::WindowText));
    m_fixedTextIndex = static_cast<std::uint8_t>(colorIndex(colors::ButtonText));
    setCols(2);
    setRows(2);
}

ProgramGrid::Cell ProgramGrid::blankCell(int row, int col) const {
    Cell c;
    const bool fixed = row == 0 || col == 0;
    c.back = fixed ? m_fixedIndex : m_windowIndex;
    c.fore = fixed ? m_fixedTextIndex : m_windowTextIndex;
    return c;
}

void ProgramGrid::setRows(int rows) {
    if (rows < 1 || rows > kMaxRows) throw Fault("Invalid row count " + std::to_string(rows) + ".");
    const int old = m_rows;
    m_cells.resize(static_cast<std::size_t>(rows) * static_cast<std::size_t>(m_cols));
    for (int r = old; r < rows; ++r)
        for (int c = 0; c < m_cols; ++c) at(r, c) = blankCell(r, c);
    m_mergeRow.resize(static_cast<std::size_t>(rows), false);
    m_rows = rows;
    if (m_row >= m_rows) m_row = m_rows - 1;
}

void ProgramGrid::setCols(int cols) {
    if (cols < 1 || cols > kMaxCols) throw Fault("Invalid column count " + std::to_string(cols) + ".");
    if (cols != m_cols) {
        std::vector<Cell> cells(static_cast<std::size_t>(m_rows) * static_cast<std::size_t>(cols));
        for (int r = 0; r < m_rows; ++r)
            for (int c = 0; c < cols; ++c)
                cells[static_cast<std::size_t>(r) * cols + c] = c < m_cols ? at(r, c) : blankCell(r, c);
        m_cells.swap(cells);
    }
    m_colWidth.resize(static_cast<std::size_t>(cols), kDefaultColWidth);
    m_cols = cols;
    if (m_col >= m_cols) m_col = m_cols - 1;
}

void ProgramGrid::checkCell(int row, int col) const {
    if (row < 0 || row >= m_rows || col < 0 || col >= m_cols)
        throw Fault("Cell (" + std::to_string(row) + ", " + std::to_string(col) + ") does not exist.");
}

void ProgramGrid::setRow(int row) {
    checkCell(row, 0);
    m_row = row;
}

void ProgramGrid::setCol(int col) {
    checkCell(0, col);
    m_col = col;
}

ProgramGrid::Cell& ProgramGrid::at(int row, int col) {
    return m_cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_cols) +
                   static_cast<std::size_t>(col)];
}

const ProgramGrid::Cell& ProgramGrid::at(int row, int col) const {
    return m_cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_cols) +
                   static_cast<std::size_t>(col)];
}

std::uint32_t ProgramGrid::intern(std::string_view text) {
    for (std::size_t i = 0; i < kCommonTexts.size() && i < m_texts.size(); ++i)
        if (kCommonTexts[i] == text) return static_cast<std::uint32_t>(i);
    std::string key(text);
    if (auto it = m_textIndex.find(key); it != m_textIndex.end()) return it->second;
    const auto index = static_cast<std::uint32_t>(m_texts.size());
    m_texts.push_back(key);
    m_textIndex.emplace(std::move(key), index);
    return index;
}

std::uint16_t ProgramGrid::colorIndex(Color color) {
    for (std::size_t i = 0; i < m_palette.size(); ++i)
        if (m_palette[i] == color) return static_cast<std::uint16_t>(i);
    // Fore colours are kept in one byte; a grid never sees more than a handful of colours.
    if (m_palette.size() >= 255) throw Fault("Too many cell colours in one grid.");
    m_palette.push_back(color);
    return static_cast<std::uint16_t>(m_palette.size() - 1);
}

const std::string& ProgramGrid::TextMatrix(int row, int col) const {
    checkCell(row, col);
    return m_texts[at(row, col).text];
}

void ProgramGrid::setTextMatrix(int row, int col, std::string_view text) {
    checkCell(row, col);
    at(row, col).text = intern(text);
}

Color ProgramGrid::cellBackColor(int row, int col) const {
    checkCell(row, col);
    return m_palette[at(row, col).back];
}

void ProgramGrid::setCellBackColor(int row, int col, Color color) {
    checkCell(row, col);
    at(row, col).back = colorIndex(color);
}

Color ProgramGrid::cellForeColor(int row, int col) const {
    checkCell(row, col);
    return m_palette[at(row, col).fore];
}

void ProgramGrid::setCellForeColor(int row, int col, Color color) {
    checkCell(row, col);
    at(row, col).fore = static_cast<std::uint8_t>(colorIndex(color));
}

std::uint8_t ProgramGrid::cellAlignment(int row, int col) const {
    checkCell(row, col);
    return at(row, col).alignment;
}

void ProgramGrid::setCellAlignment(int row, int col, std::uint8_t alignment) {
    checkCell(row, col);
    at(row, col).alignment = alignment;
}

bool ProgramGrid::MergeRow(int row) const {
    checkCell(row, 0);
    return m_mergeRow[static_cast<std::size_t>(row)];
}

void ProgramGrid::setMergeRow(int row, bool merge) {
    checkCell(row, 0);
    m_mergeRow[static_cast<std::size_t>(row)] = merge;
}

int ProgramGrid::ColWidth(int col) const {
    checkCell(0, col);
    return m_colWidth[static_cast<std::size_t>(col)];
}

void ProgramGrid::setColWidth(int col, int twips) {
    checkCell(0, col);
    m_colWidth[static_cast<std::size_t>(col)] = twips;
}

}  // namespace halvane
