#pragma once
// The view of the run window: its buttons and timer box where the window model places them, and the
// range below. The window's steps keep time on the application's one timer.

#include "range_window_view.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace halvane {
class frmRangeRunning;
}  // namespace halvane

namespace halvane::app {

class RangeRunningView : public RangeWindowView {
    Q_OBJECT
  public:
    explicit RangeRunningView(frmRangeRunning& model, QWidget* parent = nullptr);

  private:
    void refreshOwn() override;

    frmRangeRunning& m_model;
    QLabel* m_label1;
    QPushButton* m_connect;
    QPushButton* m_start;
    QPushButton* m_stop;
    QPushButton* m_exit;
    QLabel* m_paused;
    QLineEdit* m_timer;
    QLabel* m_label2;
};

}  // namespace halvane::app
