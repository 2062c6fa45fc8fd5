#include "authoring/program_setup.h"

#include <cstdio>
#include <string>

#include "authoring/operator.h"
#include "authoring/shared_state.h"
#include "text/conversions.h"

namespace halvane {

namespace {
// A number as the box shows it after + and -: plain decimal, no leading blank.
std::string decimal(double v) {
    if (const auto whole = text::toInt32(v); whole && *whole == v) return std::to_string(*whole);
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.15g", v);
    return buffer;
}
}  // namespace

Settings::Settings(std::int16_t numSeconds, Operator& op)
    : Text1(std::to_string(numSeconds)), m_operator(op) {}

void Settings::CmdPlus_L() {
    Text1 = decimal(text::Val(Text1) + 1);
}

void Settings::CmdMinus_L() {
    const double v = text::Val(Text1);
    if (v > 1) Text1 = decimal(v - 1);
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
