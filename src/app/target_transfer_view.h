#pragma once
// The view of a progress window (the target setup window's two, the radio setup's): its labels and a
// bar with the step, the window's machine kept on the application's timer, and the window gone when
// the machine is over.

#include <QDialog>
#include <string>
#include <utility>

#include "links/progress_machine.h"

class QLabel;
class QProgressBar;

namespace halvane::app {

class TargetTransferView : public QDialog, public TimedMachine {
    Q_OBJECT
  public:
    // An empty label is left out.
    TargetTransferView(ProgressMachine& model, const std::string& caption, const std::string& label1,
                       const std::string& label2, QWidget* parent = nullptr);
    ~TargetTransferView() override;

    // The transfer's deadline, and at once when there is news to show.
    std::optional<TimePoint> nextDeadline() const override;
    void onTime(TimePoint now) override;

  protected:
    void reject() override {}  // the transfer decides when the window closes

  private:
    void showProgress();
    ProgressMachine& m_model;
    QProgressBar* m_bar;
    QLabel* m_step;
    std::pair<int, int> m_shown{-1, -1};
    bool m_registered = false;
};

}  // namespace halvane::app
