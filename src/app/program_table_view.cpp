#include "program_table_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "authoring/program_grid.h"
#include "grid_table_model.h"
#include "platform/twips.h"

namespace halvane::app {

ProgramTableView::ProgramTableView(QWidget* parent) : QTableView(parent), m_model(new GridTableModel(this)) {
    setObjectName("grdInfo");
    m_model->setPalette(palette());
    setModel(m_model);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setCornerButtonEnabled(false);
    // The table follows the current cell when the operator moves it by key, not when a Program is
    // opened with its current cell on its last second: that one is shown from its first.
    setAutoScroll(false);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    verticalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    verticalHeader()->setMinimumWidth(toPixels(ProgramGrid::kDefaultColWidth));
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    verticalHeader()->viewport()->installEventFilter(this);
    horizontalHeader()->viewport()->installEventFilter(this);
    verticalHeader()->setSectionsClickable(false);
    horizontalHeader()->setSectionsClickable(false);
    m_corner = new QLabel(this);
    m_corner->setObjectName("corner");
    m_corner->setIndent(4);
    m_corner->setAutoFillBackground(true);
    m_corner->setBackgroundRole(QPalette::Button);
    m_corner->installEventFilter(this);
}

namespace {
int buttonCode(Qt::MouseButton button) {
    switch (button) {
        case Qt::LeftButton:
            return 1;
        case Qt::RightButton:
            return 2;
        case Qt::MiddleButton:
            return 4;
        default:
            return 0;
    }
}

int shiftCode(Qt::KeyboardModifiers modifiers) {
    return (modifiers & Qt::ShiftModifier ? 1 : 0) | (modifiers & Qt::ControlModifier ? 2 : 0) |
           (modifiers & Qt::AltModifier ? 4 : 0);
}
}  // namespace

void ProgramTableView::emitMouseDown(QMouseEvent* event, int row, int col) {
    const int button = buttonCode(event->button());
    if (button) emit gridMouseDown(button, shiftCode(event->modifiers()), row, col);
}

// The cell under the pointer, also inside a merged run (indexAt would give the run's first cell).
void ProgramTableView::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    const QPoint at = event->position().toPoint();
    const int row = rowAt(at.y());
    const int col = columnAt(at.x());
    if (row >= 0 && col >= 0) emitMouseDown(event, row + 1, col + 1);
}

// Every key goes to the grid: the cursor keys move its current cell, Delete clears. Nothing moves the
// table's own cursor, so the cell the operator sees is the one the commands act on.
void ProgramTableView::keyPressEvent(QKeyEvent* event) {
    static const std::pair<int, int> kKeys[] = {
        {Qt::Key_PageUp, 33}, {Qt::Key_PageDown, 34}, {Qt::Key_End, 35},
        {Qt::Key_Home, 36},   {Qt::Key_Left, 37},     {Qt::Key_Up, 38},
        {Qt::Key_Right, 39},  {Qt::Key_Down, 40},     {Qt::Key_Delete, 46},
    };
    for (const auto& [key, code] : kKeys)
        if (event->key() == key) {
            emit gridKeyDown(code, shiftCode(event->modifiers()));
            if (currentIndex().isValid()) scrollTo(currentIndex());
            return;
        }
    QTableView::keyPressEvent(event);
}

int ProgramTableView::pageRows() const {
    const int rowHeight = std::max(verticalHeader()->defaultSectionSize(), 1);
    return std::max(viewport()->height() / rowHeight, 1);
}

// Presses on the headers and the corner are presses on the grid's fixed row and column.
bool ProgramTableView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress) {
        auto* mouse = static_cast<QMouseEvent*>(event);
        const QPoint at = mouse->position().toPoint();
        if (watched == m_corner) {
            emitMouseDown(mouse, 0, 0);
            return true;
        }
        if (watched == verticalHeader()->viewport()) {
            const int section = verticalHeader()->logicalIndexAt(at);
            if (section >= 0) emitMouseDown(mouse, section + 1, 0);
            return true;
        }
        if (watched == horizontalHeader()->viewport()) {
            const int section = horizontalHeader()->logicalIndexAt(at);
            if (section >= 0) emitMouseDown(mouse, 0, section + 1);
            return true;
        }
    }
    return QTableView::eventFilter(watched, event);
}

QString ProgramTableView::cornerText() const {
    return m_corner->text();
}

void ProgramTableView::reload() {
    const ProgramGrid* grid = m_model->grid();
    m_corner->setText(grid ? QString::fromLatin1(grid->TextMatrix(0, 0)) : QString());
    if (!grid) return;
    for (int c = 1; c < grid->Cols(); ++c)
        horizontalHeader()->resizeSection(c - 1, toPixels(grid->ColWidth(c)));
    updateSpans();
    showCurrentCell();
}

// The focus frame stands on the grid's current cell; in the seconds column it stands on the row's
// first data cell, the cell Delete and Insert Pause start from.
void ProgramTableView::showCurrentCell() {
    const ProgramGrid* grid = m_model->grid();
    const int rows = m_model->rowCount();
    const int cols = m_model->columnCount();
    if (!grid || rows == 0 || cols == 0) return;
    const QModelIndex current =
        m_model->index(std::clamp(grid->Row(), 1, rows) - 1, std::clamp(grid->Col(), 1, cols) - 1);
    if (current != currentIndex()) selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
}

// A row marked for merging shows each run of equal words as one wide cell.
void ProgramTableView::updateSpans() {
    clearSpans();
    const ProgramGrid* grid = m_model->grid();
    if (!grid || grid->MergeCells == 0) return;
    for (int r = 1; r < grid->Rows(); ++r) {
        if (!grid->MergeRow(r)) continue;
        int start = 1;
        for (int c = 2; c <= grid->Cols(); ++c) {
            if (c < grid->Cols() && grid->TextMatrix(r, c) == grid->TextMatrix(r, start)) continue;
            if (c - start > 1) setSpan(r - 1, start - 1, 1, c - start);
            start = c;
        }
    }
}

// The grid's current cell in a frame as heavy as its FocusRect asks, while the table has the keys.
void ProgramTableView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    const ProgramGrid* grid = m_model->grid();
    const QModelIndex current = currentIndex();
    if (!grid || grid->FocusRect == 0 || !current.isValid() || !hasFocus()) return;
    QPainter painter(viewport());
    painter.setPen(QPen(palette().color(QPalette::WindowText), grid->FocusRect == 2 ? 2 : 1));
    const QRect cell(columnViewportPosition(current.column()), rowViewportPosition(current.row()),
                     columnWidth(current.column()), rowHeight(current.row()));
    painter.drawRect(cell.adjusted(1, 1, -1, -1));
}

void ProgramTableView::updateGeometries() {
    QTableView::updateGeometries();
    if (!m_corner) return;  // called while the base class is still being set up
    const int frame = frameWidth();
    m_corner->setGeometry(frame, frame, verticalHeader()->width(), horizontalHeader()->height());
    m_corner->raise();
}

}  // namespace halvane::app
