#include "links/dialogue_runner.h"

namespace halvane {

DialogueRunner::DialogueRunner(Dialogue& dialogue, SerialPort& port, Operator& op,
                               std::function<TimePoint()> clock)
    : m_dialogue(dialogue), m_port(port), m_operator(op), m_clock(std::move(clock)) {}

void DialogueRunner::start(TimePoint now) {
    m_dialogue.start(now);
    carryOut(now);
}

void DialogueRunner::bytesArrived(TimePoint now) {
    // While a question or message is up, bytes wait with the port; they are fed when it is answered.
    if (m_inAction) return;
    feed(now);
    carryOut(now);
}

void DialogueRunner::tick(TimePoint now) {
    if (m_inAction) return;
    feed(now);
    m_dialogue.onTime(now);
    carryOut(now);
}

void DialogueRunner::feed(TimePoint now) {
    const std::size_t available = m_port.bytesAvailable();
    if (available) m_input += m_port.read(available);
    if (!m_input.empty() && !m_dialogue.finished()) m_input.erase(0, m_dialogue.onBytes(m_input, now));
}

void DialogueRunner::carryOut(TimePoint now) {
    m_inAction = true;
    for (auto actions = m_dialogue.takeActions(); !actions.empty(); actions = m_dialogue.takeActions()) {
        for (const auto& action : actions) {
            switch (action.kind) {
                case DialogueAction::Kind::Write:
                    m_port.write(action.bytes);
                    break;
                case DialogueAction::Kind::DropInput:
                    m_port.dropInput();
                    m_input.clear();
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
