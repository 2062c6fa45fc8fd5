#pragma once
// The view of the live window: the all-target buttons, the range whose tiles and row labels take the
// operator's clicks, and the hit score buttons.

#include "range_window_view.h"

class QLabel;
class QPushButton;

namespace halvane {
class frmLiveMode;
}  // namespace halvane

namespace halvane::app {

class LiveModeView : public RangeWindowView {
    Q_OBJECT
  public:
    explicit LiveModeView(frmLiveMode& model, QWidget* parent = nullptr);

  private:
    void refreshOwn() override;

    frmLiveMode& m_model;
    QLabel* m_label1;
    QLabel* m_label2;
    QPushButton* m_friend;
    QPushButton* m_edge;
    QPushButton* m_foe;
    QPushButton* m_down;
    QPushButton* m_exit;
};

}  // namespace halvane::app
