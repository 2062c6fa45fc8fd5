// Faults inside the handlers of modal dialogs, through the real dialogs and the console's application
// object: the process lives, the operator is told, the dialog and the Program stay as they were.

#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QtTest>
#include <stdexcept>

#include "../core/scripted_operator.h"
#include "console/main_window.h"
#include "text/fault.h"
#include "main_window_view.h"
#include "platform/guarded_application.h"
#include "platform/qt_operator.h"
#include "program_table_view.h"

using namespace halvane;

class ExceptionGuardTest : public QObject {
    Q_OBJECT

    std::vector<std::pair<std::string, bool>> told;

    static app::GuardedApplication& guard() { return *app::GuardedApplication::instance(); }

    // Runs `step` on the dialog that is modal next, once it is up.
    static void whenModal(std::function<void(QWidget*)> step) {
        auto* poll = new QTimer;
        QObject::connect(poll, &QTimer::timeout, poll, [poll, step] {
            if (QWidget* modal = QApplication::activeModalWidget()) {
                poll->deleteLater();
                step(modal);
            }
        });
        poll->start(5);
    }

  private slots:
    void init() {
        told.clear();
        guard().setReporter(
            [this](const std::string& text, bool internal) { told.emplace_back(text, internal); });
    }

    void aFaultInAModalDialogIsToldAndTheDialogStaysOpen() {
        SharedState state;
        state.NumTargets = 3;
        state.LeftClickIF = true;
        state.RightClickIF = false;
        app::QtOperator op;
        halvane::testing::MemoryPositionStore positions;
        Form1 form(state, op, positions);
        app::MainWindowView view(form);
        op.setParentWindow(&view);
        view.resize(800, 600);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        whenModal([](QWidget* setup) {
            setup->findChild<QLineEdit*>()->setText("30");
            setup->findChild<QPushButton*>("OKButton")->click();
        });
        view.runCommand("M_New");
        QVERIFY(form.grid());
        form.grid()->setTextMatrix(2, 2, "Edge");
        state.FileChanged = false;

        // A left click opens Face Time on the cell; "-40000" and OK is a fault, the dialog stays open.
        bool openAfterFault = false;
        whenModal([&](QWidget* faceTime) {
            faceTime->findChild<QLineEdit*>("Text1")->setText("-40000");
            faceTime->findChild<QRadioButton*>("OptFriend")->setChecked(true);
            QTimer::singleShot(50, faceTime, [&, faceTime] {
                openAfterFault = faceTime->isVisible();
                faceTime->findChild<QPushButton*>("CancelButton")->click();
            });
            QTest::mouseClick(faceTime->findChild<QPushButton*>("OKButton"), Qt::LeftButton);
        });
        app::ProgramTableView* table = view.table();
        const QPoint cell(table->columnViewportPosition(1) + 5, table->rowViewportPosition(4) + 5);
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell);

        QTRY_COMPARE(told.size(), std::size_t{1});
        QCOMPARE(
            told[0],
            std::make_pair(
                std::string("The time \"-40000\" is not a number of seconds from -32768 to 32767."), false));
        QVERIFY(openAfterFault);
        QCOMPARE(form.grid()->TextMatrix(5, 2) + "|" + form.grid()->TextMatrix(2, 2), std::string("|Edge"));
        QVERIFY(!state.FileChanged && view.isVisible());
        QCOMPARE(guard().internalErrors(), 0);
    }

    // Anything else a handler lets escape is caught the same way and counted apart, so tests and
    // randomized runs can tell a fault the console foresaw from one it did not.
    void anyOtherExceptionIsCaughtCountedAndTold() {
        const int before = guard().internalErrors();
        QTimer::singleShot(0, [] { throw std::out_of_range("vector index 7"); });
        QTimer::singleShot(0, [] { throw std::out_of_range("vector index 7"); });
        QTRY_COMPARE(told.size(), std::size_t{1});
        QCOMPARE(guard().internalErrors(), before + 2);
        QVERIFY(told[0].second && told[0].first.find("vector index 7") != std::string::npos &&
                told[0].first.find("The Program is kept") != std::string::npos);
    }
};

int main(int argc, char** argv) {
    app::GuardedApplication application(argc, argv);
    ExceptionGuardTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "exception_guard_test.moc"
