#include "links/transmitter_windows.h"

#include <cctype>
#include <limits>

namespace halvane {

void ProgramNumberDialog::CmdPlus() {
    if (m_counter < 10) Text1 = std::to_string(++m_counter);
}

void ProgramNumberDialog::CmdMinus() {
    if (m_counter > 1) Text1 = std::to_string(--m_counter);
}

void ProgramNumberDialog::OKButton() {
    std::size_t i = 0;
    while (i < Text1.size() && (Text1[i] == ' ' || Text1[i] == '\t')) ++i;
    long value = 0;
    for (; i < Text1.size() && std::isdigit(static_cast<unsigned char>(Text1[i])); ++i)
        value = std::min<long>(value * 10 + (Text1[i] - '0'), std::numeric_limits<short>::max());
    ProgramNumber = static_cast<int>(value);
    m_closed = true;
}

}  // namespace halvane
