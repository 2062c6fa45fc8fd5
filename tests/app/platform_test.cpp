// The platform adapters: the serial port over a pseudo-terminal, the TCP link against the simulated
// range and a quiet device over a real loopback socket, and the machines' one timer.

#include <QElapsedTimer>
#include <QPushButton>
#include <QTcpServer>
#include <QtTest>
#include <atomic>
#include <chrono>
#include <thread>

#include "../core/scripted_operator.h"
#include "../e2e/pty.h"
#include "authoring/program_grid.h"
#include "authoring/shared_state.h"
#include "links/com_port.h"
#include "links/transmitter_send.h"
#include "links/transmitter_windows.h"
#include "links/wifi_driver.h"
#include "links/wifi_link.h"
#include "platform/guarded_application.h"
#include "platform/qt_serial_port.h"
#include "platform/qt_tcp_socket.h"
#include "range/live_mode.h"
#include "range/range_running.h"
#include "sim/devices.h"
#include "simulation/simulated_range.h"
#include "simulation/simulated_range_window.h"
#include "transmitter_dialogs.h"

using namespace halvane;
using halvane::testing::ScriptedOperator;

// The console's serial port adapter and the progress window that runs a transmitter dialogue on it, over
// a pseudo-terminal whose far end the test plays and then closes, as a device that is unplugged.
using e2e::Pty;

class SerialPortViewTest : public QObject {
    Q_OBJECT

