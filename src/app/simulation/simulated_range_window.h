#pragma once
// The "Simulated range" window: every simulated target's face, hit count and number; a click on a
// target registers a hit on it; the frame log of every device below.

#include <QTimer>
#include <QWidget>
#include <vector>

class QPlainTextEdit;
class QPushButton;

namespace halvane::app {

class SimulatedRange;

class SimulatedRangeWindow : public QWidget {
    Q_OBJECT
  public:
    explicit SimulatedRangeWindow(SimulatedRange& range, QWidget* parent = nullptr);

    // Reads the targets again; also called by the window's own timer.
    void refresh();
    QPushButton* tile(int slot) const { return m_tiles.at(static_cast<std::size_t>(slot)); }
    QString logText() const;

  private:
    SimulatedRange& m_range;
    std::vector<QPushButton*> m_tiles;
    QPlainTextEdit* m_log;
    QTimer m_timer;
};

}  // namespace halvane::app
