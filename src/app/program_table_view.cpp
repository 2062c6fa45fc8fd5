#include "program_table_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>

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

void ProgramTableView::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    const QModelIndex index = indexAt(event->position().toPoint());
    const int button = buttonCode(event->button());
    if (index.isValid() && button)
        emit gridMouseDown(button, shiftCode(event->modifiers()), index.row() + 1, index.column() + 1);
}

void ProgramTableView::keyPressEvent(QKeyEvent* event) {
    // Only the Delete key means something to the grid; the others keep their table meaning.
    if (event->key() == Qt::Key_Delete) {
        emit gridKeyDown(46, shiftCode(event->modifiers()));
        return;
    }
    QTableView::keyPressEvent(event);
}

// Presses on the headers are presses on the grid's fixed row and column.
bool ProgramTableView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress) {
        auto* mouse = static_cast<QMouseEvent*>(event);
        const int button = buttonCode(mouse->button());
        const QPoint at = mouse->position().toPoint();
        if (watched == verticalHeader()->viewport()) {
            const int section = verticalHeader()->logicalIndexAt(at);
            if (section >= 0 && button)
                emit gridMouseDown(button, shiftCode(mouse->modifiers()), section + 1, 0);
            return true;
        }
        if (watched == horizontalHeader()->viewport()) {
            const int section = horizontalHeader()->logicalIndexAt(at);
            if (section >= 0 && button)
                emit gridMouseDown(button, shiftCode(mouse->modifiers()), 0, section + 1);
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

void ProgramTableView::updateGeometries() {
    QTableView::updateGeometries();
    if (!m_corner) return;  // called while the base class is still being set up
    const int frame = frameWidth();
    m_corner->setGeometry(frame, frame, verticalHeader()->width(), horizontalHeader()->height());
    m_corner->raise();
}

}  // namespace halvane::app
