#include "platform/guarded_application.h"

#include <QMessageBox>
#include <QTimer>
#include <exception>

#include "authoring/about_box.h"
#include "text/fault.h"

namespace halvane::app {

GuardedApplication::GuardedApplication(int& argc, char** argv) : QApplication(argc, argv) {}

GuardedApplication* GuardedApplication::instance() {
    return qobject_cast<GuardedApplication*>(QCoreApplication::instance());
}

bool GuardedApplication::notify(QObject* receiver, QEvent* event) {
    bool handled = false;
    try {
        handled = QApplication::notify(receiver, event);
    } catch (...) {
        caught(std::current_exception());
    }
    m_deadlines.rearm();
    return handled;
}

void GuardedApplication::caughtElsewhere(std::exception_ptr error) {
    GuardedApplication* guard = instance();
    if (!guard) std::rethrow_exception(error);
    guard->caught(error);
}

void GuardedApplication::caught(std::exception_ptr error) {
    try {
        std::rethrow_exception(error);
    } catch (const Fault& fault) {
        caughtException(fault.what(), false);
    } catch (const std::exception& other) {
        caughtException(other.what(), true);
    } catch (...) {
        caughtException("an unknown error", true);
    }
}

// The message waits for the next turn of the event loop: the fault may have come from a paint or a
// layout, and a message box opened in there would paint the same broken state again.
void GuardedApplication::caughtException(const std::string& text, bool internal) {
    ++m_caught;
    if (internal) ++m_internal;
    m_lastText = text;
    // Repeats of one message while it is still waiting to be shown are told once.
    for (const auto& [pendingText, pendingInternal] : m_pending)
        if (pendingText == text) return;
    m_pending.emplace_back(text, internal);
    if (m_pending.size() == 1) QTimer::singleShot(0, this, &GuardedApplication::report);
}

void GuardedApplication::report() {
    if (m_reporting) return;
    m_reporting = true;
    while (!m_pending.empty()) {
        const auto [text, internal] = m_pending.front();
        m_pending.erase(m_pending.begin());
        const std::string shown = internal ? "The command was stopped by an internal error: " + text +
                                                 "\nThe Program is kept as it stood."
                                           : text;
        if (m_reporter)
            m_reporter(shown, internal);
        else
            QMessageBox::critical(activeWindow(), kAppTitle, QString::fromStdString(shown));
        if (m_afterFault) m_afterFault();
    }
    m_reporting = false;
}

}  // namespace halvane::app
