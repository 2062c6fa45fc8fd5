// `ports`: the port search window from the command line, with the window's own model: the scan of ports
// 1-16, the two questions to every present port, and what the window then offers. `--save` presses OK.

#include <poll.h>

#include <algorithm>
#include <iostream>
#include <vector>

#include "cli/commands.h"
#include "cli/console_operator.h"
#include "cli/posix_serial_port.h"
#include "links/com_port.h"
#include "links/port_search.h"

namespace halvane::cli {

namespace {

// The ports the search opens, each watched while it is open. The search keeps them until it goes.
class PortPool {
  public:
    std::unique_ptr<SerialPort> newPort() {
        auto port = std::make_unique<PosixSerialPort>();
        m_ports.push_back(port.get());
        return port;
    }

    // Waits until `deadline` or until an open port has something to say, and lets it say it.
    void wait(std::optional<TimePoint> deadline) {
        std::vector<pollfd> fds;
        std::vector<PosixSerialPort*> watched;
        for (PosixSerialPort* port : m_ports)
            if (port->fd() >= 0) {
                fds.push_back({port->fd(), POLLIN, 0});
                watched.push_back(port);
            }
        int timeout = -1;
        if (deadline) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - SteadyClock::now());
            timeout = static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
        }
        if (fds.empty() && timeout < 0) return;
        if (::poll(fds.data(), fds.size(), timeout) <= 0) return;
        for (std::size_t i = 0; i < fds.size(); ++i)
            if (fds[i].revents) watched[i]->service(fds[i].revents);
    }

  private:
    std::vector<PosixSerialPort*> m_ports;
};

}  // namespace

int portsCommand(bool save, SharedState& state) {
    ConsoleOperator op(std::cerr, Answer::No);
    PortNames names;
    names.readOverrides(state.ConfigFile);
    PosixSerialPort shared;
    ComPortModule comPort(state, shared, names, op);
    PortPool pool;
    frmCommPorts window(
        state, comPort, [&pool] { return pool.newPort(); }, op);
    window.Load(SteadyClock::now());
    while (window.searching()) {
        pool.wait(window.nextDeadline());
        if (const auto due = window.nextDeadline(); due && *due <= SteadyClock::now())
            window.onTime(SteadyClock::now());
    }
    std::string present;
    for (int port = kFirstPort; port <= kLastPort; ++port)
        if (state.PortPresent[static_cast<std::size_t>(port)])
            present += (present.empty() ? "" : ",") + std::to_string(port);
    std::cout << "Finding=" << window.Label1() << '\n'
              << "Selected=" << window.selected() << '\n'
              << "ComPort=" << state.ComPort << '\n'
              << "Present=" << present << '\n';
    std::cout.flush();
    if (!save) return 0;
    if (window.selected() == 0) {
        std::cerr << "no port is selected; nothing was saved\n";
        return 1;
    }
    return window.OKButton_Click() ? 0 : 1;
}

}  // namespace halvane::cli
