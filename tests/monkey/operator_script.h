#pragma once
// A randomized operator on the console's real main window: a byte string becomes clicks on the
// Program table, keys, menu commands and answers to every dialog, and after each event the
// promises the console makes about its windows and its Program are checked.

#include <memory>
#include <random>
#include <string>
#include <vector>

namespace halvane {
class Form1;
}

namespace halvane::monkey {

class ScratchRange;

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
