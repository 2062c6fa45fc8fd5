#pragma once
// The view of the radio setup window: its notes, the radio, channel and port boxes, the serial number
// box that only an LM47 needs, and its three buttons. Modeless; the window's model stays for the run.

#include <QDialog>
#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;

namespace halvane {
class frmRadioSetup;
}  // namespace halvane

namespace halvane::app {

class RadioSetupView : public QDialog {
    Q_OBJECT
  public:
    explicit RadioSetupView(frmRadioSetup& model, QWidget* parent = nullptr);

  protected:
    // Esc and the close box end as the Close button does.
    void done(int result) override;

  private:
    // Hands a click to the model, then shows the boxes as the model has them.
    void act(const std::function<void()>& handler);
    void refresh();

    frmRadioSetup& m_model;
    QComboBox* m_radio;
    QComboBox* m_channel;
    QComboBox* m_port;
    QLabel* m_serialLabel;
    QLineEdit* m_serial;
};

}  // namespace halvane::app
