#pragma once
// The view of the hit score window: the grid of target numbers and scores, its buttons and File menu,
// and the progress of a radio round; and the small dialog that asks which road to take.

#include <QDialog>
#include <functional>
#include <memory>

#include "links/timed_machine.h"

class QLabel;
class QTableWidget;

namespace halvane {
class FrmHitScores;
class frmHitScore_Option;
}  // namespace halvane

namespace halvane::app {

class HitScoresView : public QDialog {
    Q_OBJECT
  public:
    explicit HitScoresView(FrmHitScores& model, QWidget* parent = nullptr);
    ~HitScoresView() override;

  protected:
    // Esc stops a radio round; the window stays.
    void reject() override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void act(const std::function<void()>& handler);
    void refresh();

    FrmHitScores& m_model;
    // The model may go first (it lives in the main window's model): these are taken while it is whole.
    std::weak_ptr<const void> m_alive;
    TimedMachine* m_machine;
    QTableWidget* m_grid;
    QLabel* m_progress;
    bool m_onClock = false;
};

class HitScoreOptionView : public QDialog {
    Q_OBJECT
  public:
    explicit HitScoreOptionView(frmHitScore_Option& model, QWidget* parent = nullptr);
};

}  // namespace halvane::app
