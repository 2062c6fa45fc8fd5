// How long the port search takes and how long the window ever stops painting meanwhile: the Com Ports
// window (offscreen, on the console's own serial adapters and timer) searches sixteen pseudo-terminals
// to simulated devices on a paced 9600-baud line, while a 5 ms timer measures the longest gap between
// two of its ticks, which is the longest the window could not have repainted.
//
//   port_search silent     sixteen ports, nothing answering
//   port_search two        a transmitter on port 5 and a radio on port 12, the rest silent
//
// The floor is the half second of Timer1, then 0.1 s + 0.1 s for the transmitter's question and 0.1 s
// + 1.0 s for the radio's, all ports at once (one by one it would be 16 x 1.3 s = 20.8 s).

#include <QElapsedTimer>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>

#include "authoring/shared_state.h"
#include "links/com_port.h"
#include "links/port_search.h"
#include "platform/guarded_application.h"
#include "platform/qt_operator.h"
#include "platform/qt_serial_port.h"
#include "port_search_view.h"
#include "sim/devices.h"
#include "sim/server/sim_server.h"

using namespace halvane;
using namespace std::chrono;

int main(int argc, char** argv) {
    if (argc < 2 || (std::strcmp(argv[1], "silent") != 0 && std::strcmp(argv[1], "two") != 0)) {
        std::fprintf(stderr, "usage: port_search silent | two\n");
        return 2;
    }
    const bool two = std::strcmp(argv[1], "two") == 0;
    sim::Range range(4);
    sim::SimServer server(sim::SimServer::Options{true, {}});
    PortNames names;
    for (int port = kFirstPort; port <= kLastPort; ++port) {
        sim::Faults silent;
        silent.silent = true;
        std::unique_ptr<sim::Device> device = two && port == 5    ? sim::makeTransmitter(range, {})
                                              : two && port == 12 ? sim::makeRadioModem(range, {})
                                                                  : sim::makeTransmitter(range, silent);
        names.setDevice(port, server.addPty("port" + std::to_string(port), std::move(device)));
    }
    std::thread serving([&] { server.run(); });

    qputenv("QT_QPA_PLATFORM", "offscreen");
    app::GuardedApplication application(argc, argv);
    SharedState state;
    state.ComPort = 1;
    app::QtSerialPort shared;
    app::QtOperator op;
    ComPortModule comPort(state, shared, names, op);
    frmCommPorts window(
        state, comPort, [] { return std::make_unique<app::QtSerialPort>(); }, op);
    app::PortSearchView view(window);
    view.show();

    // The longest the event loop was away between two ticks of a 5 ms timer, from the search's start.
    QElapsedTimer clock;
    qint64 last = -1, longest = 0;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        const qint64 now = clock.nsecsElapsed();
        if (last >= 0) longest = std::max(longest, now - last);
        last = now;
    });
    const auto loaded = steady_clock::now();
    window.Load(loaded);
    clock.start();
    ticker.start(5);
    while (window.searching()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double took = duration<double>(steady_clock::now() - loaded).count();
    ticker.stop();
    server.stop();
    serving.join();

    const double floor = 0.5 + 0.2 + 1.1;
    const std::string found = window.Label1();
    std::printf(
        "%s: search of 16 ports %.3f s from the window's load (floor %.3f s; the search itself %.3f s, "
        "floor 1.300 s); longest stall %.1f ms; Label1 \"%s\", selected %d, ComPort %d\n",
        two ? "transmitter on 5, radio on 12" : "nothing answering", took, floor, took - 0.5,
        static_cast<double>(longest) / 1e6, found.c_str(), window.selected(), state.ComPort);
    const bool right =
        two ? state.PortVer == 5 && state.PortOk == 12 : state.PortVer == 0 && state.PortOk == 0;
    return right ? 0 : 1;
}
