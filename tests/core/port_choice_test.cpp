// What the port search window offers after its probes: the finding, the selection, the ports that can
// be chosen, and where ComPort is left.

#include <gtest/gtest.h>

#include "links/port_choice.h"

namespace halvane::testing {
namespace {

SharedState withPorts(std::initializer_list<int> present) {
    SharedState state;
    for (const int port : present) state.PortPresent[static_cast<std::size_t>(port)] = true;
    return state;
}

TEST(PortChoice, TheProbesLeaveComPortOnTheNextToLastPresentPort) {
    const struct {
        std::initializer_list<int> present;
        std::int16_t before, after;
    } cases[] = {{{}, 5, 5}, {{3}, 5, 5}, {{3, 7}, 5, 3}, {{1, 3, 7, 16}, 2, 7}};
    for (const auto& c : cases)
        EXPECT_EQ(comPortAfterProbes(withPorts(c.present), c.before), c.after) << c.before;
}

TEST(PortChoice, TheRadioWinsTheLabelATransmitterAloneIsNamedButNotSelected) {
    const struct {
        std::int16_t ver, ok, comPort;
        const char* label;
        int selected;
    } cases[] = {
        {3, 7, 5, "Radio Found on Com Port  7", 7},  // both found: the radio's port
        {3, 0, 5, "LMC Found on Com Port  3", 5},    // the transmitter named, ComPort selected
        {0, 0, 5, "", 5},                            // nothing found
        {0, 0, 0, "", 0},                            // ComPort 0: nothing selected
        {0, 0, 9, "", 9},  // an absent ComPort: selected, though it cannot be chosen
        {0, 4, 20, "Radio Found on Com Port  4", 4},  // a ComPort beyond the ports has no option
    };
    for (const auto& c : cases) {
        SharedState state = withPorts({3, 4, 5, 7});
        state.PortVer = c.ver;
        state.PortOk = c.ok;
        state.ComPort = c.comPort;
        const PortChoice choice = choosePort(state);
        EXPECT_EQ(choice.Label1, c.label);
        EXPECT_EQ(choice.selected, c.selected) << c.label;
        EXPECT_FALSE(choice.enabled[9]);
        EXPECT_TRUE(choice.enabled[7]);
    }
}

}  // namespace
}  // namespace halvane::testing
