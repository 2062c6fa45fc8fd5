#pragma once
// The frames that command the targets of the range from the run and live windows: which carriers
// the settings choose, and the bytes of each frame on each of them. Pure functions: nothing here
// writes, the caller sends each frame on its carrier in the order given.

#include <optional>
#include <string>
#include <vector>

#include "authoring/shared_state.h"
#include "text/wire_vocabulary.h"

namespace halvane {

// Which carriers the settings choose for the range frames.
struct Carriers {
    bool RadioUSB = false, TypeVMR4000 = false, RadioWiFi = false;
    static Carriers from(const SharedState& state);
};

enum class Carrier { Serial, WiFi };

// One frame as it goes out: on the serial line as it stands, on the socket with its leading zero.
struct Frame {
    Carrier carrier;
    std::string bytes;
    bool operator==(const Frame&) const = default;
};

// One action for target `target` (1..200), carriers tested one by one in the order RadioUSB,
// TypeVMR4000, RadioWiFi. With `serialOpen` false the serial frames (binary and text) are left out.
// Targets above 32 get no line-controller frame. Throws Fault (text/fault.h) naming the target when
// it is outside 1..200, before anything is produced.
std::vector<Frame> targetActionFrames(wire::Action action, int target, const Carriers& carriers,
                                      bool serialOpen = true);

// One action for all targets (BtnFriend etc.): command + AddressAll; the four SP bank frames.
std::vector<Frame> allTargetsActionFrames(wire::Action action, const Carriers& carriers);

// The frames written when the line controller's port has opened, in order, each with its CR; the
// live window sends " " CR first.
std::vector<std::string> lineControllerOpening(bool liveWindow);

// Hit score query for one target: the serial line when RadioUSB, else the socket when RadioWiFi,
// else nothing. Clear: "FA E7" on the serial line, "00 FB E7" on the socket (same carrier choice).
// The query throws Fault as targetActionFrames does for a target outside 1..200.
std::optional<Frame> hitScoreQueryFrame(int target, const Carriers& carriers);
std::optional<Frame> clearHitScoresFrame(const Carriers& carriers);

// The line controller's frame for one target, CR included, or nothing for a target without a line
// (above 32). Friend and Foe raise the line, Edge and Down lay it down.
std::optional<std::string> lineFrame(wire::Action action, int target);

}  // namespace halvane
