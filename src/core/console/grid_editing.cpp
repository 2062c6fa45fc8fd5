// Form1's handlers of the Program grid: the highlight, clicks, the Delete key, Insert Pause.

#include <algorithm>

#include "authoring/face_time.h"
#include "console/main_window.h"
#include "text/fault.h"

namespace halvane {

namespace {
constexpr int kLeft = 1;
constexpr int kRight = 2;
constexpr int kCtrl = 2;
constexpr int kDeleteKey = 46;

// The control's own answer to the cursor keys: the current cell moves within the data cells.
void moveCurrentCell(ProgramGrid& grid, int keyCode, int shift, int pageRows) {
    enum { PageUp = 33, PageDown, End, Home, Left, Up, Right, Down };
    const bool ctrl = shift & kCtrl;
    const int lastRow = grid.Rows() - 1;
    const int lastCol = grid.Cols() - 1;
    int row = std::clamp(grid.Row(), 1, lastRow);
    int col = std::clamp(grid.Col(), 1, lastCol);
    switch (keyCode) {
        case Up:
            row -= 1;
            break;
        case Down:
            row += 1;
            break;
        case Left:
            col -= 1;
            break;
        case Right:
            col += 1;
            break;
        case PageUp:
            row -= std::max(pageRows, 1);
            break;
        case PageDown:
            row += std::max(pageRows, 1);
            break;
        case Home:
            col = 1;
            if (ctrl) row = 1;
            break;
        case End:
            col = lastCol;
            if (ctrl) row = lastRow;
            break;
        default:
            return;
    }
    grid.setRow(std::clamp(row, 1, lastRow));
    grid.setCol(std::clamp(col, 1, lastCol));
}
}  // namespace

// Puts the cell of this column back from the highlight to the colour of its word.
void Form1::restoreHighlight(int col) {
    ProgramGrid& grid = *m_grid;
    const int row = m_state.SelRow[static_cast<std::size_t>(col)];
    if (grid.cellBackColor(row, col) == grid.BackColorSel)
        grid.setCellBackColor(row, col, wordColor(grid.TextMatrix(row, col), grid.BackColor));
}

void Form1::ClearSelection() {
    if (!m_grid) return;
    for (int col = 1; col < m_grid->Cols(); ++col) {
        if (m_state.SelRow[static_cast<std::size_t>(col)] >= 1) restoreHighlight(col);
        m_state.SelRow[static_cast<std::size_t>(col)] = 0;
    }
}

void Form1::grdInfo_MouseDown(int button, int shift, int mouseRow, int mouseCol) {
    if (!m_grid) return;
    ProgramGrid& grid = *m_grid;
    try {
        // The control's own part: a left click makes the cell current; on the seconds column it takes
        // the row with its first data column, on the heading row the column from its first row.
        if (button == kLeft && grid.Cols() > 1 && grid.Rows() > 1) {
            grid.setRow(mouseRow >= 1 ? mouseRow : 1);
            grid.setCol(mouseCol >= 1 ? mouseCol : 1);
        }
        grid.HighLight = 0;
        if (mouseRow >= 1 && mouseCol >= 1) {
            const bool left = m_state.LeftClickIF;
            const bool right = m_state.RightClickIF;
            if (button == kLeft && shift == kCtrl) {
                ctrlClick();
            } else if (button == kLeft) {
                if (left || right) plainClick();
            } else if (button == kRight) {
                if (left || right) faceTimeThenClear();
            }
            return;
        }
        if (mouseCol != 0) return;
        if (grid.Text() == words::Pause) return;
        ClearSelection();
        for (int col = 1; col < grid.Cols(); ++col) {
            grid.setCol(col);
            grid.setCellBackColor(grid.BackColorSel);
            m_state.SelRow[static_cast<std::size_t>(col)] = static_cast<std::int16_t>(grid.Row());
        }
        const std::string chosen = m_operator.showPopup("Popup_Menu", popupItems("Popup_Menu"));
        if (!chosen.empty()) run(chosen);
        if (m_grid) m_grid->HighLight = 0;
    } catch (const Fault& fault) {
        tell(fault.what());
    }
}

void Form1::plainClick() {
    ProgramGrid& grid = *m_grid;
    if (ClickedBefore) ClearSelection();
    auto& sel = m_state.SelRow[static_cast<std::size_t>(grid.Col())];
    if (sel < 1) {
        grid.setCellBackColor(grid.BackColorSel);
        sel = static_cast<std::int16_t>(grid.Row());
        if (m_state.LeftClickIF) faceTimeThenClear();
    }
    ClickedBefore = true;
}

void Form1::ctrlClick() {
    ProgramGrid& grid = *m_grid;
    auto& sel = m_state.SelRow[static_cast<std::size_t>(grid.Col())];
    if (sel < 1) {
        grid.setCellBackColor(grid.BackColorSel);
        sel = static_cast<std::int16_t>(grid.Row());
    } else if (grid.CellBackColor() == grid.BackColorSel) {
        grid.setCellBackColor(wordColor(grid.Text(), grid.BackColor));
        sel = 0;
    }
}

void Form1::faceTimeThenClear() {
    M_Face();
    ClearSelection();
}

void Form1::M_Face() {
    if (!m_grid) return;
    Face_time dialog(m_state, *m_grid);
    m_operator.show(dialog);
}

void Form1::grdInfo_KeyDown(int keyCode, int shift, int pageRows) {
    // A Program with no data column has no cell to move to or to clear.
    if (!m_grid || m_grid->Cols() < 2 || m_grid->Rows() < 2) return;
    ProgramGrid& grid = *m_grid;
    if (keyCode != kDeleteKey) {
        moveCurrentCell(grid, keyCode, shift, pageRows);
        return;
    }
    bool changed = false;
    grid.setCol(1);
    if (grid.Text() == words::Pause) {
        for (int col = 1; col < grid.Cols(); ++col) {
            grid.setCol(col);
            grid.setText("");
            grid.setCellBackColor(grid.BackColor);
            m_state.SelRow[static_cast<std::size_t>(col)] = 0;
            grid.setCellForeColor(0);
            grid.setCellAlignment(align::LeftCenter);
            grid.MergeCells = 0;
        }
        changed = true;
    }
    for (int col = 1; col < grid.Cols(); ++col) {
        grid.setCol(col);
        auto& sel = m_state.SelRow[static_cast<std::size_t>(col)];
        if (sel > 0) {
            grid.setRow(sel);
            changed = changed || !grid.Text().empty() || grid.CellBackColor() != grid.BackColor;
            grid.setText("");
            grid.setCellBackColor(grid.BackColor);
            sel = 0;
        }
    }
    // Deleting changes the Program: Close and Exit must ask before the change is lost.
    if (changed) m_state.FileChanged = true;
}

void Form1::M_Pause() {
    if (!m_grid) return;
    ProgramGrid& grid = *m_grid;
    const int row = grid.Row();
    for (int col = 1; col < grid.Cols(); ++col)
        if (!grid.TextMatrix(row, col).empty()) {
            if (m_operator.ask("Data In row. Overwrite?", "Error", Buttons::YesNo) == Answer::No) return;
            break;
        }
    grid.MergeCells = 2;
    for (int col = 1; col < grid.Cols(); ++col) {
        grid.setCol(col);
        grid.setTextMatrix(row, col, words::Pause);
        grid.setCellBackColor(colors::Pause);
        grid.setCellForeColor(colors::PauseText);
        grid.setCellAlignment(align::CenterCenter);
    }
    grid.setMergeRow(row, true);
    m_state.FileChanged = true;
}

}  // namespace halvane
