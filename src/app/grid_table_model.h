#pragma once
// The Program grid as a Qt table: row 0 and column 0 of the grid become the table's headers.

#include <QAbstractTableModel>
#include <QPalette>

namespace halvane {
class ProgramGrid;
}

namespace halvane::app {

class GridTableModel : public QAbstractTableModel {
    Q_OBJECT
  public:
    explicit GridTableModel(QObject* parent = nullptr);

    // Shows another grid (or none); the table is read again from scratch.
    void setGrid(const ProgramGrid* grid);
    const ProgramGrid* grid() const { return m_grid; }
    void setPalette(const QPalette& palette) { m_palette = palette; }
    // Every cell may have changed; a grid whose shape has changed is read again from scratch.
    void cellsChanged();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    bool exists(int row, int col) const;

    // The shape the views were last told: they never ask beyond it, whatever the grid does meanwhile.
    const ProgramGrid* m_grid = nullptr;
    int m_rows = 0;
    int m_cols = 0;
    QPalette m_palette;
};

}  // namespace halvane::app
