#pragma once
// The views of the target setup window, its three tabs of boxes over the target's settings, and of
// the small dialog that asks which target is meant.

#include <QDialog>
#include <functional>
#include <map>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabWidget;

namespace halvane {
class frmLM_Setup;
class frmSerialTarget;
}  // namespace halvane

namespace halvane::app {

class TargetSetupView : public QDialog {
    Q_OBJECT
  public:
    explicit TargetSetupView(frmLM_Setup& model, QWidget* parent = nullptr);

  private:
    // Hands a click to the model, then shows the boxes as the model has them.
    void act(const std::function<void()>& handler);
    void refresh();

    frmLM_Setup& m_model;
    QLabel* m_serial;
    QPushButton* m_read;
    QPushButton* m_save;
    QTabWidget* m_tabs;
    std::map<int, QComboBox*> m_boxes;  // by parameter index
    std::map<int, QLabel*> m_labels;
};

class SerialTargetView : public QDialog {
    Q_OBJECT
  public:
    explicit SerialTargetView(frmSerialTarget& model, QWidget* parent = nullptr);

  private:
    frmSerialTarget& m_model;
    QLineEdit* m_serial;
    QLineEdit* m_number;
};

}  // namespace halvane::app
