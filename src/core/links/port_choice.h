#pragma once
// What the port search window offers once its probes are done: the finding in its label, the port
// selected, the ports that can be chosen, and where ComPort stands. The probes leave ComPort on the
// next-to-last present port (each probe round notes ComPort before moving it on), and the finding of a
// radio replaces that of a transmitter; both rules are kept as they stand.

#include <array>
#include <cstdint>
#include <string>

#include "authoring/shared_state.h"

namespace halvane {

struct PortChoice {
    std::string Label1;  // "" when nothing was found
    int selected = 0;    // the port whose option is set; 0 for none
    std::array<bool, SharedState::kNumPorts + 1>
        enabled{};  // 1..16: a port that is not present cannot be chosen
};

// Where the probes leave ComPort, from the ports present and ComPort before the search.
std::int16_t comPortAfterProbes(const SharedState& state, std::int16_t before);

// The window after the search, from PortPresent, PortVer, PortOk and ComPort as the probes left them.
PortChoice choosePort(const SharedState& state);

}  // namespace halvane
