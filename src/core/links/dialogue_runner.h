#pragma once
// Carries a dialogue's actions out on a serial port and feeds it what the port receives, as the port
// delivers it. The windows and the command line only keep its time: it is a machine like any other that
// waits for its next deadline.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "links/dialogue.h"
#include "links/serial_port.h"
#include "links/timed_machine.h"

namespace halvane {

class DialogueRunner : public TimedMachine {
  public:
    // The runner listens to the port from here on. `clock` gives the time of the port's events and the
    // time after a question or message, which may have stood for a long while.
    DialogueRunner(
        Dialogue& dialogue, SerialPort& port, Operator& op,
        std::function<TimePoint()> clock = [] { return SteadyClock::now(); });
    ~DialogueRunner() override;
    DialogueRunner(const DialogueRunner&) = delete;
    DialogueRunner& operator=(const DialogueRunner&) = delete;

    void start(TimePoint now);
    // Time has passed, or the port has news (it may have lost its line).
    void tick(TimePoint now);
    std::optional<TimePoint> nextDeadline() const override { return m_dialogue.nextDeadline(); }
    void onTime(TimePoint now) override { tick(now); }
    bool finished() const { return m_dialogue.finished(); }
    // The line went away while the dialogue ran (the dialogue has been told).
    bool lineLost() const { return m_lineLost; }

  private:
    void received(std::string_view bytes);
    void lostLine();
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
