// `config`: the start-up state as plain Name=Value lines that scripts can compare.
#include <ostream>

#include "cli/commands.h"
#include "text/conversions.h"

namespace halvane::cli {

void printConfig(const SharedState& state, std::ostream& out) {
    const auto flag = [&](const char* name, bool value) {
        out << name << '=' << text::boolText(value) << '\n';
    };
    const auto number = [&](const char* name, long value) { out << name << '=' << value << '\n'; };

    number("NumTargets", state.NumTargets);
    number("NumCols", state.NumCols);
    flag("StartBottom", state.StartBottom);
    out << "IconSize=" << state.IconSize << '\n';
    flag("UseGroups", state.UseGroups);
    number("NumGroups", state.NumGroups);
    number("ComPort", state.ComPort);
    flag("TypeLMSeries", state.TypeLMSeries);
    flag("TypeNXBox", state.TypeNXBox);
    flag("TypeVMR4000", state.TypeVMR4000);
    flag("RadioLMC", state.RadioLMC);
    flag("RadioUSB", state.RadioUSB);
    flag("RadioWiFi", state.RadioWiFi);
    flag("LeftClickIF", state.LeftClickIF);
    flag("RightClickIF", state.RightClickIF);
    flag("TargetsValid", state.TargetsValid);
    out << "EthernetIP=" << state.EthernetIP << '\n';
    out << "EthernetPort=" << state.EthernetPort << '\n';
    for (std::size_t n = 1; n < state.GroupNum.size(); ++n) {
        if (state.GroupNum[n] != 0) out << "GroupNum(" << n << ")=" << state.GroupNum[n] << '\n';
    }
    for (std::size_t n = 1; n < state.SerialNum.size(); ++n) {
        if (state.SerialNum[n] != 0) out << "SerialNum(" << n << ")=" << state.SerialNum[n] << '\n';
    }
}

}  // namespace halvane::cli
