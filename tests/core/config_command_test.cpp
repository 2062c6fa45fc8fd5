// The `config` command's edges the golden start-up files cannot reach: index 0, which stands for no
// target, is never printed, and the serial numbers run to index 201.
#include <gtest/gtest.h>

#include <sstream>

#include "cli/commands.h"

TEST(ConfigCommand, PrintsTheNonZeroTargetsFrom1To201) {
    halvane::SharedState state;
    state.GroupNum[0] = state.SerialNum[0] = 9;
    state.GroupNum[1] = -32768;
    state.SerialNum[201] = 2147483647;
    std::ostringstream out;
    halvane::cli::printConfig(state, out);
    const std::string text = out.str();
    EXPECT_EQ(text.substr(text.find("GroupNum")), "GroupNum(1)=-32768\nSerialNum(201)=2147483647\n");
}
