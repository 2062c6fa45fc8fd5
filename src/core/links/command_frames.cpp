#include "links/command_frames.h"

#include <string_view>

#include "text/fault.h"

namespace halvane {

using namespace wire;

namespace {

// A target number goes on the air as one byte, so it is checked before any frame is made.
std::uint8_t targetByte(int target) {
    if (target < 1 || target > kMaxTargets)
        throw Fault("Target " + std::to_string(target) +
                    " cannot be commanded: target numbers run from 1 to " + std::to_string(kMaxTargets) +
                    ".");
    return static_cast<std::uint8_t>(target);
}

std::string serialBytes(std::uint8_t command, std::uint8_t address) {
    return {static_cast<char>(command), static_cast<char>(address)};
}

// The socket's frame is three bytes whose first is never written and stays zero.
std::string socketBytes(std::uint8_t command, std::uint8_t address) {
    return {'\0', static_cast<char>(command), static_cast<char>(address)};
}

std::string textLine(std::string_view text) {
    std::string line(text);
    line.push_back(lines::kLineEnd);
    return line;
}

// A whole bank's frame: the prefix, the bank letter and `digits`.
std::string bankFrame(std::string_view prefix, int bank, std::string_view digits) {
    std::string line(prefix);
    line.push_back(static_cast<char>(lines::kFirstBank + bank));
    line.append(digits);
    return textLine(line);
}

bool raisesLine(Action action) {
    return action == Action::Friend || action == Action::Foe;
}

}  // namespace

Carriers Carriers::from(const SharedState& state) {
    return {state.RadioUSB, state.TypeVMR4000, state.RadioWiFi};
}

std::optional<std::string> lineFrame(Action action, int target) {
    if (target < 1 || target > lines::kLastTarget) return std::nullopt;
    const int bank = (target - 1) / lines::kPerBank;
    const int linePin = target - (bank * lines::kPerBank + 1);
    std::string line(raisesLine(action) ? lines::kOn : lines::kOff);
    line.push_back(static_cast<char>(lines::kFirstBank + bank));
    line.push_back(static_cast<char>('0' + linePin));
    return textLine(line);
}

std::vector<Frame> targetActionFrames(Action action, int target, const Carriers& carriers, bool serialOpen) {
    const std::uint8_t t = targetByte(target);
    std::vector<Frame> frames;
    if (carriers.RadioUSB && serialOpen) frames.push_back({Carrier::Serial, serialBytes(byteOf(action), t)});
    if (carriers.TypeVMR4000 && serialOpen) {
        if (auto line = lineFrame(action, target)) frames.push_back({Carrier::Serial, std::move(*line)});
    }
    if (carriers.RadioWiFi) frames.push_back({Carrier::WiFi, socketBytes(byteOf(action), t)});
    return frames;
}

std::vector<Frame> allTargetsActionFrames(Action action, const Carriers& carriers) {
    std::vector<Frame> frames;
    if (carriers.RadioUSB) frames.push_back({Carrier::Serial, serialBytes(byteOf(action), kAddressAll)});
    if (carriers.TypeVMR4000) {
        const std::string digits(lines::kPerBank, raisesLine(action) ? '1' : '0');
        for (int bank = 0; bank < lines::kBanks; ++bank)
            frames.push_back({Carrier::Serial, bankFrame(lines::kSetBank, bank, digits)});
    }
    if (carriers.RadioWiFi) frames.push_back({Carrier::WiFi, socketBytes(byteOf(action), kAddressAll)});
    return frames;
}

std::vector<std::string> lineControllerOpening(bool liveWindow) {
    std::vector<std::string> frames;
    if (liveWindow) frames.push_back(textLine(" "));
    const std::string off(lines::kPerBank, '0');
    for (int bank = 0; bank < lines::kBanks; ++bank) {
        frames.push_back(bankFrame(lines::kSetBank, bank, off));
        // Bank D's configuration goes out with one digit only; the controller has always had it so.
        const bool last = bank == lines::kBanks - 1;
        frames.push_back(bankFrame(lines::kConfigure, bank, last ? std::string_view(off).substr(0, 1) : off));
    }
    return frames;
}

std::optional<Frame> hitScoreQueryFrame(int target, const Carriers& carriers) {
    const std::uint8_t t = targetByte(target);
    if (carriers.RadioUSB) return Frame{Carrier::Serial, serialBytes(kScoreQuery, t)};
    if (carriers.RadioWiFi) return Frame{Carrier::WiFi, socketBytes(kScoreQuery, t)};
    return std::nullopt;
}

// On the serial line the clear is the query addressed to all; only the socket has the clear byte.
std::optional<Frame> clearHitScoresFrame(const Carriers& carriers) {
    if (carriers.RadioUSB) return Frame{Carrier::Serial, serialBytes(kScoreQuery, kAddressAll)};
    if (carriers.RadioWiFi) return Frame{Carrier::WiFi, socketBytes(kClearScores, kAddressAll)};
    return std::nullopt;
}

}  // namespace halvane
