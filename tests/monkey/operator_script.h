#pragma once
// A randomized operator on the console's real main window: a byte string becomes clicks on the
// Program table, keys, menu commands and answers to every dialog, and after each event the
// promises the console makes about its windows and its Program are checked. It works in a scratch
// range: a folder of Program files, good and broken, and simulated transmitters, each with a fault of
// its own, on the console's serial port numbers.

#include <QString>
#include <QTemporaryDir>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "sim/range.h"
#include "sim/server/sim_server.h"

namespace halvane {
class Form1;
}

namespace halvane::monkey {

// The decisions of a randomized operator, read from a byte string: each takes one byte, and once the
// bytes are used up every decision is the first choice.
class Choices {
  public:
    explicit Choices(std::string bytes) : m_bytes(std::move(bytes)) {}
    // 0 to n - 1.
    int below(int n) {
        if (exhausted()) return 0;
        const int byte = static_cast<unsigned char>(m_bytes[m_next++]);
        return n > 1 ? byte % n : 0;
    }
    template <class T>
    const T& oneOf(const std::vector<T>& items) {
        return items[static_cast<std::size_t>(below(static_cast<int>(items.size())))];
    }
    bool exhausted() const { return m_next >= m_bytes.size(); }

  private:
    std::string m_bytes;
    std::size_t m_next = 0;
};

// The bytes of a fixed seed, for runs that come out the same every time.
inline std::string bytesFromSeed(unsigned seed, std::size_t length) {
    std::mt19937 random(seed);
    std::string bytes(length, '\0');
    for (char& c : bytes) c = static_cast<char>(random() & 0xFF);
    return bytes;
}

// The events of one fuzzer input at most.
inline constexpr int kEventsPerInput = 60;

struct RunResult {
    int events = 0;
    std::vector<std::string> findings;  // empty when every check held
    std::vector<std::string> trace;     // each event and each answer, to reproduce the run
    // How much of the console the run reached.
    int answers = 0;
    int programsShown = 0;
    int savesReadBack = 0;
};

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

class OperatorScript {
  public:
    // Needs a GuardedApplication. The first bytes choose the run's settings, the rest its events.
    OperatorScript(ScratchRange& range, std::string bytes);
    ~OperatorScript();

    // Runs events until the bytes or `maxEvents` are used up, the window closes or a check fails.
    RunResult run(int maxEvents);

    // The checks of the console's promises, on the state as it stands; for tests of the checks.
    std::vector<std::string> check();
    Form1& form();

  private:
    struct Run;
    std::unique_ptr<Run> m_run;
};

// The trace of the run under way is printed when a sanitizer ends the process.
void printTraceOnDeath();

}  // namespace halvane::monkey
