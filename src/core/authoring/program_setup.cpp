#include "authoring/program_setup.h"

#include <string>

#include "authoring/operator.h"
#include "authoring/shared_state.h"
#include "text/conversions.h"

namespace halvane {

Settings::Settings(std::int16_t numSeconds, Operator& op)
    : Text1(std::to_string(numSeconds)), m_operator(op) {}

void Settings::CmdPlus_L() {
    Text1 = text::CStr(text::Val(Text1) + 1);
}

void Settings::CmdMinus_L() {
    const double v = text::Val(Text1);
    if (v > 1) Text1 = text::CStr(v - 1);
}

void Settings::OKButton() {
    const double v = text::Val(Text1);
    if (v > 0) {
        const auto seconds = text::toInt16(v);
        if (!seconds || *seconds > SharedState::kMaxSeconds) {
            m_operator.tell("The length of a Program can be at most " +
                                std::to_string(SharedState::kMaxSeconds) + " seconds.",
                            "Halvane");
            return;
        }
        m_result = *seconds;
    }
    m_closed = true;
}

void Settings::CancelButton() {
    m_closed = true;
}

}  // namespace halvane
