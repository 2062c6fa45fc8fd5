#include "cli/range_carriers.h"

#include <poll.h>
#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>

#include "cli/posix_tcp_socket.h"
#include "links/wifi_driver.h"
#include "links/wifi_link.h"

namespace halvane::cli {

namespace {

volatile sig_atomic_t g_interrupted = 0;

void onSignal(int) {
    g_interrupted = 1;
}

std::optional<TimePoint> earliest(std::optional<TimePoint> a, std::optional<TimePoint> b) {
    if (a && b) return std::min(*a, *b);
    return a ? a : b;
}

timespec split(std::chrono::nanoseconds time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    return {static_cast<time_t>(seconds.count()), static_cast<long>((time - seconds).count())};
}

// Without a timer of its own (the system refused one), the wait falls back on the poll's time-out.
timespec relative(TimePoint deadline) {
    return split(std::max(std::chrono::nanoseconds(0), deadline - SteadyClock::now()));
}

}  // namespace

struct RangeCarriers::Wifi {
    PosixTcpSocket socket;
    WifiLink link;
    WifiDriver driver;

    Wifi(const std::string& address, const SharedState& state, Operator& op) : driver(link, socket, op) {
        link.ServerIP = state.EthernetIP;
        link.ServerPort = state.EthernetPort;
        if (!address.empty()) {
            const auto colon = address.rfind(':');
            link.ServerIP = address.substr(0, colon);
            link.ServerPort = address.substr(colon + 1);
        }
    }
    bool busy() const { return link.nextDeadline() || socket.due() || socket.sending(); }
};

// SIGINT and SIGTERM are held back except while a command waits, so that one that comes between a
// test of the flag and the wait still ends the wait.
RangeCarriers::RangeCarriers(const CarrierOptions& options, SharedState& state, Operator& op)
    : m_timer(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
    names.readOverrides(state.ConfigFile);
    if (options.port) state.ComPort = static_cast<std::int16_t>(options.port);
    if (!options.device.empty()) names.setDevice(state.ComPort, options.device);
    if (state.RadioWiFi) m_wifi = std::make_unique<Wifi>(options.wifi, state, op);

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
    sigprocmask(SIG_BLOCK, &held, &m_before);
    m_during = m_before;
    sigdelset(&m_during, SIGINT);
    sigdelset(&m_during, SIGTERM);
}

RangeCarriers::~RangeCarriers() {
    if (m_timer >= 0) ::close(m_timer);
    sigprocmask(SIG_SETMASK, &m_before, nullptr);
}

RangePort::WifiSend RangeCarriers::wifiSend() {
    if (!m_wifi) return {};
    return
        [&link = m_wifi->link](std::string_view frame, TimePoint now) { link.EthernetCommand(frame, now); };
}

WifiLink* RangeCarriers::wifiLink() {
    return m_wifi ? &m_wifi->link : nullptr;
}

bool RangeCarriers::interrupted() {
    return g_interrupted != 0;
}

// The deadline is kept by a timer on the monotonic clock, the one steady_clock reads, at its absolute
// time: a poll's own time-out would be let slip by up to a thousandth of itself (a millisecond in a
// second's wait), and a run's schedule is measured against it.
bool RangeCarriers::wait(std::optional<TimePoint> deadline) {
    PosixTcpSocket* socket = m_wifi ? &m_wifi->socket : nullptr;
    if (m_wifi) deadline = earliest(deadline, m_wifi->link.nextDeadline());
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
    if (::ppoll(fds, count, atOnce || fallBack ? &limit : nullptr, &m_during) >= 0) {
        if (socketAt > portAt) port.service(fds[portAt].revents);
        if (socket) socket->service(count > socketAt ? fds[socketAt].revents : 0);
    }
    if (m_wifi) m_wifi->link.onTime(SteadyClock::now());
    return !g_interrupted;
}

// False without a deadline or a timer.
bool RangeCarriers::arm(std::optional<TimePoint> deadline) {
    if (m_timer < 0) return false;
    itimerspec when{};
    // A zero time would disarm the timer rather than fire it.
    if (deadline) when.it_value = split(std::max(deadline->time_since_epoch(), SteadyClock::duration(1)));
    return ::timerfd_settime(m_timer, TFD_TIMER_ABSTIME, &when, nullptr) == 0 && deadline.has_value();
}

void RangeCarriers::drain() {
    const TimePoint end = SteadyClock::now() + WifiLink::kConnectBudget + WifiLink::kHelloWait;
    while (m_wifi && !g_interrupted && SteadyClock::now() < end && m_wifi->busy())
        if (!wait(end)) break;
}

}  // namespace halvane::cli
