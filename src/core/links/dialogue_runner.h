#pragma once
// Carries a dialogue's actions out on a serial port and feeds it what the port receives. The windows and
// the command line only wait: for bytes, for the dialogue's next deadline, and for word of a lost line.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "links/dialogue.h"
#include "links/serial_port.h"

namespace halvane {

class DialogueRunner {
  public:
    // `clock` gives the time after a question or message, which may have stood for a long while.
    DialogueRunner(
        Dialogue& dialogue, SerialPort& port, Operator& op,
        std::function<TimePoint()> clock = [] { return SteadyClock::now(); });

    void start(TimePoint now);
    // The port has bytes: take them and hand them to the dialogue.
    void bytesArrived(TimePoint now);
    // Time has passed, or the port has news (it may have lost its line).
    void tick(TimePoint now);
    std::optional<TimePoint> nextDeadline() const { return m_dialogue.nextDeadline(); }
    bool finished() const { return m_dialogue.finished(); }
    // The line went away while the dialogue ran (the dialogue has been told).
    bool lineLost() const { return m_lineLost; }

  private:
    void feed(TimePoint now);
    // Tells the dialogue when its line has gone; true once it has.
    bool checkLine(TimePoint now);
    void loseLine(TimePoint now);
    bool lineGone() const { return m_port.lost() || !m_port.isOpen(); }
    void carryOut(TimePoint now);
    void write(const std::vector<DialogueAction>& actions, std::size_t index, std::vector<bool>& done,
               TimePoint now);
    void dropInput();

    Dialogue& m_dialogue;
    SerialPort& m_port;
    Operator& m_operator;
    std::function<TimePoint()> m_clock;
    std::string m_input;  // received and not taken by the dialogue: still "with the port"
    bool m_inAction = false;
    bool m_lineLost = false;
};

}  // namespace halvane
