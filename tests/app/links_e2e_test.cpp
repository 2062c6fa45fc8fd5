// The console's TCP adapter against the simulated range and a quiet device over a real loopback socket,
// and the range window.

#include <QPushButton>
#include <QTcpServer>
#include <QtTest>
#include <chrono>

#include "../core/scripted_operator.h"
#include "links/wifi_driver.h"
#include "links/wifi_link.h"
#include "platform/guarded_application.h"
#include "platform/qt_tcp_socket.h"
#include "simulation/range_window.h"
#include "simulation/simulated_range.h"

using namespace halvane;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// A device on a loopback port that says nothing unless told, and keeps what it receives.
struct QuietDevice : QObject {
    QTcpServer server;
    QList<QTcpSocket*> peers;
    QByteArray received;
    std::function<void(QTcpSocket&)> onAccept = [](QTcpSocket&) {};
    QuietDevice() {
        server.listen(QHostAddress::LocalHost);
        connect(&server, &QTcpServer::newConnection, this, [this] {
            QTcpSocket* peer = server.nextPendingConnection();
            peers.append(peer);
            connect(peer, &QTcpSocket::readyRead, this, [this, peer] { received += peer->readAll(); });
            onAccept(*peer);
        });
    }
    std::string port() const { return std::to_string(server.serverPort()); }
};

// The console's Wi-Fi link on a real socket, as the console wires it.
struct ConsoleWifi {
    testing::ScriptedOperator op;
    app::QtTcpSocket socket;
    WifiLink link;
    WifiDriver driver{link, socket, op};
    explicit ConsoleWifi(std::string port) {
        link.ServerIP = "127.0.0.1";
        link.ServerPort = std::move(port);
        app::GuardedApplication::instance()->deadlines().add(link);
    }
    ~ConsoleWifi() { app::GuardedApplication::instance()->deadlines().remove(link); }
};

class LinksEndToEndTest : public QObject {
    Q_OBJECT

    app::SimulatedRange sim;

  private slots:
    void initTestCase() {
        std::string error;
        QVERIFY2(sim.start(error), error.c_str());
    }

    void wifiLinkCarriesAHitQueryAndItsReply() {
        ConsoleWifi console(sim.places().last().section(':', 1).toStdString());
        sim.range().addHit(3);
        sim.range().addHit(3);

        console.link.EthernetCommand(std::string("\0\xFA\x03", 3), Clock::now());
        QTRY_COMPARE_WITH_TIMEOUT(console.link.sock_GetData(), std::string("\xEA\x02", 2), 3000);
        QVERIFY(console.op.log.empty());
        console.link.EthernetDisconnect();
    }

    void rangeWindowRegistersAHitOnTheClickedTarget() {
        app::RangeWindow window(sim);
        const int before = sim.range().snapshot()[5].hits;
        QTest::mouseClick(window.tile(5), Qt::LeftButton);
        QCOMPARE(sim.range().snapshot()[5].hits, before + 1);
        QVERIFY(window.tile(5)->text().contains(QString("Hits %1").arg(before + 1)));
    }

    void aFrameWithNoServerIsToldOnce() {
        ConsoleWifi console("1");  // nothing listens there: refused at once
        console.link.EthernetCommand(std::string("\0\xF3\x01", 3), Clock::now());
        console.link.EthernetCommand(std::string("\0\xF3\x02", 3), Clock::now());
        QTRY_VERIFY_WITH_TIMEOUT(!console.link.nextDeadline(), 6000);
        QCOMPARE(std::count(console.op.log.begin(), console.op.log.end(),
                            std::string("tell: Halvane: Error: ethernet not connected.  Check settings.")),
                 std::ptrdiff_t(1));
    }

    void aConnectionTheDeviceClosesEndsQuietlyAndTheNextFrameConnectsAgain() {
        QuietDevice device;
        device.onAccept = [&](QTcpSocket& peer) {
            peer.write("*KRV_CONN*");
            if (device.peers.size() == 1) peer.disconnectFromHost();
        };
        ConsoleWifi console(device.port());
        console.link.EthernetConnect(Clock::now());
        QTRY_COMPARE_WITH_TIMEOUT(console.link.log(), std::string("*KRV_CONN*\r\n"), 3000);
        QTRY_COMPARE_WITH_TIMEOUT(console.link.state(), int(TcpSocket::Closed), 3000);
        QCOMPARE(console.op.log, std::vector<std::string>{});

        console.link.EthernetCommand(std::string("\0\xF3\x02", 3), Clock::now());
        QTRY_COMPARE_WITH_TIMEOUT(device.received, QByteArray("\0\xF3\x02", 3), 3000);
        QCOMPARE(device.peers.size(), 2);
    }
};

// The link keeps its time on the console's application object.
int main(int argc, char** argv) {
    app::GuardedApplication application(argc, argv);
    LinksEndToEndTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "links_e2e_test.moc"