  private slots:
    // The shared port is compared by the name it was opened with (QSerialPort shortens /dev/pts/N). A
    // vanished line closes the port at once and says so, instead of reporting errors without end; a
    // write after that, or to a port never opened, or to a socket not connected, fails for all to see.
    void aVanishedLineClosesThePortIsReportedLostAndRefusesWrites() {
        Pty pty;
        app::QtSerialPort port;
        QVERIFY(port.open(pty.slave));
        QCOMPARE(port.deviceName(), pty.slave);
        std::string received;
        int lost = 0;
        port.listen(
            {[&](std::string_view bytes) { received += bytes; }, [&](const std::string&) { ++lost; }});
        pty.write(std::string("\0\xFF\r", 3));
        QTRY_COMPARE_WITH_TIMEOUT(received, std::string("\0\xFF\r", 3), 2000);
        QVERIFY(port.write("?"));
        pty.hangUp();
        QTRY_COMPARE_WITH_TIMEOUT(lost, 1, 2000);
        QVERIFY(!port.isOpen() && port.lost() && port.deviceName().empty());
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

// The console's TCP adapter against the simulated range and a quiet device over a real loopback socket,
// and the range window.
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

    void rangeWindowRegistersAHitOnTheClickedTarget() {
        app::SimulatedRangeWindow window(sim);
        const int before = sim.range().snapshot()[5].hits;
        QTest::mouseClick(window.tile(5), Qt::LeftButton);
        QCOMPARE(sim.range().snapshot()[5].hits, before + 1);
        QVERIFY(window.tile(5)->text().contains(QString("Hits %1").arg(before + 1)));
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

// A poll of hit scores through the live and the run window, on the console's own port adapters and
// clock, against a simulated range of 20 targets on a pseudo-terminal and on loopback TCP.
class HitScoresEndToEndTest : public QObject {
    Q_OBJECT

    static constexpr int kTargets = 20;
    static int hitsOf(int target) { return (target * 7) % 5; }

    sim::Range range{kTargets};
    sim::SimServer server{sim::SimServer::Options{false, {}}};
    std::thread serving;
    std::uint16_t wifiPort = 0;
    SharedState state;
    PortNames names;
    ScriptedOperator op;
    testing::MemoryPositionStore positions;
    app::QtSerialPort port;

    // Polls through the loaded `window` on the application's clock, then reads every tile's hit caption.
    QStringList poll(RangeWindow& window, WifiLink* wifi = nullptr) {
        if (wifi) wifi->setReceiver([&window](std::string_view chunk) { window.onSocketData(chunk); });
        auto& clock = app::GuardedApplication::instance()->deadlines();
        clock.add(window);
        window.BtnGetHitScores_Click(Clock::now());
        QStringList shown;
        if (QTest::qWaitFor([&] { return !window.polling(); }, 20000))
            for (const auto& tile : window.view().tiles()) shown << QString::fromStdString(*tile.hitsText);
        clock.remove(window);
        if (wifi) wifi->setReceiver({});
        window.Unload();
        return shown;
    }
    QStringList expected() const {
        QStringList hits;
        for (int t = 1; t <= kTargets; ++t) hits << QString("Hits: %1").arg(hitsOf(t));
        return hits;
    }

  private slots:
    void initTestCase() {
        for (int t = 1; t <= kTargets; ++t)
            for (int h = 0; h < hitsOf(t); ++h) range.addHit(t);
        names.setDevice(1, server.addPty("radio", sim::makeRadioModem(range, {})));
        wifiPort = server.listenTcp([this] { return sim::makeWifiBridge(range, {}); });
        serving = std::thread([this] { server.run(); });
        state.TypeLMSeries = true;
        state.NumTargets = kTargets;
        state.NumCols = 10;
        state.StartBottom = false;
    }
    void cleanupTestCase() {
        server.stop();
        serving.join();
    }

    void eachWindowShowsEveryTargetsCountOnItsTile() {
        state.RadioUSB = true;
        frmLiveMode live(state, port, names, nullptr, op, positions);
        live.Load();
        QCOMPARE(poll(live), expected());

        state.ReplyHex.fill("");
        const ProgramGrid grid;
        frmRangeRunning run(state, grid, port, names, nullptr, op, positions);
        run.Load();
        run.BtnConnect_Click();
        QCOMPARE(poll(run), expected());

        state.RadioUSB = false;
        state.RadioWiFi = true;
        state.ReplyHex.fill("");
        ConsoleWifi wifi(std::to_string(wifiPort));
        frmLiveMode overWifi(
            state, port, names,
            [&wifi](std::string_view frame, TimePoint now) { wifi.link.EthernetCommand(frame, now); }, op,
            positions);
        overWifi.setWifiLink(&wifi.link);
        overWifi.Load();
        QCOMPARE(poll(overWifi, &wifi.link), expected());
        QCOMPARE(op.log, std::vector<std::string>{});
        state.RadioWiFi = false;
    }

    void aWifiLinkThatCannotConnectEndsThePollWithOneMessage() {
        state.RadioWiFi = true;
        state.ReplyHex.fill("");
        ConsoleWifi nowhere("1");  // nothing listens there: refused at once
        frmLiveMode window(
            state, port, names,
            [&nowhere](std::string_view frame, TimePoint now) { nowhere.link.EthernetCommand(frame, now); },
            op, positions);
        window.setWifiLink(&nowhere.link);
        window.Load();
        const QStringList shown = poll(window, &nowhere.link);
        QCOMPARE(shown.first(), QString("Hits: 0"));
        QCOMPARE(shown.count("Hits: "), kTargets - 1);
        // One failed connection, told as the link tells it, and not again for each target.
        QCOMPARE(nowhere.op.log,
                 (std::vector<std::string>{"tell: Halvane: Error: ethernet not connected.  Check settings.",
                                           "tell: Halvane: Socket Error 10061: Connection refused"}));
        state.RadioWiFi = false;
    }
};

// The machines' one timer: the earliest deadline of all wins, an event that moves a deadline re-arms it,
// and no machine is woken before its time.

namespace {

// Waits for one moment at a time and keeps the moments it was woken at.
struct Machine : TimedMachine {
    std::optional<TimePoint> deadline;
    std::vector<TimePoint> wokeAt;
    std::optional<TimePoint> nextDeadline() const override { return deadline; }
    void onTime(TimePoint now) override {
        wokeAt.push_back(now);
        deadline.reset();
    }
};

}  // namespace

class DeadlineTimerTest : public QObject {
    Q_OBJECT

  private slots:
    void theEarliestWinsAndAnEventThatMovesADeadlineRearms() {
        app::DeadlineTimer& timer = app::GuardedApplication::instance()->deadlines();
        Machine late, early;
        const TimePoint start = Clock::now();
        late.deadline = start + 150ms;
        early.deadline = start + 40ms;
        timer.add(late);
        timer.add(early);
        QCOMPARE(timer.armedFor(), early.deadline);

        QTRY_COMPARE_WITH_TIMEOUT(early.wokeAt.size(), std::size_t(1), 1000);
        QVERIFY(early.wokeAt[0] >= start + 40ms);
        QVERIFY(late.wokeAt.empty());
        QCOMPARE(timer.armedFor(), late.deadline);

        // Bytes come, say, and the late machine now wants to be woken sooner: no call to the timer.
        const TimePoint moved = Clock::now() + 20ms;
        QTimer::singleShot(0, [&] { late.deadline = moved; });
        QTRY_COMPARE_WITH_TIMEOUT(timer.armedFor(), std::optional(moved), 1000);
        QTRY_COMPARE_WITH_TIMEOUT(late.wokeAt.size(), std::size_t(1), 1000);
        QVERIFY(late.wokeAt[0] >= moved);
        QVERIFY(late.wokeAt[0] < start + 150ms);

        timer.remove(late);
        timer.remove(early);
        QCOMPARE(timer.armedFor(), std::nullopt);
    }
};

// The links keep their time on the console's application object.
int main(int argc, char** argv) {
    app::GuardedApplication application(argc, argv);
    SerialPortViewTest serialPort;
    LinksEndToEndTest links;
    DeadlineTimerTest deadlines;
    HitScoresEndToEndTest hitScores;
    int failed = 0;
    for (QObject* test : std::initializer_list<QObject*>{&serialPort, &links, &deadlines, &hitScores})
        failed += QTest::qExec(test, argc, argv);
    return failed;
}

#include "platform_test.moc"
