#include "sim/target_air.h"

namespace halvane::sim {

namespace {

bool writable(int index) {
    return index >= 1 && index <= parameter::kLast && index != parameter::kBatteryVoltage &&
           index != parameter::kTargetVersion;
}

std::string sixByteReply(std::uint8_t command, const Target& t, std::uint8_t value) {
    const auto s = t.serialBytes();
    return {static_cast<char>(command), static_cast<char>(t.number()), static_cast<char>(s[0]),
            static_cast<char>(s[1]),    static_cast<char>(s[2]),       static_cast<char>(value)};
}

}  // namespace

int frameLength(std::uint8_t command) {
    if (wire::actionOfByte(command) || command == wire::kScoreQuery || command == wire::kClearScores)
        return wire::kAddressedFrameLength;
    if (command == wire::kLookup || command == wire::kParameterAccess) return wire::kParameterFrameLength;
    return 0;
}

std::vector<std::string> hearFrame(Range& range, std::string_view frame, int channel) {
    std::vector<std::string> replies;
    if (frame.empty() || static_cast<int>(frame.size()) != frameLength(static_cast<std::uint8_t>(frame[0]))) {
        return replies;
    }
    auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(frame[i]); };
    const std::uint8_t command = byte(0);
    range.withTargets([&](std::vector<Target>& targets) {
        for (Target& t : targets) {
            if (t.channel() != channel) continue;
            const bool numbered = byte(1) == t.number();
            const bool all = byte(1) == kAddressAll;
            if (const auto action = wire::actionOfByte(command)) {
                if (numbered || all) t.face = *action;
                continue;
            }
            switch (command) {
                case wire::kScoreQuery:
                    if (all) t.hits = 0;
                    if (numbered)
                        replies.push_back({static_cast<char>(kScoreReply), static_cast<char>(t.hits)});
                    break;
                case wire::kClearScores:
                    if (numbered || all) t.hits = 0;
                    break;
                case wire::kLookup:
                    if (numbered)
                        replies.push_back(sixByteReply(command, t, static_cast<std::uint8_t>(t.number())));
                    break;
                case wire::kParameterAccess: {
                    const auto s = t.serialBytes();
                    if (byte(1) != s[0] || byte(2) != s[1] || byte(3) != s[2]) break;
                    const int index = byte(4);
                    if (index < 1 || index > parameter::kLast) break;
                    if (byte(5) == kReadMarker) {
                        replies.push_back(
                            sixByteReply(command, t, t.parameters[static_cast<std::size_t>(index)]));
                    } else if (writable(index)) {
                        t.parameters[static_cast<std::size_t>(index)] = byte(5);
                    }
                    break;
                }
            }
        }
    });
    return replies;
}

}  // namespace halvane::sim
