#pragma once
// Carries a dialogue's actions out on a serial port and feeds it what the port receives. The windows and
// the command line only wait: for bytes, and for the dialogue's next deadline.

#include <functional>
#include <optional>
#include <string>

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
    // Time has passed.
    void tick(TimePoint now);
    std::optional<TimePoint> nextDeadline() const { return m_dialogue.nextDeadline(); }
    bool finished() const { return m_dialogue.finished(); }

  private:
    void feed(TimePoint now);
    void carryOut(TimePoint now);

    Dialogue& m_dialogue;
    SerialPort& m_port;
    Operator& m_operator;
    std::function<TimePoint()> m_clock;
    std::string m_input;  // received and not taken by the dialogue: still "with the port"
    bool m_inAction = false;
};

}  // namespace halvane
