#pragma once
// The world a randomized operator works in: a scratch folder of Program files, good and broken, and
// simulated transmitters, each with a fault of its own, on the console's serial port numbers.

#include <QString>
#include <QTemporaryDir>
#include <string>
#include <thread>
#include <vector>

#include "sim/range.h"
#include "sim/server/sim_server.h"

namespace halvane::monkey {

class ScratchRange {
  public:
    // Port n (1 to kPorts - 1) leads to the transmitter faultName(n); port kPorts leads nowhere.
    static constexpr int kPorts = 8;
    static const char* faultName(int port);

    // Starts the devices on a thread of their own; throws std::runtime_error when it cannot.
    ScratchRange();
    ~ScratchRange();

    // Puts the scratch folder back as it was at start and writes hvn.cfg for a run; its path. The
    // targets are spread over `groups` groups (at least 1), which the Program uses if `useGroups`.
    std::string prepareRun(int targets, int groups, bool useGroups, bool leftClick, int comPort);
    // What a file dialog may be given: Programs, broken files, a folder, a missing file.
    std::vector<QString> openChoices, saveChoices;

  private:
    QTemporaryDir m_dir;
    QString m_files;
    sim::Range m_range{8};
    sim::SimServer m_server;
    std::vector<std::string> m_ptys;
    std::thread m_thread;
};

// Points what Qt and the console keep in the environment into a scratch folder, so that a run never
// touches the operator's own settings; call before the application object exists.
void prepareEnvironment();

}  // namespace halvane::monkey
