#include "sim/range.h"

#include <stdexcept>

namespace halvane::sim {

namespace {

std::uint8_t bcdPair(std::int32_t twoDigits) {
    return static_cast<std::uint8_t>((twoDigits / 10) << 4 | twoDigits % 10);
}

Target deliveredTarget(int slot, std::int32_t serial) {
    using namespace parameter;
    Target t;
    t.serial = serial;
    t.parameters[kHitSense] = 10;
    t.parameters[kHitMode] = kHitModeDie;
    t.parameters[kHitCount] = 1;
    t.parameters[kTargetNumber] = static_cast<std::uint8_t>(slot);
    t.parameters[kBatteryVoltage] = 125;  // tenths of a volt
    t.parameters[kTargetVersion] = 0x12;  // read back as decimal digits: 1.2
    return t;
}

}  // namespace

std::array<std::uint8_t, 3> Target::serialBytes() const {
    return {bcdPair(serial / 10000), bcdPair(serial / 100 % 100), bcdPair(serial % 100)};
}

void Target::hit() {
    if (hits < 255) ++hits;
    const auto& p = parameters;
    if (p[parameter::kHitMode] == parameter::kHitModeDie && hits >= p[parameter::kHitCount] &&
        p[parameter::kDieFace] <= 3) {
        face = static_cast<Face>(static_cast<std::uint8_t>(Face::Down) + p[parameter::kDieFace]);
    }
}

Range::Range(int targets, std::vector<std::int32_t> serials) {
    if (targets < 1 || targets > kMaxTargets) {
        throw std::invalid_argument("a range holds 1 to 200 targets, not " + std::to_string(targets));
    }
    for (int slot = 1; slot <= targets; ++slot) {
        const auto i = static_cast<std::size_t>(slot - 1);
        const std::int32_t serial = i < serials.size() ? serials[i] : kDefaultSerialBase + slot;
        if (serial < 0 || serial > kMaxSerial) {
            throw std::invalid_argument("serial number " + std::to_string(serial) + " of target " +
                                        std::to_string(slot) + " is outside 0 to 999998");
        }
        m_targets.push_back(deliveredTarget(slot, serial));
    }
}

int Range::size() const {
    std::lock_guard lock(m_mutex);
    return static_cast<int>(m_targets.size());
}

std::vector<TargetView> Range::snapshot() const {
    std::lock_guard lock(m_mutex);
    std::vector<TargetView> views;
    int slot = 0;
    for (const Target& t : m_targets) {
        views.push_back({++slot, t.number(), t.serial, t.face, t.hits, t.channel()});
    }
    return views;
}

void Range::addHit(int slot) {
    std::lock_guard lock(m_mutex);
    if (slot >= 1 && slot <= static_cast<int>(m_targets.size())) {
        m_targets[static_cast<std::size_t>(slot - 1)].hit();
    }
}

std::string Range::hitBlock() const {
    std::lock_guard lock(m_mutex);
    std::string block(kMaxTargets + 1, '\xFF');
    for (const Target& t : m_targets) {
        if (t.hits > 0 && t.number() >= 1 && t.number() <= kMaxTargets) {
            block[static_cast<std::size_t>(t.number())] = static_cast<char>(t.hits == 255 ? 254 : t.hits);
        }
    }
    int scored = 0;
    for (std::size_t i = 1; i < block.size(); ++i) scored += block[i] != '\xFF';
    block[0] = static_cast<char>(scored);
    return block;
}

}  // namespace halvane::sim
