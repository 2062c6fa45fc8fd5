#pragma once
// A dialogue with a device on the serial line, as a state machine that never touches a port or a clock:
// it is fed bytes and time and answers with actions, in the order they must be carried out.

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "authoring/operator.h"
#include "links/timed_read.h"

namespace halvane {

// One thing the driver must do for the dialogue.
struct DialogueAction {
    enum class Kind {
        Write,       // queue `bytes` on the line
        DropInput,   // drop what was received and not taken
        DropOutput,  // drop what was queued and not sent
        Ask,         // put `text` to the operator (title, buttons); the dialogue waits for answer()
        Tell,        // a message box with `text` and `title`; `critical` picks the icon
    };
    Kind kind;
    std::string bytes;
    std::string text;
    std::string title;
    Buttons buttons = Buttons::Ok;
    bool critical = false;
};

class Dialogue {
  public:
    virtual ~Dialogue() = default;
    // Begins the dialogue at `now`.
    virtual void start(TimePoint now) = 0;
    // Bytes that came off the line. Returns how many the dialogue took; the rest stay with the port
    // (the next read drops them, as on the real line).
    virtual std::size_t onBytes(std::string_view bytes, TimePoint now) = 0;
    // Time has passed (the deadline, or any later moment).
    virtual void onTime(TimePoint now) = 0;
    // The operator's answer to the last Ask.
    virtual void answer(Answer answer, TimePoint now) = 0;
    // The line is gone (the port was lost, or a write found it closed): the dialogue ends at once as a
    // failure. A dead line never reads as silence, which a later rule could take for success.
    virtual void onLineLost(TimePoint now) = 0;
    // When the dialogue next wants onTime(), if it waits for time at all.
    virtual std::optional<TimePoint> nextDeadline() const = 0;
    // The actions due since the last call, in order.
    std::vector<DialogueAction> takeActions() { return std::exchange(m_actions, {}); }
    virtual bool finished() const = 0;
    // How far it has come, for a progress window: steps done of steps in all.
    virtual std::pair<int, int> progress() const = 0;

  protected:
    void write(std::string bytes) {
        m_actions.push_back({DialogueAction::Kind::Write, std::move(bytes), {}, {}});
    }
    void dropInput() { m_actions.push_back({DialogueAction::Kind::DropInput, {}, {}, {}}); }
    void dropOutput() { m_actions.push_back({DialogueAction::Kind::DropOutput, {}, {}, {}}); }
    void ask(std::string text, std::string title, Buttons buttons) {
        m_actions.push_back({DialogueAction::Kind::Ask, {}, std::move(text), std::move(title), buttons});
    }
    void tell(std::string text, std::string title, bool critical = false) {
        m_actions.push_back(
            {DialogueAction::Kind::Tell, {}, std::move(text), std::move(title), Buttons::Ok, critical});
    }

  private:
    std::vector<DialogueAction> m_actions;
};

}  // namespace halvane
