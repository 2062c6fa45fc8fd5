// The console's serial port adapter and the progress window that runs a transmitter dialogue on it, over
// a pseudo-terminal whose far end the test plays and then closes, as a device that is unplugged.

#include <QElapsedTimer>
#include <QtTest>

#include <atomic>
#include <thread>

#include "../core/scripted_operator.h"
#include "../e2e/pty.h"
#include "authoring/shared_state.h"
#include "links/com_port.h"
#include "links/transmitter_send.h"
#include "links/transmitter_windows.h"
#include "platform/guarded_application.h"
#include "platform/qt_serial_port.h"
#include "platform/qt_tcp_socket.h"
#include "transmitter_dialogs.h"

using namespace halvane;

using e2e::Pty;

class SerialPortViewTest : public QObject {
    Q_OBJECT

  private slots:
    // The shared port is compared by the name it was opened with; QSerialPort shortens /dev/pts/N.
    void thePortKeepsTheDeviceNameItWasOpenedWith() {
        Pty pty;
        QVERIFY(!pty.slave.empty());
        app::QtSerialPort port;
        QVERIFY(port.open(pty.slave));
        QCOMPARE(port.deviceName(), pty.slave);
        port.close();
        QCOMPARE(port.deviceName(), std::string());
    }

    // A vanished line closes the port at once and says so, instead of reporting errors without end;
    // a write after that, or to a port never opened, or to a socket not connected, fails for all to see.
    void aVanishedLineClosesThePortIsReportedLostAndRefusesWrites() {
        Pty pty;
        app::QtSerialPort port;
        QVERIFY(port.open(pty.slave));
        std::string received;
        int lost = 0;
        port.listen(
            {[&](std::string_view bytes) { received += bytes; }, [&](const std::string&) { ++lost; }});
        pty.write(std::string("\0\xFF\r", 3));
        QTRY_COMPARE_WITH_TIMEOUT(received, std::string("\0\xFF\r", 3), 2000);
        QVERIFY(port.write("?"));
        pty.hangUp();
        QTRY_COMPARE_WITH_TIMEOUT(lost, 1, 2000);
        QVERIFY(!port.isOpen() && port.lost());
        QTest::qWait(50);
        QCOMPARE(lost, 1);

        app::QtSerialPort neverOpened;
        app::QtTcpSocket unconnected;
        QCOMPARE((std::vector<bool>{port.write("x"), neverOpened.write("x"), unconnected.write("x")}),
                 (std::vector<bool>{false, false, false}));
    }

    // Measured: the window went on counting blocks for the rest of the transfer, then said "sent
    // successful". Now the dialogue ends as soon as the line is gone.
    void theProgressWindowEndsAtOnceWhenTheLineGoes() {
        Pty pty;
        SharedState state;
        testing::ScriptedOperator op;
        op.answers = {Answer::Yes};
        app::QtSerialPort port;
        PortNames names;
        names.setDevice(1, pty.slave);
        ComPortModule comPort(state, port, names, op);
        comPort.OpenComPort();
        QVERIFY(comPort.PortOpen());

        // The transmitter: a place in use, the first of four blocks taken, then it is gone.
        std::atomic<bool> goneNow{false};
        QElapsedTimer sinceGone;
        std::thread transmitter([&] {
            if (pty.read(5) != "S04\r\n") return;
            pty.write("1040400\r\n");
            if (pty.read(258).size() != 258) return;
            pty.write("1");
            pty.read(1);
            sinceGone.start();
            pty.hangUp();
            goneNow = true;
        });
        SendProgram send(std::string(900, '\x01'), 4);
        ProgressWindow window("Sending", "Sending to LMC", send, port);
        app::ProgressView view(window, op);
        view.exec();
        transmitter.join();
        QVERIFY(goneNow);
        QVERIFY2(sinceGone.elapsed() < 500, qPrintable(QString::number(sinceGone.elapsed())));
        QVERIFY(send.outcome() != SendProgram::Outcome::Stored && !send.tag() && !port.isOpen());
    }
};

// The progress window keeps its time on the console's application object.
int main(int argc, char** argv) {
    app::GuardedApplication application(argc, argv);
    SerialPortViewTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "serial_port_view_test.moc"
