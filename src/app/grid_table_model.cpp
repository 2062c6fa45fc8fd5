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
    endResetModel();
}

void GridTableModel::cellsChanged() {
    if (rowCount() > 0 && columnCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

int GridTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() || !m_grid ? 0 : m_grid->Rows() - 1;
}

int GridTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() || !m_grid ? 0 : m_grid->Cols() - 1;
}

QVariant GridTableModel::data(const QModelIndex& index, int role) const {
    if (!m_grid || !index.isValid()) return {};
    const int row = index.row() + 1;
    const int col = index.column() + 1;
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
    if (!m_grid || role != Qt::DisplayRole) return {};
    if (orientation == Qt::Horizontal) return QString::fromLatin1(m_grid->TextMatrix(0, section + 1));
    return QString::fromLatin1(m_grid->TextMatrix(section + 1, 0));
}

}  // namespace halvane::app
