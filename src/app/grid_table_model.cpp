#include "grid_table_model.h"

#include "authoring/program_grid.h"
#include "platform/ole_color.h"

namespace halvane::app {

namespace {
Qt::Alignment toQtAlignment(std::uint8_t alignment) {
    switch (alignment) {
        case 0:
            return Qt::AlignLeft | Qt::AlignTop;
        case 1:
            return Qt::AlignLeft | Qt::AlignVCenter;
        case 2:
            return Qt::AlignLeft | Qt::AlignBottom;
        case 3:
            return Qt::AlignHCenter | Qt::AlignTop;
        case 4:
            return Qt::AlignCenter;
        case 5:
            return Qt::AlignHCenter | Qt::AlignBottom;
        case 6:
            return Qt::AlignRight | Qt::AlignTop;
        case 7:
            return Qt::AlignRight | Qt::AlignVCenter;
        case 8:
            return Qt::AlignRight | Qt::AlignBottom;
        default:
            return Qt::AlignLeft | Qt::AlignVCenter;
    }
}
}  // namespace

GridTableModel::GridTableModel(QObject* parent) : QAbstractTableModel(parent) {}

void GridTableModel::setGrid(const ProgramGrid* grid) {
    beginResetModel();
    m_grid = grid;
    m_rows = grid ? grid->Rows() - 1 : 0;
    m_cols = grid ? grid->Cols() - 1 : 0;
    endResetModel();
}

void GridTableModel::cellsChanged() {
    if (m_grid && (m_grid->Rows() - 1 != m_rows || m_grid->Cols() - 1 != m_cols))
        setGrid(m_grid);
    else if (m_rows > 0 && m_cols > 0)
        emit dataChanged(index(0, 0), index(m_rows - 1, m_cols - 1));
}

int GridTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rows;
}

int GridTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_cols;
}

// A grid that grows or shrinks while a dialogue runs is shown by its announced shape until the next
// refresh; cells it no longer has show empty.
bool GridTableModel::exists(int row, int col) const {
    return m_grid && row < m_grid->Rows() && col < m_grid->Cols();
}

QVariant GridTableModel::data(const QModelIndex& index, int role) const {
    const int row = index.row() + 1;
    const int col = index.column() + 1;
    if (!index.isValid() || !exists(row, col)) return {};
    switch (role) {
        case Qt::DisplayRole:
            return QString::fromLatin1(m_grid->TextMatrix(row, col));
        case Qt::BackgroundRole:
            return toQColor(m_grid->cellBackColor(row, col), m_palette);
        case Qt::ForegroundRole:
            return toQColor(m_grid->cellForeColor(row, col), m_palette);
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(toQtAlignment(m_grid->cellAlignment(row, col)));
        default:
            return {};
    }
}

QVariant GridTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const int row = orientation == Qt::Horizontal ? 0 : section + 1;
    const int col = orientation == Qt::Horizontal ? section + 1 : 0;
    if (role != Qt::DisplayRole || !exists(row, col)) return {};
    return QString::fromLatin1(m_grid->TextMatrix(row, col));
}

}  // namespace halvane::app
