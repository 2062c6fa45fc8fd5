#pragma once
// The view of the About box.

#include <QDialog>

namespace halvane {
class AboutBox;
}

namespace halvane::app {

class AboutDialog : public QDialog {
    Q_OBJECT
  public:
    AboutDialog(const AboutBox& model, QWidget* parent = nullptr);
};

}  // namespace halvane::app
