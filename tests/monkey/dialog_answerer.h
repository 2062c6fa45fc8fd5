#pragma once
// Answers every modal window and popup menu while it is up, from a timer that keeps firing inside
// their nested event loops: it types into the boxes, presses buttons, picks files and menu items as
// the script's bytes say, has the main window repaint underneath, and in the end always closes the
// window, so that a run never waits on a keyboard.

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <string>
#include <utility>
#include <vector>

class QDialog;
class QFileDialog;
class QMenu;
class QMessageBox;

namespace halvane::monkey {

class Choices;
class ScratchRange;

class DialogAnswerer : public QObject {
    Q_OBJECT
  public:
    // A window still up this long after its event began is a hang, and is closed by force.
    static constexpr int kHangMs = 20000;

    DialogAnswerer(Choices& choices, const ScratchRange& range, QWidget& mainWindow,
                   std::vector<std::string>& trace);

    // Called when a Save dialog has been accepted, before the console writes the file.
    std::function<void(const QString& path)> onSaveAccepted;
    // Each event starts the counts afresh: the popup menu is one window shown again and again.
    void beginEvent() {
        m_eventClock.restart();
        m_actionCounts.clear();
    }
    std::vector<std::string> takeFindings() { return std::exchange(m_findings, {}); }
    int answered() const { return m_answered; }

  private:
    void tick();
    void answer(QWidget* window);
    void answerMessageBox(QMessageBox& box);
    void answerMenu(QMenu& menu);
    void answerFileDialog(QFileDialog& dialog);
    void answerDialog(QDialog& dialog);
    void close(QWidget& window, bool byForce);
    int& actionsOn(QWidget* window);
    void note(const QString& window, const QString& what);

    Choices& m_choices;
    const ScratchRange& m_range;
    QWidget& m_mainWindow;
    std::vector<std::string>& m_trace;
    std::vector<std::string> m_findings;
    QTimer m_timer;
    QElapsedTimer m_eventClock;
    QPointer<QWidget> m_current;
    std::vector<std::pair<QPointer<QWidget>, int>> m_actionCounts;
    int m_ticks = 0;
    int m_answered = 0;
    bool m_queued = false;
};

}  // namespace halvane::monkey
