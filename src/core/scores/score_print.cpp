#include "scores/score_print.h"

#include <algorithm>
#include <numeric>

#include "scores/hit_scores.h"
#include "text/conversions.h"

namespace halvane {

namespace {

struct Place {
    int page;
    double x, y;
};
// Blocks of fifty rows: two side by side on a page, the third and fourth on the second page.
constexpr Place kPlaces[] = {{1, 0.1, 0.1}, {1, 0.6, 0.1}, {2, 0.1, 0.1}, {2, 0.6, 0.1}};
constexpr int kFullGridRows = 201;

// The window's row heights while the rule runs. Rows past the grid's end are left alone, so a bound
// of 200 on a shorter grid stops at its last row.
class Rows {
  public:
    Rows(std::vector<int>& height, std::vector<int>& data) : m_height(height), m_data(data) {}
    int last() const { return static_cast<int>(m_height.size()) - 1; }
    void note(int from, int to) {
        forEach(from, to, [this](std::size_t i) { m_data[i] = m_height[i]; });
    }
    void hide(int from, int to) {
        forEach(from, to, [this](std::size_t i) { m_height[i] = 0; });
    }
    void show(int from, int to) {
        forEach(from, to, [this](std::size_t i) { m_height[i] = m_data[i]; });
    }
    std::vector<int> visible() const {
        std::vector<int> rows;
        for (int i = 1; i <= last(); ++i)
            if (m_height[static_cast<std::size_t>(i)] != 0) rows.push_back(i);
        return rows;
    }

  private:
    template <class F>
    void forEach(int from, int to, F f) {
        for (int i = std::max(from, 1); i <= std::min(to, last()); ++i) f(static_cast<std::size_t>(i));
    }
    std::vector<int>& m_height;
    std::vector<int>& m_data;
};

}  // namespace

int GridPicture::width() const {
    return std::accumulate(colWidths.begin(), colWidths.end(), 0);
}

int GridPicture::height() const {
    return std::accumulate(rows.begin(), rows.end(), 0, [](int sum, const Row& r) { return sum + r.height; });
}

GridPicture gridPicture(const ProgramGrid& grid, const std::vector<int>& rowHeight,
                        const std::vector<int>& rows) {
    GridPicture picture;
    for (int c = 0; c < grid.Cols(); ++c) picture.colWidths.push_back(grid.ColWidth(c));
    auto add = [&](int r) {
        GridPicture::Row row;
        row.height = r < static_cast<int>(rowHeight.size()) ? rowHeight[static_cast<std::size_t>(r)] : 0;
        for (int c = 0; c < grid.Cols(); ++c) row.texts.push_back(grid.TextMatrix(r, c));
        picture.rows.push_back(std::move(row));
    };
    add(0);
    for (const int r : rows)
        if (r > 0 && r < grid.Rows()) add(r);
    return picture;
}

PrintPlan planPrint(int h, std::vector<int> rowHeight, std::vector<int> rowData) {
    rowData.resize(rowHeight.size(), 0);
    PrintPlan plan;
    Rows rows(rowHeight, rowData);
    const int last = rows.last();
    auto paint = [&](int block) {
        const Place& p = kPlaces[block];
        plan.blocks.push_back({p.page, p.x, p.y, rows.visible()});
    };

    rows.note(1, last);
    // Every row up to h - 1 hidden and shown again at once: no lasting effect.
    rows.note(1, h - 1);
    rows.hide(1, h - 1);
    rows.show(1, h - 1);

    if (h <= 51) {
        rows.note(h, last);
        rows.hide(h, last);
        paint(0);
    } else {
        // Rows h and on stay visible from here, so they come with every block.
        rows.hide(51, h - 1);
        paint(0);
        rows.hide(1, 50);
        if (h <= 100) {
            rows.show(51, h - 1);
            paint(1);
        } else {
            rows.show(51, 100);
            paint(1);
            rows.hide(51, 100);
            if (h <= 150) {
                rows.show(101, h - 1);
                paint(2);
            } else {
                rows.show(101, 150);
                paint(2);
                rows.hide(101, 150);
                // The full grid's bound of 200 reaches row 200 itself.
                rows.show(151, h == 200 ? 200 : h - 1);
                paint(3);
            }
        }
    }
    // Only rows up to h - 1 come back: rows hidden by a short range stay hidden on screen.
    rows.show(1, h - 1);
    plan.rowHeight = std::move(rowHeight);
    plan.rowData = std::move(rowData);
    return plan;
}

void frmPrint::Load() {
    Option1.Caption = "1-" + std::to_string(m_scores.Grid.Rows() - 1);
    option2Selected = false;
}

void frmPrint::OKButton_Click() {
    m_scores.Tag = "0";
    m_scores.PrintHeader = txtHeader;
    const int gridRows = m_scores.Grid.Rows();
    if (option2Selected)
        m_scores.PrintRows = text::CStr(text::Val(txtRange) + 1);
    else
        m_scores.PrintRows = std::to_string(gridRows == kFullGridRows ? 200 : gridRows);
    m_closed = true;
}

void frmPrint::CancelButton_Click() {
    m_scores.Tag = "1";
    m_closed = true;
}

}  // namespace halvane
