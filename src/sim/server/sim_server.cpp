#include "sim/server/sim_server.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <deque>
#include <optional>
#include <system_error>

#include "sim/server/line_queue.h"
#include "sim/server/pty_port.h"
#include "sim/server/tcp_listener.h"

namespace halvane::sim {

namespace {

constexpr std::size_t kReadSize = 4096;

bool wouldBlock(int error) {
    return error == EAGAIN || error == EWOULDBLOCK;
}

void earliest(std::optional<TimePoint>& deadline, std::optional<TimePoint> candidate) {
    if (candidate && (!deadline || *candidate < *deadline)) deadline = candidate;
}

}  // namespace

// A serial device on its pty, with the two directions of its line.
struct SimServer::Port {
    Port(std::string name, std::unique_ptr<Device> device, std::filesystem::path link, bool pace)
        : name(std::move(name)),
          device(std::move(device)),
          pty(std::move(link)),
          toDevice(pace),
          toConsole(pace) {}

    std::string name;
    std::unique_ptr<Device> device;
    PtyPort pty;
    LineQueue toDevice;
    LineQueue toConsole;
    bool dead = false;  // hung up for good: no longer polled
};

// One accepted TCP connection and the device that answers on it.
struct SimServer::Connection {
    UniqueFd fd;
    std::unique_ptr<Device> device;
    std::string label;
    std::deque<std::string> chunks;  // each goes out by a send of its own
    std::size_t sentOfFront = 0;
    bool closed = false;
};

// The TCP listener and where its devices come from.
struct SimServer::Listener {
    TcpListener socket;
    DeviceFactory factory;
};

SimServer::SimServer() : SimServer(Options{}) {}

SimServer::SimServer(Options options)
    : m_options(std::move(options)), m_start(Clock::now()), m_wake(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (!m_wake) throw std::system_error(errno, std::generic_category(), "eventfd");
}

SimServer::~SimServer() = default;

std::string SimServer::addPty(std::string name, std::unique_ptr<Device> device) {
    std::filesystem::path link;
    if (!m_options.linkDir.empty()) link = m_options.linkDir / name;
    m_ports.push_back(
        std::make_unique<Port>(std::move(name), std::move(device), std::move(link), m_options.pace));
    return m_ports.back()->pty.slavePath();
}

std::uint16_t SimServer::listenTcp(DeviceFactory factory, std::uint16_t port) {
    m_listener = std::make_unique<Listener>(Listener{TcpListener(port), std::move(factory)});
    return m_listener->socket.port();
}

void SimServer::setLog(LogSink sink) {
    m_log = std::move(sink);
}

std::string SimServer::ptyPath(std::string_view name) const {
    for (const auto& port : m_ports)
        if (port->name == name) return port->pty.slavePath();
    return {};
}

std::filesystem::path SimServer::linkPath(std::string_view name) const {
    for (const auto& port : m_ports)
        if (port->name == name) return port->pty.linkPath();
    return {};
}

std::uint16_t SimServer::tcpPort() const {
    return m_listener ? m_listener->socket.port() : 0;
}

void SimServer::stop() noexcept {
    m_stopped.store(true);
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(m_wake.get(), &one, sizeof one);
}

void SimServer::run() {
    std::vector<pollfd> fds;
    while (!m_stopped.load()) {
        // Serve whatever is due, then sleep until the next thing falls due or something arrives.
        TimePoint now = Clock::now();
        std::optional<TimePoint> deadline;
        fds.clear();
        fds.push_back({m_wake.get(), POLLIN, 0});
        if (m_listener) fds.push_back({m_listener->socket.fd(), POLLIN, 0});

        for (auto& port : m_ports) {
            servicePort(*port, now);
            if (port->dead) continue;
            const bool blocked = !port->toConsole.ready(now).empty();
            fds.push_back({port->pty.fd(), static_cast<short>(POLLIN | (blocked ? POLLOUT : 0)), 0});
            earliest(deadline, port->device->nextDue());
            earliest(deadline, port->toDevice.nextReady(now));
            earliest(deadline, port->toConsole.nextReady(now));
        }
        for (auto& connection : m_connections)
            if (!connection->closed) serviceConnection(*connection, now);
        std::erase_if(m_connections, [](const auto& connection) { return connection->closed; });
        for (auto& connection : m_connections) {
            const bool blocked = !connection->chunks.empty();
            fds.push_back({connection->fd.get(), static_cast<short>(POLLIN | (blocked ? POLLOUT : 0)), 0});
            earliest(deadline, connection->device->nextDue());
        }

        timespec timeout{};
        if (deadline) {
            const auto wait = std::max(Clock::duration::zero(), *deadline - Clock::now());
            const auto seconds = std::chrono::floor<std::chrono::seconds>(wait);
            timeout.tv_sec = static_cast<time_t>(seconds.count());
            timeout.tv_nsec = static_cast<long>(std::chrono::nanoseconds(wait - seconds).count());
        }
        if (::ppoll(fds.data(), fds.size(), deadline ? &timeout : nullptr, nullptr) < 0) {
            if (errno == EINTR) continue;
            throw std::system_error(errno, std::generic_category(), "ppoll");
        }

        now = Clock::now();
        constexpr short kReadable = POLLIN | POLLHUP | POLLERR;
        std::size_t next = m_listener ? 2 : 1;
        for (auto& port : m_ports)
            if (!port->dead && (fds[next++].revents & kReadable)) readPort(*port, now);
        for (auto& connection : m_connections)
            if (fds[next++].revents & kReadable) readConnection(*connection, now);
        // Last, so that the connections above match their entries in `fds`.
        if (m_listener && fds[1].revents != 0) acceptConnections(now);
        if (fds[0].revents != 0) {
            std::uint64_t count;
            [[maybe_unused]] const auto drained = ::read(m_wake.get(), &count, sizeof count);
        }
    }
}

void SimServer::servicePort(Port& port, TimePoint now) {
    if (const auto in = port.toDevice.ready(now); !in.empty()) {
        port.device->receive(in, now);
        port.toDevice.consume(in.size());
    }
    for (auto& chunk : port.device->takeDue(now)) {
        port.toConsole.push(chunk, now);
        log(now, port.device->name(), LogEntry::Kind::ToConsole, std::move(chunk));
    }
    // With no console on the line the kernel's buffer fills and the rest waits here: a real device
    // would have sent it into the void, and a console that opens the port drops it anyway.
    if (port.dead) return;
    const auto out = port.toConsole.ready(now);
    if (out.empty()) return;
    const auto written = ::write(port.pty.fd(), out.data(), out.size());
    if (written > 0) port.toConsole.consume(static_cast<std::size_t>(written));
}

void SimServer::readPort(Port& port, TimePoint now) {
    char buffer[kReadSize];
    for (;;) {
        const auto count = ::read(port.pty.fd(), buffer, sizeof buffer);
        if (count > 0) {
            port.toDevice.push(std::string_view(buffer, static_cast<std::size_t>(count)), now);
            log(now, port.device->name(), LogEntry::Kind::ToDevice,
                std::string(buffer, static_cast<std::size_t>(count)));
            continue;
        }
        if (count < 0 && (wouldBlock(errno) || errno == EINTR)) return;
        // The master hangs up when no one holds the slave open; take hold of it again, or the poll
        // would report the hang-up without end.
        if (port.pty.reopenSlave()) {
            log(now, port.device->name(), LogEntry::Kind::Note, "line hung up; holding it open again");
        } else {
            port.dead = true;
            log(now, port.device->name(), LogEntry::Kind::Note, "line hung up for good");
        }
        return;
    }
}

void SimServer::acceptConnections(TimePoint now) {
    while (auto fd = m_listener->socket.accept()) {
        auto connection = std::make_unique<Connection>();
        connection->fd = std::move(*fd);
        connection->device = m_listener->factory();
        connection->label = connection->device->name() + '#' + std::to_string(++m_connectionsAccepted);
        log(now, connection->label, LogEntry::Kind::Note, "connected");
        m_connections.push_back(std::move(connection));
    }
}

void SimServer::serviceConnection(Connection& connection, TimePoint now) {
    for (auto& chunk : connection.device->takeDue(now)) {
        log(now, connection.label, LogEntry::Kind::ToConsole, chunk);
        connection.chunks.push_back(std::move(chunk));
    }
    while (!connection.chunks.empty()) {
        const std::string& front = connection.chunks.front();
        const auto sent = ::send(connection.fd.get(), front.data() + connection.sentOfFront,
                                 front.size() - connection.sentOfFront, MSG_NOSIGNAL);
        if (sent < 0) {
            if (errno == EINTR) continue;
            if (wouldBlock(errno)) return;
            log(now, connection.label, LogEntry::Kind::Note, "closed: the console is gone");
            connection.closed = true;
            return;
        }
        connection.sentOfFront += static_cast<std::size_t>(sent);
        if (connection.sentOfFront < front.size()) return;
        connection.chunks.pop_front();
        connection.sentOfFront = 0;
    }
    if (connection.device->wantsClose()) {
        log(now, connection.label, LogEntry::Kind::Note, "closed by the device");
        connection.closed = true;
    }
}

void SimServer::readConnection(Connection& connection, TimePoint now) {
    char buffer[kReadSize];
    for (;;) {
        const auto count = ::recv(connection.fd.get(), buffer, sizeof buffer, 0);
        if (count > 0) {
            const std::string_view bytes(buffer, static_cast<std::size_t>(count));
            log(now, connection.label, LogEntry::Kind::ToDevice, std::string(bytes));
            connection.device->receive(bytes, now);
            continue;
        }
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && wouldBlock(errno)) return;
        log(now, connection.label, LogEntry::Kind::Note, "closed by the console");
        connection.closed = true;
        return;
    }
}

void SimServer::log(TimePoint now, const std::string& device, LogEntry::Kind kind, std::string bytes) {
    if (!m_log) return;
    m_log(LogEntry{std::chrono::floor<std::chrono::milliseconds>(now - m_start), device, kind,
                   std::move(bytes)});
}

}  // namespace halvane::sim
