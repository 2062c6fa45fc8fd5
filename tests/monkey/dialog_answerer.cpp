#include "dialog_answerer.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include "operator_script.h"
#include "scratch_range.h"

namespace halvane::monkey {

namespace {
// What an operator types into a box, plausible or hostile.
const std::vector<QString> kTexts = {"1",   "2",   "5", "30",  "-40000", "0",  "99999", "abc",
                                     "2.7", "&HA", "",  "200", "32765",  "-1", " 7",    "1e2"};
// Answers to one window before it is closed politely, and before it is closed by force.
constexpr int kPatience = 6;
constexpr int kForce = kPatience + 3;

}  // namespace

DialogAnswerer::DialogAnswerer(Choices& choices, const ScratchRange& range, QWidget& mainWindow,
                               std::vector<std::string>& trace)
    : m_choices(choices), m_range(range), m_mainWindow(mainWindow), m_trace(trace) {
    connect(&m_timer, &QTimer::timeout, this, &DialogAnswerer::tick);
    m_timer.start(2);
    m_eventClock.start();
}

void DialogAnswerer::note(const QString& window, const QString& what) {
    m_trace.push_back(("[" + window + "] " + what).simplified().prepend("    ").toStdString());
}

// A window seen again after a message box on top of it keeps its count, so that a dialog that
// answers every OK with a message is still closed in the end.
int& DialogAnswerer::actionsOn(QWidget* window) {
    std::erase_if(m_actionCounts, [](const auto& c) { return c.first.isNull(); });
    for (auto& [known, count] : m_actionCounts)
        if (known == window) return count;
    return m_actionCounts.emplace_back(window, 0).second;
}

void DialogAnswerer::tick() {
    QWidget* window = QApplication::activePopupWidget();
    if (!window) window = QApplication::activeModalWidget();
    if (m_queued || !window) return;
    if (window != m_current) m_ticks = 0;
    m_current = window;
    if (m_eventClock.elapsed() > kHangMs) {
        m_findings.push_back("\"" + window->windowTitle().toStdString() + "\" was still up " +
                             std::to_string(kHangMs / 1000) + " s after its event began");
        m_eventClock.restart();
        close(*window, true);
        return;
    }
    if (++m_ticks < 3) return;  // it shows and paints first
    // Answered from the event loop, not from within this timer: an answer may open a nested loop of
    // its own, and this timer has to keep firing in there.
    m_queued = true;
    QTimer::singleShot(0, this, [this, target = QPointer<QWidget>(window)] {
        m_queued = false;
        if (target && target->isVisible() && target == m_current) answer(target);
    });
}

void DialogAnswerer::answer(QWidget* window) {
    // A progress window closes itself when its dialogue ends.
    const bool progress = window->objectName() == "ProgressWindow";
    if (int& actions = actionsOn(window); !progress && ++actions > kPatience) {
        if (actions > kForce)
            m_findings.push_back("\"" + window->windowTitle().toStdString() + "\" would not close");
        close(*window, actions > kForce);
        return;
    }
    ++m_answered;
    m_mainWindow.grab();  // whatever is up, the window underneath paints meanwhile
    if (progress) return;
    if (auto* menu = qobject_cast<QMenu*>(window))
        answerMenu(*menu);
    else if (auto* box = qobject_cast<QMessageBox*>(window))
        answerMessageBox(*box);
    else if (auto* files = qobject_cast<QFileDialog*>(window))
        answerFileDialog(*files);
    else if (auto* dialog = qobject_cast<QDialog*>(window))
        answerDialog(*dialog);
    else
        close(*window, false);
}

void DialogAnswerer::answerMessageBox(QMessageBox& box) {
    const QList<QAbstractButton*> buttons = box.buttons();
    const int i = m_choices.below(static_cast<int>(buttons.size()) + 1);
    note("message \"" + box.text().left(60) + "\"", i < buttons.size() ? buttons[i]->text() : "Escape");
    if (i < buttons.size())
        buttons[i]->click();
    else
        QTest::keyClick(&box, Qt::Key_Escape);
}

void DialogAnswerer::answerMenu(QMenu& menu) {
    QList<QAction*> items;
    for (QAction* a : menu.actions())
        if (a->isVisible() && a->isEnabled() && !a->isSeparator()) items << a;
    const int i = m_choices.below(static_cast<int>(items.size()) + 1);
    note("popup", i < items.size() ? items[i]->text() : "Escape");
    if (i < items.size()) menu.setActiveAction(items[i]);
    QTest::keyClick(&menu, i < items.size() ? Qt::Key_Return : Qt::Key_Escape);
}

void DialogAnswerer::answerFileDialog(QFileDialog& dialog) {
    const bool save = dialog.acceptMode() == QFileDialog::AcceptSave;
    const auto& paths = save ? m_range.saveChoices : m_range.openChoices;
    const auto i = static_cast<std::size_t>(m_choices.below(static_cast<int>(paths.size()) + 1));
    note(save ? "save dialog" : "open dialog", i < paths.size() ? QFileInfo(paths[i]).fileName() : "Cancel");
    if (i == paths.size()) return dialog.reject();
    // Typed in full into the name box: selectFile() leaves the box empty for a file not yet listed.
    // Typing drops a file picked in the list before, but only with the focus in the box, which does
    // not come back to the dialog offscreen after a message box on top of it.
    for (auto* view : dialog.findChildren<QAbstractItemView*>())
        if (view->objectName() == "listView" || view->objectName() == "treeView") view->clearSelection();
    dialog.findChild<QLineEdit*>("fileNameEdit")->setText(paths[i]);
    // The Open or Save button, which checks the name as it does for the operator.
    static_cast<QDialog&>(dialog).accept();
    if (save && dialog.result() == QDialog::Accepted && onSaveAccepted)
        onSaveAccepted(dialog.selectedFiles().value(0));
}

// Mostly works a control: types into a box, or presses a button (+, -, an option, OK or Cancel).
void DialogAnswerer::answerDialog(QDialog& dialog) {
    QList<QWidget*> controls;
    for (QWidget* w : dialog.findChildren<QWidget*>())
        if (w->isVisible() && w->isEnabled() &&
            (qobject_cast<QAbstractButton*>(w) || qobject_cast<QLineEdit*>(w)))
            controls << w;
    const QString title = dialog.windowTitle();
    const int choice = m_choices.below(4);
    if (choice == 3) return close(dialog, false);
    if (choice > 0 && !controls.isEmpty()) {
        QWidget* control = controls[m_choices.below(static_cast<int>(controls.size()))];
        if (auto* button = qobject_cast<QAbstractButton*>(control)) {
            note(title, "presses " + button->objectName());
            return button->click();
        }
        auto* edit = static_cast<QLineEdit*>(control);
        const QString text = m_choices.oneOf(kTexts);
        note(title, "types \"" + text + "\" into " + edit->objectName());
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Backspace);
        return QTest::keyClicks(edit, text);
    }
    QPushButton* ok = dialog.findChild<QPushButton*>("OKButton");
    if (!ok) ok = dialog.findChild<QPushButton*>("cmdOK");
    note(title, ok ? "OK" : "closes");
    if (ok)
        ok->click();
    else
        dialog.reject();
}

// As the operator would, with Cancel or Escape; a window that ignores both is made to go.
void DialogAnswerer::close(QWidget& window, bool byForce) {
    note(window.windowTitle(), byForce ? "closed by force" : "Cancel");
    auto* dialog = qobject_cast<QDialog*>(&window);
    auto* cancel = window.findChild<QPushButton*>("CancelButton");
    if (byForce && dialog)
        dialog->done(QDialog::Rejected);
    else if (byForce)
        window.hide();
    else if (cancel && cancel->isVisible())
        cancel->click();
    else
        QTest::keyClick(&window, Qt::Key_Escape);
}

}  // namespace halvane::monkey
