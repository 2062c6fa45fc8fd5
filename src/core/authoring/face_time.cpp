#include "authoring/face_time.h"

#include "authoring/program_grid.h"
#include "authoring/shared_state.h"
#include "text/fault.h"
#include "text/conversions.h"

namespace halvane {

namespace {
constexpr Color kOptionColors[Face_time::kOptions] = {colors::Friend, colors::Foe, colors::Edge,
                                                      colors::Down};
}  // namespace

Face_time::Face_time(SharedState& state, ProgramGrid& grid) : m_state(state), m_grid(grid) {}

void Face_time::CmdPlus() {
    const double v = text::Val(Text1);
    // Stops at the seconds left from the grid's current row, not from the highlighted cells.
    if (m_grid.Row() + v >= m_state.NumSeconds + 1) return;
    Text1 = text::CStr(v + 1);
}

void Face_time::CmdMinus() {
    const double v = text::Val(Text1);
    if (v > 1) Text1 = text::CStr(v - 1);
}

void Face_time::OKButton() {
    Face1 = m_first >= 0 ? kOptionCaptions[m_first] : "";
    Face2 = m_second >= 0 ? kOptionCaptions[m_second] : "";
    const Color c1 = m_first >= 0 ? kOptionColors[m_first] : 0;
    const Color c2 = m_second >= 0 ? kOptionColors[m_second] : 0;
    if (Face1.empty()) {
        m_closed = true;
        return;
    }
    // A time that is no 16-bit number is refused before the first cell is written.
    const double t = text::Val(Text1);
    for (int col = 1; col < m_grid.Cols(); ++col) {
        const int r = m_state.SelRow[static_cast<std::size_t>(col)];
        if (r >= 1 && r + t < m_state.NumSeconds + 2 && !text::toInt16(t))
            throw Fault("The time \"" + Text1 + "\" is not a number of seconds from -32768 to 32767.");
    }
    bool stopped = false;
    for (int col = 1; col < m_grid.Cols() && !stopped; ++col)
        if (m_state.SelRow[static_cast<std::size_t>(col)] >= 1) applyToColumn(col, c1, c2, stopped);
    m_closed = true;
}

void Face_time::applyToColumn(int col, Color c1, Color c2, bool& stopped) {
    const int r = m_state.SelRow[static_cast<std::size_t>(col)];
    m_grid.setRow(r);
    m_grid.setCol(col);
    const double t = text::Val(Text1);
    if (r + t < m_state.NumSeconds + 2) {
        FaceSeconds = *text::toInt16(t);
    } else {
        FaceSeconds = static_cast<std::int16_t>(m_state.NumSeconds + 2 - r);
    }

    // Gap fill: carry the nearest word above down to the row before r; a Pause carries nothing.
    if (r >= 2) {
        int found = r - 1;
        while (found > 1 && m_grid.TextMatrix(found, col).empty()) --found;
        std::string carried;
        Color carriedColor = 0;
        if (m_grid.TextMatrix(found, col) != words::Pause) {
            carried = m_grid.TextMatrix(found, col);
            carriedColor = m_grid.cellBackColor(found, col);
        }
        if (!carried.empty())
            for (int row = found; row < r; ++row) {
                m_grid.setTextMatrix(row, col, carried);
                m_grid.setCellBackColor(row, col, carriedColor);
            }
        m_grid.setRow(r);
    }

    for (int k = 1; k <= FaceSeconds; ++k) {
        if (m_grid.Text() == words::Pause) {
            m_state.FileChanged = true;
            stopped = true;
            return;
        }
        m_grid.setMergeRow(m_grid.Row(), false);
        m_grid.setText(Face1);
        m_grid.setCellBackColor(c1);
        if (k != FaceSeconds) m_grid.setRow(m_grid.Row() + 1);
    }

    // The Pause test looks at the cell just filled, not at the one about to be written.
    if (m_grid.Row() <= m_state.NumSeconds && !Face2.empty()) {
        if (m_grid.Text() == words::Pause) {
            m_state.FileChanged = true;
            stopped = true;
            return;
        }
        m_grid.setRow(m_grid.Row() + 1);
        m_grid.setMergeRow(m_grid.Row(), false);
        m_grid.setText(Face2);
        m_grid.setCellBackColor(c2);
    }
    m_state.FileChanged = true;
}

}  // namespace halvane
