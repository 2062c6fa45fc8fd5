// `run`: plays a Program in real time from the command line, with the run window's own engine.

#include <signal.h>
#include <time.h>

#include <cerrno>
#include <iostream>
#include <memory>

#include "cli/commands.h"
#include "cli/console_operator.h"
#include "cli/posix_serial_port.h"
#include "links/port_names.h"
#include "range/range_running.h"
#include "text/conversions.h"

namespace halvane::cli {

namespace {

volatile sig_atomic_t g_interrupted = 0;

void onSignal(int) {
    g_interrupted = 1;
}

// SIGINT and SIGTERM end the run as Exit does; the wait they break is not resumed.
void catchSignals() {
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

// Sleeps until `deadline` on the monotonic clock, the one steady_clock reads; false when a signal came.
bool sleepUntil(TimePoint deadline) {
    const auto since = deadline.time_since_epoch();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(since);
    timespec when{};
    when.tv_sec = static_cast<time_t>(seconds.count());
    when.tv_nsec =
        static_cast<long>(std::chrono::duration_cast<std::chrono::nanoseconds>(since - seconds).count());
    while (!g_interrupted) {
        const int result = clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &when, nullptr);
        if (result == 0) return !g_interrupted;
        if (result != EINTR) return !g_interrupted;
    }
    return false;
}

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

// Window positions mean nothing here.
class NoPositions : public PositionStore {
  public:
    std::vector<std::pair<std::string, std::string>> GetAllSettings(const std::string&,
                                                                    const std::string&) override {
        return {};
    }
    void SaveSetting(const std::string&, const std::string&, const std::string&,
                     const std::string&) override {}
};

std::optional<int> wholeNumber(const std::string& text) {
    if (text.empty() || text.size() > 9) return std::nullopt;
    std::size_t i = text[0] == '-' ? 1 : 0;
    if (i == text.size()) return std::nullopt;
    for (std::size_t j = i; j < text.size(); ++j)
        if (text[j] < '0' || text[j] > '9') return std::nullopt;
    return std::stoi(text);
}

}  // namespace

std::optional<RunOptions> parseRunOptions(const std::vector<std::string>& args) {
    RunOptions options;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == "--from" && hasValue) {
            const auto n = wholeNumber(args[++i]);
            if (!n || *n < 0 || *n > kMaxRunSecond) {
                std::cerr << "--from needs a second from 0 to " << kMaxRunSecond << '\n';
                return std::nullopt;
            }
            options.from = *n;
        } else if (a == "--port" && hasValue) {
            const auto n = wholeNumber(args[++i]);
            if (!n || *n < kFirstPort || *n > kLastPort) {
                std::cerr << "--port needs a port number from 1 to 16\n";
                return std::nullopt;
            }
            options.port = *n;
        } else if (a == "--device" && hasValue) {
            options.device = args[++i];
        } else if (a == "--wifi" && hasValue) {
            options.wifi = args[++i];
            const auto colon = options.wifi.rfind(':');
            if (colon == std::string::npos || colon == 0 || !wholeNumber(options.wifi.substr(colon + 1))) {
                std::cerr << "--wifi needs HOST:PORT\n";
                return std::nullopt;
            }
        } else if (a == "--at-pause" && hasValue) {
            const std::string& v = args[++i];
            if (v != "stop" && v != "continue") {
                std::cerr << "--at-pause takes stop or continue\n";
                return std::nullopt;
            }
            options.continueAtPause = v == "continue";
        } else {
            std::cerr << "unknown or incomplete option: " << a << '\n';
            return std::nullopt;
        }
    }
    return options;
}

int runCommand(const std::string& programFile, const RunOptions& options, SharedState& state) {
    std::unique_ptr<ProgramGrid> grid;
    if (const auto error = loadProgram(programFile, state, grid)) {
        std::cerr << error->message() << '\n';
        return 1;
    }
    PortNames names;
    names.readOverrides(state.ConfigFile);
    if (options.port) state.ComPort = static_cast<std::int16_t>(options.port);
    if (!options.device.empty()) names.setDevice(state.ComPort, options.device);

    ConsoleOperator op(std::cerr, Answer::No);
    NoPositions positions;
    PosixSerialPort port;
    frmRangeRunning window(state, *grid, port, names, nullptr, op, positions);
    window.Load();
    if (window.BtnConnect.Enabled) {
        window.BtnConnect_Click();
        if (window.PortError) return 1;
    }

    bool stop = false;
    window.setStepObserver([&] {
        using State = frmRangeRunning::RunState;
        const State s = window.runState();
        if (s == State::Finished) {
            std::cout << "Finished\n";
            stop = true;
        } else {
            std::cout << trimmed(window.txtTimer.Caption) << '\n';
            if (s == State::PausedByProgram) {
                std::cout << "Paused\n";
                stop = !options.continueAtPause;
            }
        }
        std::cout.flush();
    });

    catchSignals();
    window.txtTimer.Caption = std::to_string(options.from);
    TimePoint due = SteadyClock::now();
    window.BtnStart_Click(due);
    while (!stop && !g_interrupted) {
        if (window.runState() == frmRangeRunning::RunState::PausedByProgram) {
            // Goes on as Start would from the Program's pause, one second after the step that paused.
            due = *window.NextTick;
            if (!sleepUntil(due)) break;
            window.BtnStart_Click(due);
            continue;
        }
        const auto deadline = window.nextDeadline();
        if (!deadline) break;
        if (!sleepUntil(*deadline)) break;
        window.onTime(SteadyClock::now());
    }
    window.BtnExit_Click();
    window.QueryUnload();
    window.Unload();
    return g_interrupted ? 130 : 0;
}

}  // namespace halvane::cli
