#include "links/transmitter_windows.h"

#include <cctype>
#include <limits>

#include "text/conversions.h"

namespace halvane {

void ProgramNumberDialog::CmdPlus() {
    if (m_counter < 10) Text1 = std::to_string(++m_counter);
}

void ProgramNumberDialog::CmdMinus() {
    if (m_counter > 1) Text1 = std::to_string(--m_counter);
}

void ProgramNumberDialog::OKButton() {
    m_closed = true;
    Problem.clear();
    ProgramNumber = 0;
    if (Caption == "Download") {
        const auto number = text::toInt16(text::Val(Text1));
        if (number && *number >= 0)
            ProgramNumber = *number;
        else
            Problem = "The Program Number \"" + Text1 +
                      "\" is no program place of the LMC: its places are 1 to 10.";
        return;
    }
    std::size_t i = 0;
    while (i < Text1.size() && (Text1[i] == ' ' || Text1[i] == '\t')) ++i;
    long value = 0;
    for (; i < Text1.size() && std::isdigit(static_cast<unsigned char>(Text1[i])); ++i)
        value = std::min<long>(value * 10 + (Text1[i] - '0'), std::numeric_limits<short>::max());
    ProgramNumber = static_cast<int>(value);
}

}  // namespace halvane
