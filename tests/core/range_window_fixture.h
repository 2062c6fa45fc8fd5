#pragma once
// What the tests of a range window (run, live) stand on: the settings, the window's own port, the
// operator, the position store, and the Wi-Fi frames handed over, in hexadecimal.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fake_links.h"
#include "links/port_names.h"
#include "scripted_operator.h"

namespace halvane::testing {

class RangeWindowFixture : public ::testing::Test {
  protected:
    auto wifiSend() {
        return [this](std::string_view frame, TimePoint) { wifi.push_back(hexBytes(frame)); };
    }

    SharedState state;
    FakeSerialPort port;
    PortNames names;
    ScriptedOperator op;
    MemoryPositionStore positions;
    std::vector<std::string> wifi;
};

}  // namespace halvane::testing
