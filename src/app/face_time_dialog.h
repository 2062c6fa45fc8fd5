#pragma once
// The view of the "Face Time" dialog.

#include <QDialog>

class QButtonGroup;
class QLineEdit;

namespace halvane {
class Face_time;
}

namespace halvane::app {

class FaceTimeDialog : public QDialog {
    Q_OBJECT
  public:
    FaceTimeDialog(Face_time& model, QWidget* parent = nullptr);

  private:
    void act(void (Face_time::*handler)());
    Face_time& m_model;
    QLineEdit* m_text1;
    QButtonGroup* m_first;
    QButtonGroup* m_second;
};

}  // namespace halvane::app
