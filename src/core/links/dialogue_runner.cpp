#include "links/dialogue_runner.h"

namespace halvane {

DialogueRunner::DialogueRunner(Dialogue& dialogue, SerialPort& port, Operator& op,
                               std::function<TimePoint()> clock)
    : m_dialogue(dialogue), m_port(port), m_operator(op), m_clock(std::move(clock)) {
    m_port.listen(
        {[this](std::string_view bytes) { received(bytes); }, [this](const std::string&) { lostLine(); }});
}

DialogueRunner::~DialogueRunner() {
    m_port.stopListening();
}

void DialogueRunner::start(TimePoint now) {
    m_dialogue.start(now);
    carryOut(now);
}

// While the runner is busy (a question or message is up, or a carrier answers within the write that
// asked), bytes wait with the port; they are fed at the next event.
void DialogueRunner::received(std::string_view bytes) {
    m_input.append(bytes);
    if (m_inAction) return;
    const TimePoint now = m_clock();
    feed(now);
    checkLine(now);
    carryOut(now);
}

// The line is gone: the dialogue hears it at once, not at its next deadline.
void DialogueRunner::lostLine() {
    if (m_inAction) return;
    const TimePoint now = m_clock();
    if (checkLine(now)) carryOut(now);
}

void DialogueRunner::tick(TimePoint now) {
    if (m_inAction) return;
    feed(now);
    // A dead line is told before the time: its silence must not pass for a reply that did not come.
    if (!checkLine(now)) m_dialogue.onTime(now);
    carryOut(now);
}

void DialogueRunner::feed(TimePoint now) {
    if (!m_input.empty() && !m_dialogue.finished()) m_input.erase(0, m_dialogue.onBytes(m_input, now));
}

bool DialogueRunner::checkLine(TimePoint now) {
    if (m_lineLost) return true;
    if (m_dialogue.finished() || !lineGone()) return false;
    loseLine(now);
    return true;
}

void DialogueRunner::loseLine(TimePoint now) {
    if (m_lineLost) return;
    m_lineLost = true;
    m_input.clear();
    m_dialogue.onLineLost(now);
}

void DialogueRunner::dropInput() {
    m_port.dropInput();
    m_input.clear();
}

// A drop of the input that follows bytes written is meant for what came before them: at the line's
// speed nothing can answer in between, but a fast carrier (a pty, a simulator) can answer at once, and
// a drop after the write would throw that answer away. So the drop is made before the bytes go out.
void DialogueRunner::write(const std::vector<DialogueAction>& actions, std::size_t index,
                           std::vector<bool>& done, TimePoint now) {
    if (lineGone()) {
        loseLine(now);
        return;
    }
    for (std::size_t next = index + 1; next < actions.size(); ++next) {
        const auto kind = actions[next].kind;
        if (kind == DialogueAction::Kind::DropInput) {
            dropInput();
            done[next] = true;
            break;
        }
        if (kind != DialogueAction::Kind::Write) break;
    }
    if (!m_port.write(actions[index].bytes) || lineGone()) loseLine(now);
}

// Once the line is lost, what was meant for it (bytes, drops, a question about what to send) is void;
// messages are still shown.
void DialogueRunner::carryOut(TimePoint now) {
    m_inAction = true;
    for (auto actions = m_dialogue.takeActions(); !actions.empty(); actions = m_dialogue.takeActions()) {
        std::vector<bool> done(actions.size(), false);
        for (std::size_t i = 0; i < actions.size(); ++i) {
            const DialogueAction& action = actions[i];
            if (done[i] || (m_lineLost && action.kind != DialogueAction::Kind::Tell)) continue;
            switch (action.kind) {
                case DialogueAction::Kind::Write:
                    write(actions, i, done, now);
                    break;
                case DialogueAction::Kind::DropInput:
                    dropInput();
                    break;
                case DialogueAction::Kind::DropOutput:
                    m_port.dropOutput();
                    break;
                case DialogueAction::Kind::Ask: {
                    const Answer answer = m_operator.ask(action.text, action.title, action.buttons);
                    now = m_clock();
                    m_dialogue.answer(answer, now);
                    break;
                }
                case DialogueAction::Kind::Tell:
                    if (action.critical)
                        m_operator.critical(action.text, action.title);
                    else
                        m_operator.tell(action.text, action.title);
                    now = m_clock();
                    break;
            }
        }
    }
    m_inAction = false;
}

}  // namespace halvane
