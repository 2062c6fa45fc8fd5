#pragma once
// The view of the range layout window: its text and OK button where the model places them, and the
// range below, whose tiles take a click each.

#include <QDialog>
#include <functional>

class QLabel;
class QPushButton;

namespace halvane {
class RangeDisplay;
struct Control;
}  // namespace halvane

namespace halvane::app {

class RangeViewWidget;

class RangeDisplayView : public QDialog {
    Q_OBJECT
  public:
    explicit RangeDisplayView(RangeDisplay& model, QWidget* parent = nullptr);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    // Hands an operator's event to the model, then shows what it left.
    void act(const std::function<void()>& handler);
    void refresh();
    void place(QWidget* widget, const Control& control);

    RangeDisplay& m_model;
    QLabel* m_label1;
    QPushButton* m_ok;
    RangeViewWidget* m_range;
};

}  // namespace halvane::app
