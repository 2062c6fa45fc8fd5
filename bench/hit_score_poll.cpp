// How fast a poll of hit scores runs: the live window (offscreen, on the console's own serial adapter
// and clock) asks 200 simulated targets for their counts over a pseudo-terminal to the simulated
// radio, and the time from the click to the last tile is compared with what the line and the targets
// cannot do faster than.
//
//   hit_score_poll answering [--pace] [--turnaround MS] [--hit-score-window]
//   hit_score_poll silent [--hit-score-window]
//
// With --hit-score-window the hit score window's radio round polls instead of the live window.
//
// answering: every target answers after its turnaround (default 5 ms); the floor is, per target, the
// query's and the reply's line time (with --pace, 2 bytes each at 9600 baud) plus the turnaround.
// silent: no target answers; the floor is 200 times the 0.15 s allowed for each reply.

#include <QApplication>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>

#include "authoring/shared_state.h"
#include "links/com_port.h"
#include "links/hit_score_poll.h"
#include "links/port_names.h"
#include "platform/guarded_application.h"
#include "platform/qt_operator.h"
#include "platform/qt_serial_port.h"
#include "range/live_mode.h"
#include "scores/hit_scores.h"
#include "sim/devices.h"
#include "sim/server/sim_server.h"

using namespace halvane;
using namespace std::chrono;

namespace {

constexpr int kTargets = 200;

struct NoPositions : PositionStore {
    std::vector<std::pair<std::string, std::string>> GetAllSettings(const std::string&,
                                                                    const std::string&) override {
        return {};
    }
    void SaveSetting(const std::string&, const std::string&, const std::string&,
                     const std::string&) override {}
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || (std::strcmp(argv[1], "answering") != 0 && std::strcmp(argv[1], "silent") != 0)) {
        std::fprintf(stderr, "usage: hit_score_poll answering [--pace] [--turnaround MS] | silent\n");
        return 2;
    }
    const bool silent = std::strcmp(argv[1], "silent") == 0;
    bool paced = false;
    bool scoreWindow = false;
    int turnaroundMs = 5;
    for (int i = 2; i < argc; ++i) {
        if (std::strcmp(argv[i], "--pace") == 0) paced = true;
        if (std::strcmp(argv[i], "--hit-score-window") == 0) scoreWindow = true;
        if (std::strcmp(argv[i], "--turnaround") == 0 && i + 1 < argc) turnaroundMs = std::atoi(argv[++i]);
    }

    sim::Range range(kTargets);
    for (int t = 1; t <= kTargets; ++t)
        for (int h = 0; h < t % 7; ++h) range.addHit(t);
    sim::Faults faults;
    faults.silent = silent;
    faults.lateBy = milliseconds(turnaroundMs);
    sim::SimServer server(sim::SimServer::Options{paced, {}});
    const std::string device = server.addPty("radio", sim::makeRadioModem(range, faults));
    std::thread serving([&] { server.run(); });

    qputenv("QT_QPA_PLATFORM", "offscreen");
    app::GuardedApplication application(argc, argv);
    SharedState state;
    state.RadioUSB = true;
    state.TypeLMSeries = true;
    state.NumTargets = kTargets;
    state.NumCols = 20;
    PortNames names;
    names.setDevice(state.ComPort, device);
    app::QtSerialPort port;
    app::QtOperator op;
    NoPositions positions;
    double took = 0;
    if (scoreWindow) {
        // The hit score window's radio round, on the shared port (opened and settled first).
        ComPortModule comPort(state, port, names, op);
        comPort.OpenComPort();
        FrmHitScores window(state, &comPort, nullptr, op);
        window.Load();
        application.deadlines().add(window);
        const auto started = steady_clock::now();
        window.CmdDownload_Click(started);
        while (window.busy()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        took = duration<double>(steady_clock::now() - started).count();
        application.deadlines().remove(window);
        window.Unload();
    } else {
        frmLiveMode window(state, port, names, nullptr, op, positions);
        window.Load();
        application.deadlines().add(window);
        const auto started = steady_clock::now();
        window.BtnGetHitScores_Click(started);
        while (window.polling()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        took = duration<double>(steady_clock::now() - started).count();
        application.deadlines().remove(window);
        window.Unload();
    }
    server.stop();
    serving.join();

    int right = 0;
    for (int t = 1; t <= kTargets; ++t)
        right += state.ReplyHex[static_cast<std::size_t>(t)] == (silent ? "" : std::to_string(t % 7));
    double floor = 0;
    if (silent) {
        floor = kTargets * duration<double>(HitScorePoll::kSerialRadioWait).count();
    } else {
        const double lineTime = paced ? 4 * 10.0 / 9600.0 : 0;  // two bytes out, two back
        floor = kTargets * (lineTime + turnaroundMs / 1000.0);
    }
    std::printf(
        "%s%s poll of %d targets%s%s: %.3f s; floor %.3f s; over the floor by %.2f %% (%.3f ms a target); "
        "%d of %d scores as the range holds them\n",
        scoreWindow ? "hit score window, " : "live window, ", silent ? "silent" : "answering", kTargets,
        paced ? ", paced line" : "",
        silent ? "" : (", turnaround " + std::to_string(turnaroundMs) + " ms").c_str(), took, floor,
        (took - floor) / floor * 100, (took - floor) / kTargets * 1000, right, kTargets);
    return right == kTargets ? 0 : 1;
}
