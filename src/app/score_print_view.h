#pragma once
// The view of frmPrint: the header line and the range of rows to print.

#include <QDialog>

class QLineEdit;
class QRadioButton;

namespace halvane {
class frmPrint;
}

namespace halvane::app {

class ScorePrintView : public QDialog {
    Q_OBJECT
  public:
    explicit ScorePrintView(frmPrint& model, QWidget* parent = nullptr);

  private:
    frmPrint& m_model;
    QLineEdit* m_header;
    QRadioButton* m_option1;
    QRadioButton* m_option2;
    QLineEdit* m_range;
};

}  // namespace halvane::app
