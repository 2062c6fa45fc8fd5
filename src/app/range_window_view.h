#pragma once
// What the views of the run and live windows share: the range below, the hit score buttons and the
// progress of a poll, the window's place, Esc, and the application's clock for the window's waits.

#include <QDialog>
#include <functional>

class QLabel;
class QPushButton;

namespace halvane {
class RangeWindow;
struct Control;
}  // namespace halvane

namespace halvane::app {

class RangeViewWidget;

class RangeWindowView : public QDialog {
    Q_OBJECT
  public:
    ~RangeWindowView() override;

  protected:
    RangeWindowView(RangeWindow& model, const char* name, const char* caption, QWidget* parent);

    // Hands an operator's event to the model, then shows what it left.
    void act(const std::function<void()>& handler);
    void refresh();
    // The window's own controls, as the model has them now.
    virtual void refreshOwn() = 0;
    void place(QWidget* widget, const Control& control);
    QPushButton* button(const char* name, const Control& control);
    QLabel* label(const char* name, const Control& control);
    // Sizes the window as its stored place says, and shows the model's state; the end of every
    // subclass's constructor.
    void finishSetup();
    RangeViewWidget* range() const { return m_range; }

    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    // Esc stops a poll of hit scores; with none under way it leaves the window as Exit does.
    void reject() override;

  private:
    void stopClock();

    RangeWindow& m_model;
    RangeViewWidget* m_range;
    QPushButton* m_getHits;
    QPushButton* m_clearHits;
    QLabel* m_progress;
    bool m_onClock = false;
    bool m_closing = false;
};

}  // namespace halvane::app
