#include "sim/line_controller.h"

#include "sim/devices.h"

namespace halvane::sim {

using namespace wire::lines;

namespace {

constexpr std::size_t kLongestLine = 32;

int bankOf(char c) {
    return c >= kFirstBank && c < kFirstBank + LineController::kBanks ? c - kFirstBank : -1;
}

}  // namespace

void LineController::receive(std::string_view bytes, TimePoint) {
    for (char c : bytes) {
        if (c == kLineEnd) {
            onLine(m_line);
            m_line.clear();
        } else if (c >= ' ' && c <= '~' && m_line.size() < kLongestLine) {
            m_line.push_back(c);
        }
    }
}

void LineController::onLine(std::string_view line) {
    const auto single = [&](std::string_view prefix, bool on) {
        if (line.size() != prefix.size() + 2 || !line.starts_with(prefix)) return false;
        const int bank = bankOf(line[prefix.size()]);
        const int pin = line.back() - '0';
        if (bank < 0 || pin < 0 || pin >= kLinesPerBank) return false;
        setLine(bank, pin, on);
        return true;
    };
    if (single(kOn, true) || single(kOff, false)) return;
    // Configuration frames (kConfigure) change nothing on a simulated line and fall through here.
    const std::size_t digits = kSetBank.size() + 1;
    if (line.size() == digits + kLinesPerBank && line.starts_with(kSetBank) &&
        bankOf(line[digits - 1]) >= 0 && line.find_first_not_of("01", digits) == std::string_view::npos) {
        for (int pin = 0; pin < kLinesPerBank; ++pin) {
            setLine(bankOf(line[digits - 1]), pin, line[digits + static_cast<std::size_t>(pin)] == '1');
        }
    }
}

void LineController::setLine(int bank, int line, bool on) {
    const auto slot = static_cast<std::size_t>(bank * kLinesPerBank + line);
    m_range.withTargets([&](std::vector<Target>& targets) {
        if (slot < targets.size()) targets[slot].face = on ? Face::Foe : Face::Down;
    });
}

std::unique_ptr<Device> makeLineController(Range& range, Faults) {
    return std::make_unique<LineController>(range);
}

}  // namespace halvane::sim
