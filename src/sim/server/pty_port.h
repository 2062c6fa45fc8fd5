#pragma once
// One pseudo-terminal for one simulated serial device: the simulator holds the master side, the console
// opens the slave by its path (or by a stable symlink to it).

#include <filesystem>
#include <string>

#include "sim/server/unique_fd.h"

namespace halvane::sim {

class PtyPort {
  public:
    // Opens a new pty, raw 8N1 at 9600, and links `link` to its slave when it is not empty (an old link
    // of that name is replaced). Throws std::system_error when the system refuses.
    explicit PtyPort(std::filesystem::path link = {});
    ~PtyPort();
    PtyPort(const PtyPort&) = delete;
    PtyPort& operator=(const PtyPort&) = delete;

    // The master side, non-blocking.
    int fd() const { return m_master.get(); }
    const std::string& slavePath() const { return m_slavePath; }
    const std::filesystem::path& linkPath() const { return m_link; }

    // Opens our own hold on the slave again after the master reported a hang-up. False if it cannot.
    bool reopenSlave();

  private:
    UniqueFd m_master;
    // Held for the life of the port, so that the master never sees a hang-up while no console has the
    // line open, and the raw line settings outlast the console's own opens and closes.
    UniqueFd m_slave;
    std::string m_slavePath;
    std::filesystem::path m_link;
};

}  // namespace halvane::sim
