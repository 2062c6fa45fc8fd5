// The console's own serial and TCP adapters against the simulated range, over a real pseudo-terminal
// and a real loopback socket.

#include <QPushButton>
#include <QtTest>
#include <chrono>

#include "../core/scripted_operator.h"
#include "authoring/shared_state.h"
#include "links/com_port.h"
#include "links/timed_read.h"
#include "links/wifi_link.h"
#include "platform/qt_serial_port.h"
#include "platform/qt_tcp_socket.h"
#include "simulation/range_window.h"
#include "simulation/simulated_range.h"

using namespace halvane;
using Clock = std::chrono::steady_clock;

class LinksEndToEndTest : public QObject {
    Q_OBJECT

    app::SimulatedRange sim;

  private slots:
    void initTestCase() {
        std::string error;
        QVERIFY2(sim.start(error), error.c_str());
    }

    void transmitterAnswersTheProbeOnTheSharedPort() {
        SharedState state;
        state.ComPort = 1;
        testing::ScriptedOperator op;
        app::QtSerialPort port;
        PortNames names;
        names.readOverrides(sim.configFile().string());
        ComPortModule module(state, port, names, op);
        module.OpenComPort();
        QVERIFY(module.PortOpen());

        port.write("?\r\n");
        std::string slot;
        port.dropInput();
        TimedRead read(slot, 3, Clock::now());
        connect(&port, &app::QtSerialPort::bytesArrived, this, [&] {
            const std::string bytes = port.read(port.bytesAvailable());
            read.feed(bytes, Clock::now());
        });
        QTRY_VERIFY_WITH_TIMEOUT(
            read.status() != TimedRead::Status::Waiting || Clock::now() > read.deadline(), 2000);
        QCOMPARE(ReadCharsResult(read, slot).value_or("time-out"), std::string("VER"));

        // The port the console holds is one object: opening it again is no "in use" message.
        module.OpenComPort();
        QVERIFY(op.log.empty());
    }

    void wifiLinkCarriesAHitQueryAndItsReply() {
        testing::ScriptedOperator op;
        app::QtTcpSocket socket;
        WifiLink link(socket, op);
        socket.attach(link);
        link.ServerIP = "127.0.0.1";
        link.ServerPort = sim.places().last().section(':', 1).toStdString();
        sim.range().addHit(3);
        sim.range().addHit(3);

        link.EthernetCommand(std::string("\0\xFA\x03", 3), Clock::now());
        QTRY_COMPARE_WITH_TIMEOUT(link.sock_GetData(), std::string("\xEA\x02", 2), 3000);
        QVERIFY(op.log.empty());
        link.EthernetDisconnect();
    }

    void rangeWindowRegistersAHitOnTheClickedTarget() {
        app::RangeWindow window(sim);
        const int before = sim.range().snapshot()[5].hits;
        QTest::mouseClick(window.tile(5), Qt::LeftButton);
        QCOMPARE(sim.range().snapshot()[5].hits, before + 1);
        QVERIFY(window.tile(5)->text().contains(QString("Hits %1").arg(before + 1)));
    }

    void aFrameWithNoServerIsToldOnce() {
        testing::ScriptedOperator op;
        app::QtTcpSocket socket;
        WifiLink link(socket, op);
        socket.attach(link);
        link.ServerIP = "127.0.0.1";
        link.ServerPort = "1";  // nothing listens there: refused at once
        link.EthernetCommand(std::string("\0\xF3\x01", 3), Clock::now());
        link.EthernetCommand(std::string("\0\xF3\x02", 3), Clock::now());
        QTRY_VERIFY_WITH_TIMEOUT(!link.nextDeadline(), 6000);
        QCOMPARE(std::count(op.log.begin(), op.log.end(),
                            std::string("tell: Halvane: Error: ethernet not connected.  Check settings.")),
                 std::ptrdiff_t(1));
    }
};

QTEST_MAIN(LinksEndToEndTest)
#include "links_e2e_test.moc"
