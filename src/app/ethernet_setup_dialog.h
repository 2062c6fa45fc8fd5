#pragma once
// The view of the "Wi-Fi Setup" window.

#include <QDialog>
#include <QTimer>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace halvane {
class frmEthernetSetup;
}

namespace halvane::app {

class EthernetSetupDialog : public QDialog {
    Q_OBJECT
  public:
    EthernetSetupDialog(frmEthernetSetup& model, QWidget* parent = nullptr);

  private:
    void fromModel();
    frmEthernetSetup& m_model;
    QLineEdit* m_ip;
    QLineEdit* m_port;
    QLabel* m_status;
    QPushButton* m_connect;
    QPlainTextEdit* m_log;
    QTimer m_refresh;
};

}  // namespace halvane::app
