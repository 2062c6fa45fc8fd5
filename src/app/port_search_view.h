#pragma once
// The view of the port search: the waiting labels and the ports being asked while it searches, then
// the sixteen options, the finding and the buttons. The search runs on the application's timer, so the
// window paints throughout.

#include <QDialog>
#include <array>
#include <string>

#include "links/timed_machine.h"

class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;

namespace halvane {
class frmCommPorts;
}  // namespace halvane

namespace halvane::app {

class PortSearchView : public QDialog, public TimedMachine {
    Q_OBJECT
  public:
    explicit PortSearchView(frmCommPorts& model, QWidget* parent = nullptr);
    ~PortSearchView() override;

    // The search's deadline, and at once when there is news to show.
    std::optional<TimePoint> nextDeadline() const override;
    void onTime(TimePoint now) override;

  protected:
    // The close box is Cancel, and does nothing while the buttons are disabled.
    void reject() override;

  private:
    void refresh();
    void unregister();

    frmCommPorts& m_model;
    QLabel* m_label2;
    QLabel* m_label3;
    QLabel* m_asking;
    QLabel* m_label1;
    QGroupBox* m_frame1;
    std::array<QRadioButton*, 17> m_options{};
    QPushButton* m_ok;
    QPushButton* m_cancel;
    std::string m_shownProgress;
    bool m_shownSearching = true;
    bool m_registered = false;
};

}  // namespace halvane::app
