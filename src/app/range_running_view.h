#pragma once
// The view of the run window: its buttons and timer box where the window model places them, and the
// range below. The window's steps keep time on the application's one timer.

#include <QDialog>
#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace halvane {
class frmRangeRunning;
struct Control;
}  // namespace halvane

namespace halvane::app {

class RangeViewWidget;

class RangeRunningView : public QDialog {
    Q_OBJECT
  public:
    explicit RangeRunningView(frmRangeRunning& model, QWidget* parent = nullptr);
    ~RangeRunningView() override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    // Esc leaves the window as Exit does.
    void reject() override;

  private:
    // Hands an operator's event to the model, then shows what it left and re-arms the clock.
    void act(const std::function<void()>& handler);
    void refresh();
    void place(QWidget* widget, const Control& control);
    void stopClock();

    frmRangeRunning& m_model;
    QLabel* m_label1;
    QPushButton* m_connect;
    QPushButton* m_start;
    QPushButton* m_stop;
    QPushButton* m_exit;
    QLabel* m_paused;
    QLineEdit* m_timer;
    QLabel* m_label2;
    QPushButton* m_getHits;
    QPushButton* m_clearHits;
    RangeViewWidget* m_range;
    bool m_onClock = false;
    bool m_closing = false;
};

}  // namespace halvane::app
