// `run`: plays a Program in real time from the command line, with the run window's own engine, on the
// serial line and the Wi-Fi link as the settings choose.

#include <poll.h>
#include <signal.h>
#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <memory>

#include "cli/commands.h"
#include "cli/console_operator.h"
#include "cli/options.h"
#include "cli/posix_serial_port.h"
#include "cli/posix_tcp_socket.h"
#include "links/port_names.h"
#include "links/wifi_driver.h"
#include "links/wifi_link.h"
#include "range/range_running.h"
#include "text/conversions.h"

namespace halvane::cli {

namespace {

volatile sig_atomic_t g_interrupted = 0;

void onSignal(int) {
    g_interrupted = 1;
}

// SIGINT and SIGTERM end the run as Exit does. They are held back except while the run waits, so that
// one that comes between a test of the flag and the wait still ends the wait. Answers the mask to wait
// with; `before` keeps the one to restore.
sigset_t catchSignals(sigset_t& before) {
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    sigset_t held;
    sigemptyset(&held);
    sigaddset(&held, SIGINT);
    sigaddset(&held, SIGTERM);
    sigprocmask(SIG_BLOCK, &held, &before);
    sigset_t during = before;
    sigdelset(&during, SIGINT);
    sigdelset(&during, SIGTERM);
    return during;
}

// The Wi-Fi link of a run, when the settings put frames on it.
struct WifiCarrier {
    PosixTcpSocket socket;
    WifiLink link;
    WifiDriver driver;

    WifiCarrier(const RunOptions& options, const SharedState& state, Operator& op)
        : driver(link, socket, op) {
        link.ServerIP = state.EthernetIP;
        link.ServerPort = state.EthernetPort;
        if (!options.wifi.empty()) {
            const auto colon = options.wifi.rfind(':');
            link.ServerIP = options.wifi.substr(0, colon);
            link.ServerPort = options.wifi.substr(colon + 1);
        }
    }
};

std::optional<TimePoint> earliest(std::optional<TimePoint> a, std::optional<TimePoint> b) {
    if (a && b) return std::min(*a, *b);
    return a ? a : b;
}

// The run's one wait: until a deadline, or until the serial line or the socket has something to say.
// The deadline is kept by a timer on the monotonic clock, the one steady_clock reads, at its absolute
// time: a poll's own time-out would be let slip by up to a thousandth of itself (a millisecond in a
// second's wait), and the schedule is measured against it.
class RunWait {
  public:
    explicit RunWait(const sigset_t& during)
        : m_timer(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)), m_during(during) {}
    ~RunWait() {
        if (m_timer >= 0) ::close(m_timer);
    }
    RunWait(const RunWait&) = delete;
    RunWait& operator=(const RunWait&) = delete;

    // Waits (for ever without a deadline, until a signal) and lets the line and the socket say what
    // they have. False when a signal came.
    bool until(std::optional<TimePoint> deadline, PosixSerialPort& port, PosixTcpSocket* socket) {
        pollfd fds[3]{};
        nfds_t count = 0;
        const bool armed = arm(deadline);
        if (armed) fds[count++] = {m_timer, POLLIN, 0};
        const nfds_t portAt = count;
        if (port.fd() >= 0) fds[count++] = {port.fd(), POLLIN, 0};
        const nfds_t socketAt = count;
        if (socket && socket->fd() >= 0 && socket->pollEvents())
            fds[count++] = {socket->fd(), socket->pollEvents(), 0};
        const bool atOnce = socket && socket->due();
        const bool fallBack = deadline && !armed && !atOnce;
        const timespec limit = fallBack ? relative(*deadline) : timespec{};
        if (::ppoll(fds, count, atOnce || fallBack ? &limit : nullptr, &m_during) < 0) return !g_interrupted;
        if (socketAt > portAt) port.service(fds[portAt].revents);
        if (socket) socket->service(count > socketAt ? fds[socketAt].revents : 0);
        return !g_interrupted;
    }

  private:
    static timespec split(std::chrono::nanoseconds time) {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
        return {static_cast<time_t>(seconds.count()), static_cast<long>((time - seconds).count())};
    }
    // Without a timer of its own (the system refused one), the wait falls back on the poll's time-out.
    static timespec relative(TimePoint deadline) {
        return split(std::max(std::chrono::nanoseconds(0), deadline - SteadyClock::now()));
    }
    // False without a deadline or a timer.
    bool arm(std::optional<TimePoint> deadline) {
        if (m_timer < 0) return false;
        itimerspec when{};
        // A zero time would disarm the timer rather than fire it.
        if (deadline) when.it_value = split(std::max(deadline->time_since_epoch(), SteadyClock::duration(1)));
        return ::timerfd_settime(m_timer, TFD_TIMER_ABSTIME, &when, nullptr) == 0 && deadline.has_value();
    }

    int m_timer;
    sigset_t m_during;
};

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
        } else if (bool bad = false; portOption(args, i, options.port, options.device, bad)) {
            if (bad) return std::nullopt;
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
    std::unique_ptr<WifiCarrier> wifi;
    frmRangeRunning::WifiSend wifiSend;
    if (state.RadioWiFi) {
        wifi = std::make_unique<WifiCarrier>(options, state, op);
        wifiSend = [&link = wifi->link](std::string_view frame, TimePoint now) {
            link.EthernetCommand(frame, now);
        };
    }
    PosixTcpSocket* socket = wifi ? &wifi->socket : nullptr;
    frmRangeRunning window(state, *grid, port, names, wifiSend, op, positions);
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

    sigset_t before;
    RunWait wait(catchSignals(before));
    window.txtTimer.Caption = std::to_string(options.from);
    window.BtnStart_Click(SteadyClock::now());
    while (!stop && !g_interrupted) {
        // A Program's pause goes on as Start would, one second after the step that paused.
        const bool paused = window.runState() == frmRangeRunning::RunState::PausedByProgram;
        const auto due = paused ? window.NextTick : window.nextDeadline();
        if (!due) break;
        if (!wait.until(earliest(due, wifi ? wifi->link.nextDeadline() : std::nullopt), port, socket)) break;
        const TimePoint now = SteadyClock::now();
        if (wifi) wifi->link.onTime(now);
        if (now < *due) continue;
        if (paused)
            window.BtnStart_Click(*due);
        else
            window.onTime(now);
    }
    // The frames of the last step may still wait for the connection or the device's hello.
    const TimePoint drainEnd = SteadyClock::now() + WifiLink::kConnectBudget + WifiLink::kHelloWait;
    while (wifi && !g_interrupted && SteadyClock::now() < drainEnd &&
           (wifi->link.nextDeadline() || wifi->socket.due() || wifi->socket.sending())) {
        if (!wait.until(earliest(wifi->link.nextDeadline(), drainEnd), port, socket)) break;
        wifi->link.onTime(SteadyClock::now());
    }
    window.BtnExit_Click();
    window.QueryUnload();
    window.Unload();
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return g_interrupted ? 130 : 0;
}

}  // namespace halvane::cli
