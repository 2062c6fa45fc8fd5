#pragma once
// The view of the "Setup" dialog (frmDisplay).

#include <QDialog>
#include <utility>
#include <vector>

class QCheckBox;
class QLineEdit;
class QRadioButton;

namespace halvane {
class frmDisplay;
}

namespace halvane::app {

class SetupDialog : public QDialog {
    Q_OBJECT
  public:
    SetupDialog(frmDisplay& model, QWidget* parent = nullptr);

  protected:
    // Escape and the close box count as Cancel.
    void reject() override;

  private:
    void act(void (frmDisplay::*handler)());
    void toModel();
    void fromModel();

    frmDisplay& m_model;
    std::vector<std::pair<QRadioButton*, bool*>> m_options;
    std::vector<std::pair<QCheckBox*, int*>> m_checks;
    QLineEdit* m_cols;
    QLineEdit* m_targets;
};

}  // namespace halvane::app
