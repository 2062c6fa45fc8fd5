#pragma once
// Serves simulated devices to the console: each serial device on a pseudo-terminal of its own, the
// Wi-Fi device on a loopback TCP port, all driven by one poll loop on one thread.

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "sim/device.h"
#include "sim/server/log_entry.h"
#include "sim/server/unique_fd.h"

namespace halvane::sim {

class SimServer {
  public:
    struct Options {
        // Bytes cross each pty no faster than a real 9600-baud line; off, they cross at once.
        bool pace = true;
        // When set, each pty is also reachable as linkDir/NAME, a symlink made for the life of the server.
        std::filesystem::path linkDir;
    };
    using DeviceFactory = std::function<std::unique_ptr<Device>()>;
    using LogSink = std::function<void(const LogEntry&)>;

    SimServer();
    explicit SimServer(Options options);
    ~SimServer();
    SimServer(const SimServer&) = delete;
    SimServer& operator=(const SimServer&) = delete;

    // Set-up, before run(). Each throws std::system_error when the system refuses.
    // Puts `device` on a new pty of its own for the server's life, and answers the slave's path.
    std::string addPty(std::string name, std::unique_ptr<Device> device);
    // Listens on 127.0.0.1:`port` (0: any free port) and answers the port; each accepted connection
    // gets a fresh device from `factory`. One listener per server.
    std::uint16_t listenTcp(DeviceFactory factory, std::uint16_t port = 0);
    // Every chunk in and out, called on the thread of run().
    void setLog(LogSink sink);

    // The slave path of the pty added under `name`, its link (empty without Options::linkDir), and
    // the TCP port (0 before listenTcp()); empty for an unknown name.
    std::string ptyPath(std::string_view name) const;
    std::filesystem::path linkPath(std::string_view name) const;
    std::uint16_t tcpPort() const;

    // Serves until stop(). Once stopped, a server stays stopped: run() then returns at once.
    void run();
    // Ends run() promptly. Safe from any thread and from a signal handler.
    void stop() noexcept;

  private:
    struct Port;
    struct Connection;
    struct Listener;

    TimePoint serviceAll(TimePoint now);
    void servicePort(Port& port, TimePoint now);
    void serviceConnection(Connection& connection, TimePoint now);
    void readPort(Port& port, TimePoint now);
    void readConnection(Connection& connection, TimePoint now);
    void acceptConnections(TimePoint now);
    void log(TimePoint now, const std::string& device, LogEntry::Kind kind, std::string bytes);

    Options m_options;
    TimePoint m_start;
    std::vector<std::unique_ptr<Port>> m_ports;
    std::vector<std::unique_ptr<Connection>> m_connections;
    std::unique_ptr<Listener> m_listener;
    int m_connectionsAccepted = 0;
    LogSink m_log;
    UniqueFd m_wake;
    std::atomic<bool> m_stopped{false};
};

}  // namespace halvane::sim
