#pragma once
// The views of the program number dialog, the progress window that runs a device dialogue, and the
// "Communication Failed" box.

#include <QDialog>
#include <memory>
#include <utility>

#include "links/timed_machine.h"

class QLineEdit;
class QProgressBar;

namespace halvane {
class DialogueRunner;
class Operator;
class ProgramNumberDialog;
struct ProgressWindow;
struct FailedBox;
}  // namespace halvane

namespace halvane::app {

class ProgramNumberView : public QDialog {
    Q_OBJECT
  public:
    ProgramNumberView(ProgramNumberDialog& model, QWidget* parent = nullptr);

  private:
    void act(void (ProgramNumberDialog::*handler)());
    ProgramNumberDialog& m_model;
    QLineEdit* m_text1;
};

// Paints, shows progress by blocks, and runs the dialogue on the port: bytes as the port delivers them,
// its deadlines on the application's timer. Closes itself when the dialogue has ended.
class ProgressView : public QDialog, public TimedMachine {
    Q_OBJECT
  public:
    ProgressView(ProgressWindow& model, Operator& op, QWidget* parent = nullptr);
    ~ProgressView() override;

    // The dialogue's deadline; before it starts, the moment it starts; and at once when there is news
    // to show (blocks done, the end).
    std::optional<TimePoint> nextDeadline() const override;
    void onTime(TimePoint now) override;

  protected:
    void reject() override {}  // the dialogue decides when the window closes

  private:
    void showProgress(std::pair<int, int> progress);
    ProgressWindow& m_model;
    Operator& m_operator;
    std::unique_ptr<DialogueRunner> m_runner;
    TimePoint m_beginAt;
    std::pair<int, int> m_shown{-1, -1};
    bool m_registered = false;
    QProgressBar* m_bar;
};

class FailedView : public QDialog {
    Q_OBJECT
  public:
    explicit FailedView(QWidget* parent = nullptr);
};

}  // namespace halvane::app
