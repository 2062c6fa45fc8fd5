#pragma once
// A simulated device as the console's peer: fed the bytes the console sends and the time, it answers
// with the bytes a real device would send back, when it would send them. No port, no clock of its own.

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::sim {

using Clock = std::chrono::steady_clock;
using TimePoint = Clock::time_point;

// Faults a device can be told to show, to rehearse and test the console's failure paths.
struct Faults {
    bool silent = false;                  // reads everything, answers nothing
    bool wrongSum = false;                // transmitter: every sum it sends is off by one
    int refuseBlock = 0;                  // transmitter: refuses the N-th block of a send (0: never)
    std::chrono::milliseconds lateBy{0};  // every reply starts this much later than it would
    bool splitReplies = false;            // every reply comes in two pieces, 50 ms apart
    int dropAfterFrames = 0;              // Wi-Fi bridge: closes the connection after N frames (0: never)
};

class Device {
  public:
    virtual ~Device() = default;
    // A short name for the log ("transmitter", "radio", "line controller", "wifi").
    virtual std::string name() const = 0;
    // Bytes from the console at `now`, as they came off the line (any split, any length).
    virtual void receive(std::string_view bytes, TimePoint now) = 0;
    // The chunks for the console that are due by `now`, in order, taken out of the device. On a TCP
    // connection each chunk is written by itself (the Wi-Fi bridge's hello stands alone).
    virtual std::vector<std::string> takeDue(TimePoint now) = 0;
    // When the next chunk falls due, if one is waiting.
    virtual std::optional<TimePoint> nextDue() const = 0;
    // The device wants its connection closed (a fault of the Wi-Fi bridge).
    virtual bool wantsClose() const { return false; }
};

}  // namespace halvane::sim
