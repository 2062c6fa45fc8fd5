// The run window as the operator meets it: Run opens it over the Program, the steps come on the
// application's one timer and show at once, a line that goes away is told, and Exit closes it with its
// port and keeps its place.

#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QtTest>
#include <fstream>

#include "../core/fake_links.h"
#include "../core/scripted_operator.h"
#include "../core/temp_dir.h"
#include "console/main_window.h"
#include "links/port_names.h"
#include "platform/guarded_application.h"
#include "platform/qt_operator.h"

using namespace halvane;

namespace {

// A port whose line can be pulled out.
class PullablePort : public halvane::testing::FakeSerialPort {
  public:
    void pull() {
        opened.clear();
        reportLost("the device was unplugged");
    }
};

// Runs `step` on the next modal window once it is up.
void whenModal(std::function<void(QWidget*)> step) {
    auto* poll = new QTimer;
    QObject::connect(poll, &QTimer::timeout, poll, [poll, step] {
        if (QWidget* modal = QApplication::activeModalWidget()) {
            poll->deleteLater();
            step(modal);
        }
    });
    poll->start(5);
}

QPushButton* button(QWidget* window, const char* name) {
    return window->findChild<QPushButton*>(name);
}

}  // namespace

class RangeRunningViewTest : public QObject {
    Q_OBJECT

  private slots:
    void runPlaysOnTheApplicationsTimerToldALostLineAndExitClosesThePort() {
        halvane::testing::TempDir dir;
        const std::string program = (dir.path() / "two.hvn").string();
        std::ofstream(program, std::ios::binary) << "\"Target\",2\r\n\"Groups\",\"0\"\r\n\"Seconds\",3\r\n"
                                                    "\"Friend\"\r\n\"Foe\"\r\n\"Foe\"\r\n\"Foe\"\r\n"
                                                    "\"Edge\"\r\n\"Down\"\r\n";
        SharedState state;
        state.NumTargets = 2;
        state.StartBottom = false;
        state.RadioUSB = true;
        app::QtOperator op;
        halvane::testing::MemoryPositionStore positions;
        Form1 form(state, op, positions);
        PullablePort* port = nullptr;
        form.attachLinks(nullptr, nullptr, [&port] {
            auto made = std::make_unique<PullablePort>();
            made->present.insert(PortNames::defaultDevice(1));
            port = made.get();
            return made;
        });
        form.Load();
        QVERIFY(form.LoadProgram({program, "two.hvn"}));

        QString shown, afterLoss, told;
        std::string written;
        bool reopened = false, closedOnExit = false;
        whenModal([&](QWidget* window) {
            button(window, "BtnConnect")->click();
            button(window, "BtnStart")->click();
            // The second step comes a second later on the application's timer, and shows without a click.
            QTest::qWait(1300);
            shown = window->findChild<QLineEdit*>("txtTimer")->text();
            written = port->written;
            whenModal([&told](QWidget* box) {
                told = static_cast<QMessageBox*>(box)->text();
                static_cast<QMessageBox*>(box)->accept();
            });
            port->pull();
            afterLoss = button(window, "BtnConnect")->text();
            button(window, "BtnConnect")->click();
            reopened = port->isOpen();
            button(window, "BtnExit")->click();
            closedOnExit = !port->isOpen();
        });
        form.run("M_Run");

        QCOMPARE(shown, QString(" 1"));
        QCOMPARE(QByteArray::fromStdString(written).toHex(' '), QByteArray("f3 01 f2 02 f2 01"));
        QVERIFY2(told.startsWith("Comm Port 1: the line went away (the device was unplugged)"), qPrintable(told));
        QCOMPARE(afterLoss, QString("Connect"));
        QVERIFY(reopened && closedOnExit);
        QVERIFY(!positions.GetAllSettings(kPositionAppName, "Range Running").empty());
    }
};

int main(int argc, char** argv) {
    app::GuardedApplication application(argc, argv);
    RangeRunningViewTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "range_running_view_test.moc"
