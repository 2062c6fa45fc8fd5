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
    // Reads the grid again: column widths, the corner text, the merged rows and the current cell.
    void reload();
    // Rows a Page key moves: those in view.
    int pageRows() const;
    QString cornerText() const;

  signals:
    // A mouse button went down on grid cell (row, col), counted as the grid counts them: row 0 is the
    // heading row and column 0 the seconds column. Buttons 1 left, 2 right, 4 middle; shift 1 Shift,
    // 2 Ctrl, 4 Alt.
    void gridMouseDown(int button, int shift, int row, int col);
    void gridKeyDown(int keyCode, int shift);

  protected:
    void updateGeometries() override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void updateSpans();
    void showCurrentCell();
    void emitMouseDown(QMouseEvent* event, int row, int col);
    GridTableModel* m_model;
    QLabel* m_corner = nullptr;
};

}  // namespace halvane::app
