#pragma once
// The application object of the console: no exception ever leaves an event handler into Qt's event
// loop. Whatever a handler lets escape is caught here, the operation it belonged to is abandoned where
// it stood, and the operator is told; the windows and the open Program stay as they are.

#include <QApplication>
#include <exception>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/deadline_timer.h"

namespace halvane::app {

class GuardedApplication : public QApplication {
    Q_OBJECT
  public:
    GuardedApplication(int& argc, char** argv);

    // Dispatches the event, then re-arms the machines' timer: the event may have moved a deadline.
    bool notify(QObject* receiver, QEvent* event) override;

    // The one timer of the machines that wait for time.
    DeadlineTimer& deadlines() { return m_deadlines; }

    // Runs the model's side of an operator's event. What it lets escape is caught here, before it can
    // unwind through Qt's own frames, and told as notify() tells it; outside the console's application
    // object (a plain test) it goes on up.
    template <class Work>
    static void handle(Work&& work) {
        try {
            work();
        } catch (...) {
            caughtElsewhere(std::current_exception());
        }
    }

    // How the operator is told (a critical message box by default); `internal` is true for an
    // exception that is not one of the console's own faults.
    using Reporter = std::function<void(const std::string& text, bool internal)>;
    void setReporter(Reporter reporter) { m_reporter = std::move(reporter); }
    // Runs after every report, so that the windows show the state the abandoned operation left.
    void setAfterFault(std::function<void()> afterFault) { m_afterFault = std::move(afterFault); }

    // What has been caught since start: all of it, and the part that was no fault of the console's.
    int caught() const { return m_caught; }
    int internalErrors() const { return m_internal; }
    const std::string& lastText() const { return m_lastText; }

    static GuardedApplication* instance();

  private:
    // Rethrows when there is no guard to tell it.
    static void caughtElsewhere(std::exception_ptr error);
    void caught(std::exception_ptr error);
    void caughtException(const std::string& text, bool internal);
    void report();

    DeadlineTimer m_deadlines;
    Reporter m_reporter;
    std::function<void()> m_afterFault;
    std::string m_lastText;
    std::vector<std::pair<std::string, bool>> m_pending;
    int m_caught = 0;
    int m_internal = 0;
    bool m_reporting = false;
};

}  // namespace halvane::app
