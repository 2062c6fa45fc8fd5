#pragma once
// The view of the two progress windows of the target setup window: their labels and a bar with the
// step, the transfer kept on the application's timer, and the window gone when the transfer is over.

#include <QDialog>
#include <utility>

#include "links/timed_machine.h"

class QLabel;
class QProgressBar;

namespace halvane {
class TargetTransfer;
}  // namespace halvane

namespace halvane::app {

class TargetTransferView : public QDialog, public TimedMachine {
    Q_OBJECT
  public:
    TargetTransferView(TargetTransfer& model, const char* caption, const char* label1, const char* label2,
                       QWidget* parent = nullptr);
    ~TargetTransferView() override;

    // The transfer's deadline, and at once when there is news to show.
    std::optional<TimePoint> nextDeadline() const override;
    void onTime(TimePoint now) override;

  protected:
    void reject() override {}  // the transfer decides when the window closes

  private:
    void showProgress();
    TargetTransfer& m_model;
    QProgressBar* m_bar;
    QLabel* m_step;
    std::pair<int, int> m_shown{-1, -1};
    bool m_registered = false;
};

}  // namespace halvane::app
