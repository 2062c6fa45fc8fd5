#pragma once
// The simulated devices, as the server and the tests make them. Each device answers on the
// virtual clock it is given; its header tells what it answers and when.

#include <memory>

#include "sim/device.h"
#include "sim/range.h"

namespace halvane::sim {

class Transmitter;

// The hand-held transmitter in PC Comm Mode, on a serial line (transmitter.h).
std::unique_ptr<Device> makeTransmitter(Range& range, Faults faults);
// The USB radio modem on a serial line, through which the console reaches the targets (radio_modem.h).
std::unique_ptr<Device> makeRadioModem(Range& range, Faults faults);
// The line controller with four banks of eight lines, on a serial line (line_controller.h).
std::unique_ptr<Device> makeLineController(Range& range, Faults faults);
// The Wi-Fi bridge, one for each TCP connection (wifi_bridge.h).
std::unique_ptr<Device> makeWifiBridge(Range& range, Faults faults);

// The transmitter behind a Device made by makeTransmitter, to fill or read its program places.
// Throws std::bad_cast for any other device.
Transmitter& asTransmitter(Device& device);

}  // namespace halvane::sim
