// How long a read of one target's settings takes: the command line's `target read` (its own serial port,
// its wait loop on a timer file) reads a simulated target on the serial radio over a pseudo-terminal
// paced at 9600 baud, and on the Wi-Fi device over loopback TCP, and the time of the whole command,
// port or connection included, is compared with what the line and the target cannot do faster than.
//
//   target_read answering [--turnaround MS]
//   target_read silent
//
// answering: the target answers each read after its turnaround (default 5 ms); the floor is the first
// tick's 500 ms plus, per read, the turnaround and on the serial line the line time of the frame and
// the reply (6 + 6 bytes at 9600 baud). Loopback TCP has no line time.
// silent: nothing answers; the floor is the first tick plus fourteen times the one second per reply.

#include <chrono>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>

#include "cli/commands.h"
#include "scores/target_transfer.h"
#include "sim/devices.h"
#include "sim/server/sim_server.h"

using namespace halvane;
using namespace std::chrono;

namespace {

constexpr int kReads = 14;
constexpr double kByteTime = 10.0 / 9600.0;  // start, eight data bits, stop
constexpr double kFrameBytes = 6;

struct Outcome {
    double took = 0;
    int status = 0;
    std::string printed;
};

// One `target read --serial 10001` against a fresh simulated range served on its own thread.
Outcome readOnce(bool wifi, const sim::Faults& faults) {
    sim::Range range(2);
    sim::SimServer server(sim::SimServer::Options{true, {}});
    cli::TargetOptions options;
    options.serial = "10001";
    SharedState state;
    if (wifi) {
        state.RadioWiFi = true;
        const auto port = server.listenTcp([&] { return sim::makeWifiBridge(range, faults); });
        options.carriers.wifi = "127.0.0.1:" + std::to_string(port);
    } else {
        state.RadioUSB = true;
        options.carriers.device = server.addPty("radio", sim::makeRadioModem(range, faults));
    }
    std::thread serving([&] { server.run(); });

    std::ostringstream out, err;
    auto* const stdoutWas = std::cout.rdbuf(out.rdbuf());
    auto* const stderrWas = std::cerr.rdbuf(err.rdbuf());
    const auto started = steady_clock::now();
    Outcome o;
    o.status = cli::targetCommand(options, state);
    o.took = duration<double>(steady_clock::now() - started).count();
    std::cout.rdbuf(stdoutWas);
    std::cerr.rdbuf(stderrWas);
    o.printed = out.str() + err.str();
    server.stop();
    serving.join();
    return o;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || (std::strcmp(argv[1], "answering") != 0 && std::strcmp(argv[1], "silent") != 0)) {
        std::fprintf(stderr, "usage: target_read answering [--turnaround MS] | silent\n");
        return 2;
    }
    const bool silent = std::strcmp(argv[1], "silent") == 0;
    int turnaroundMs = 5;
    for (int i = 2; i < argc; ++i)
        if (std::strcmp(argv[i], "--turnaround") == 0 && i + 1 < argc) turnaroundMs = std::atoi(argv[++i]);
    sim::Faults faults;
    faults.silent = silent;
    faults.lateBy = milliseconds(turnaroundMs);

    const double firstTick = duration<double>(TargetTransfer::kFirstTick).count();
    bool allRight = true;
    // A silent read is the same wait on either carrier: once, on the serial radio.
    for (const bool wifi : {false, true}) {
        if (wifi && silent) break;
        const Outcome o = readOnce(wifi, faults);
        double floor = firstTick + kReads * duration<double>(frmRetrieving::kReplyBudget).count();
        if (!silent)
            floor = firstTick + kReads * ((wifi ? 0 : 2 * kFrameBytes * kByteTime) + turnaroundMs / 1000.0);
        // The delivered block, as a read shows it.
        const bool right = silent ? o.status == 3
                                  : o.status == 0 && o.printed.find(
                                                         "Battery Voltage=12.5\nTarget Version=1.2\n"
                                                         "SN=010001\n") != std::string::npos;
        allRight = allRight && right;
        std::printf("%s read, %s%s: %.3f s; floor %.3f s; over the floor by %.2f %% (%.2f ms a read); %s\n",
                    silent ? "silent" : "answering",
                    wifi ? "Wi-Fi over loopback" : "serial radio, paced line",
                    silent ? "" : (", turnaround " + std::to_string(turnaroundMs) + " ms").c_str(), o.took,
                    floor, (o.took - floor) / floor * 100, (o.took - floor) / kReads * 1000,
                    right ? (silent ? "exit 3, no reply from the target" : "the block as the target holds it")
                          : ("WRONG: " + o.printed).c_str());
    }
    return allRight ? 0 : 1;
}
