#pragma once
// The simulated targets of a range, shared by every simulated device and by the window that shows
// them. Every public member locks, so devices on the server's thread and a window on its own thread
// can use one Range at once.
//
// What a target keeps:
// - its place on the range (the slot, 1 to the number of targets), fixed: the line controller's
//   wires and the operator's clicks go by slot;
// - its serial number, 0 to 999998, fixed, on the air as three bytes of binary-coded decimal;
// - its face, one of the four action codes, Down at start;
// - its hit count, 0 to 255 (a further hit stays at 255);
// - its parameter block, one byte per index 1 to 19. Index 6 is the target number it answers to
//   on the air (the slot at start), index 19 its radio channel (0 at start). Indices 10 (battery)
//   and 16 (firmware version) are measured by the target and cannot be written; 8, 15, 17 and 18
//   are spare bytes that read and write like the others.
//
// Hit Mode, Hit Count and Die Face act on a hit as a target does: in the mode "Die" (code 2) a target
// whose count reaches its Hit Count shows its Die Face. "Bob" and "Off" only count; the simulated
// target has no motor to bob with. Hit Sense, Hit Position, Target Speed, Data Port and the groups
// are kept and read back, and change nothing else.
//
// The transmitter's hit table (its 201-byte "H" block) is taken from the targets at the moment it is
// asked for, as if the transmitter had just polled them: see hitBlock().

#include <array>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "text/wire_vocabulary.h"

namespace halvane::sim {

// The action codes, which are also the faces a target shows.
using Face = wire::Action;

namespace parameter {
inline constexpr int kHitSense = 1;
inline constexpr int kHitMode = 2;
inline constexpr int kHitCount = 3;
inline constexpr int kHitPosition = 4;
inline constexpr int kDieFace = 5;
inline constexpr int kTargetNumber = 6;
inline constexpr int kTargetSpeed = 7;
inline constexpr int kDataPort = 9;
inline constexpr int kBatteryVoltage = 10;
inline constexpr int kGroupA = 11;
inline constexpr int kTargetVersion = 16;
inline constexpr int kChannel = 19;
inline constexpr int kLast = 19;
inline constexpr std::uint8_t kHitModeDie = 2;
}  // namespace parameter

// One target as the range keeps it.
struct Target {
    std::int32_t serial = 0;
    Face face = Face::Down;
    std::uint8_t hits = 0;
    std::array<std::uint8_t, parameter::kLast + 1> parameters{};  // index 0 unused

    int number() const { return parameters[parameter::kTargetNumber]; }
    int channel() const { return parameters[parameter::kChannel]; }
    // The serial number as it goes on the air, most significant pair of digits first.
    std::array<std::uint8_t, 3> serialBytes() const;
    // Counts one hit and lets the hit mode act on the face.
    void hit();
};

// What a window shows of one target.
struct TargetView {
    int slot = 0;
    int number = 0;
    std::int32_t serial = 0;
    Face face = Face::Down;
    int hits = 0;
    int channel = 0;
};

// The targets of one range, behind one lock.
class Range {
  public:
    static constexpr int kMaxTargets = wire::kMaxTargets;
    static constexpr std::int32_t kMaxSerial = 999998;
    // Serial number of a target whose serial was not given: this plus its slot.
    static constexpr std::int32_t kDefaultSerialBase = 10000;

    // Every target starts Down, with no hits, answering to its slot as target number, on channel 0,
    // with the block of a target as delivered: Hit Sense 10, Hit Mode Die, Hit Count 1, Hit
    // Position Normal, Die Face Down, Target Speed High, Data Port None, groups 0, a battery of
    // 12.5 V and firmware 1.2.
    // `serials[i]` is the serial number of slot i + 1; slots beyond the list get a default, serials
    // beyond the targets are ignored. Throws std::invalid_argument for 0 or more than 200 targets
    // and for a serial number outside 0..999998.
    Range(int targets, std::vector<std::int32_t> serials = {});

    int size() const;
    std::vector<TargetView> snapshot() const;
    // The operator registers a hit on the target in this slot; a slot that does not exist is ignored.
    void addHit(int slot);
    // The transmitter's hit table: byte 0 the number of targets that have a score, bytes 1 to 200 the
    // score of target number 1 to 200, 0xFF for none. A target has a score once it has been hit; a
    // count of 255 is reported as 254, since 0xFF means none. Where two targets answer to one
    // number, the higher slot wins.
    std::string hitBlock() const;

    // Runs `f` on all targets, slot 1 first, under the lock; for the devices, which must see and
    // change several targets as one step. `f` must not call back into the range.
    template <class F>
    decltype(auto) withTargets(F&& f) {
        std::lock_guard lock(m_mutex);
        return f(m_targets);
    }
    template <class F>
    decltype(auto) withTargets(F&& f) const {
        std::lock_guard lock(m_mutex);
        return f(static_cast<const std::vector<Target>&>(m_targets));
    }

  private:
    mutable std::mutex m_mutex;
    std::vector<Target> m_targets;
};

}  // namespace halvane::sim
