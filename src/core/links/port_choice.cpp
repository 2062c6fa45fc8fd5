#include "links/port_choice.h"

#include "text/conversions.h"

namespace halvane {

std::int16_t comPortAfterProbes(const SharedState& state, std::int16_t before) {
    // Each round notes ComPort before setting it to its own port: after the last round the note
    // holds the port of the round before.
    std::int16_t saved = before, current = before;
    for (int port = 1; port <= SharedState::kNumPorts; ++port) {
        if (!state.PortPresent[static_cast<std::size_t>(port)]) continue;
        saved = current;
        current = static_cast<std::int16_t>(port);
    }
    return saved;
}

PortChoice choosePort(const SharedState& state) {
    PortChoice choice;
    const auto exists = [](int port) { return port >= 1 && port <= SharedState::kNumPorts; };
    // Setting an option clears the others: the last one set is the selection.
    auto select = [&](int port) {
        if (exists(port)) choice.selected = port;
    };
    if (state.PortVer > 0) {
        choice.Label1 = "LMC Found on Com Port " + text::Str(std::int64_t{state.PortVer});
        select(state.PortVer);
    } else if (state.ComPort > 0) {
        select(state.ComPort);
    }
    // The radio's finding replaces the transmitter's; without one the selection goes back to ComPort,
    // so a transmitter found alone is named but not selected.
    if (state.PortOk > 0) {
        choice.Label1 = "Radio Found on Com Port " + text::Str(std::int64_t{state.PortOk});
        select(state.PortOk);
    } else if (state.ComPort >= 1) {
        select(state.ComPort);
    }
    for (int port = 1; port <= SharedState::kNumPorts; ++port)
        choice.enabled[static_cast<std::size_t>(port)] = state.PortPresent[static_cast<std::size_t>(port)];
    return choice;
}

}  // namespace halvane
