#include "cli/console_operator.h"

#include <ostream>

#include "links/transmitter_windows.h"

namespace halvane::cli {

void ConsoleOperator::tell(const std::string& text, const std::string& title) {
    m_err << title << ": " << text << '\n';
}

Answer ConsoleOperator::ask(const std::string& text, const std::string& title, Buttons) {
    static constexpr const char* kWords[] = {"OK", "Yes", "No", "Cancel"};
    m_err << title << ": " << text << ' ' << kWords[static_cast<int>(m_answer)] << '\n';
    return m_answer;
}

void ConsoleOperator::show(Window& window, Modality) {
    if (m_onShow && m_onShow(window)) return;
    if (dynamic_cast<FailedBox*>(&window)) m_err << FailedBox::Label1 << ". " << FailedBox::Label2 << ".\n";
}

}  // namespace halvane::cli
