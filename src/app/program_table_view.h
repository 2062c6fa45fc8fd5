#pragma once
// The table that shows the Program grid: headings from the grid, merged Pause rows, "Seconds" in the corner.

#include <QTableView>

class QLabel;

namespace halvane::app {

class GridTableModel;

class ProgramTableView : public QTableView {
    Q_OBJECT
  public:
    explicit ProgramTableView(QWidget* parent = nullptr);

    GridTableModel* gridModel() const { return m_model; }
    // Reads the grid again: column widths, the corner text and the merged rows.
    void reload();
    QString cornerText() const;

  protected:
    void updateGeometries() override;

  private:
    void updateSpans();
    GridTableModel* m_model;
    QLabel* m_corner = nullptr;
};

}  // namespace halvane::app
