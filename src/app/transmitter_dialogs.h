#pragma once
// The views of the program number dialog, the progress window that runs a device dialogue, and the
// "Communication Failed" box.

#include <QDialog>
#include <QTimer>
#include <memory>

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

// Paints, shows progress by blocks, and runs the dialogue on the port: bytes as they come, its
// deadlines on a timer. Closes itself when the dialogue has ended.
class ProgressView : public QDialog {
    Q_OBJECT
  public:
    ProgressView(ProgressWindow& model, Operator& op, QWidget* parent = nullptr);
    ~ProgressView() override;

  protected:
    void reject() override {}  // the dialogue decides when the window closes

  private:
    void begin();
    void step();
    ProgressWindow& m_model;
    Operator& m_operator;
    std::unique_ptr<DialogueRunner> m_runner;
    QProgressBar* m_bar;
    QTimer m_deadline;
    QTimer m_poll;
};

class FailedView : public QDialog {
    Q_OBJECT
  public:
    explicit FailedView(QWidget* parent = nullptr);
};

}  // namespace halvane::app
