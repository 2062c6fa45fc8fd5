#pragma once
// The view of the "Program Setup" dialog.

#include <QDialog>

class QLineEdit;

namespace halvane {
class Settings;
}

namespace halvane::app {

class ProgramSetupDialog : public QDialog {
    Q_OBJECT
  public:
    ProgramSetupDialog(Settings& model, QWidget* parent = nullptr);

  private:
    void act(void (Settings::*handler)());
    Settings& m_model;
    QLineEdit* m_text1;
};

}  // namespace halvane::app
