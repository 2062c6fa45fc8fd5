// The `config` command's exact output.
#include <gtest/gtest.h>

#include <sstream>

#include "cli/commands.h"

TEST(ConfigCommand, PrintsEveryFieldInOrderThenTheNonZeroTargets) {
    halvane::SharedState state;
    state.NumTargets = 200;
    state.NumCols = -3;
    state.StartBottom = false;
    state.IconSize = "Large";
    state.NumGroups = 12;
    state.ComPort = 17;
    state.RadioWiFi = true;
    state.TargetsValid = true;
    state.EthernetIP = "169.254.1.1";
    state.EthernetPort = "31689";
    state.GroupNum[0] = 9;  // index 0 stands for no target and is never printed
    state.GroupNum[1] = -32768;
    state.GroupNum[200] = 4;
    state.SerialNum[0] = 9;
    state.SerialNum[7] = 999998;
    state.SerialNum[201] = 2147483647;

    std::ostringstream out;
    halvane::cli::printConfig(state, out);
    EXPECT_EQ(out.str(),
              "NumTargets=200\nNumCols=-3\nStartBottom=False\nIconSize=Large\nUseGroups=False\nNumGroups=12\n"
              "ComPort=17\nTypeLMSeries=False\nTypeNXBox=False\nTypeVMR4000=False\nRadioLMC=False\n"
              "RadioUSB=False\nRadioWiFi=True\nLeftClickIF=False\nRightClickIF=True\nTargetsValid=True\n"
              "EthernetIP=169.254.1.1\nEthernetPort=31689\n"
              "GroupNum(1)=-32768\nGroupNum(200)=4\nSerialNum(7)=999998\nSerialNum(201)=2147483647\n");
}
