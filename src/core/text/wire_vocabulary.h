#pragma once
// The bytes that mean the same on every road to a target: the Program image, the range frames, the
// score query and the simulated targets all take their codes from here.

#include <cstdint>
#include <optional>
#include <string_view>

namespace halvane::wire {

// What a target can be told to show; the same byte in the image and on the air.
enum class Action : std::uint8_t { Down = 0xF0, Edge = 0xF1, Foe = 0xF2, Friend = 0xF3 };

inline constexpr std::uint8_t kDelay = 0xFD;  // image only: seconds since the record before
inline constexpr std::uint8_t kPause = 0xFE;  // image only: the running number of the Pause
inline constexpr std::uint8_t kAddressAll = 0xE7;
inline constexpr std::uint8_t kScoreQuery = 0xFA;
inline constexpr std::uint8_t kClearScores = 0xFB;
inline constexpr std::uint8_t kScoreReply = 0xEA;
// A target's parameters are reached through its serial number, not its target number.
inline constexpr std::uint8_t kLookup = 0xF4;
inline constexpr std::uint8_t kParameterAccess = 0xF6;
inline constexpr std::uint8_t kReadMarker = 0xED;

// Frame lengths on the air, command byte included; the Wi-Fi link adds its leading zero.
inline constexpr int kAddressedFrameLength = 2;  // an action, the score query or the clear
inline constexpr int kParameterFrameLength = 6;  // lookup and parameter access
inline constexpr int kScoreReplyLength = 2;

// Target numbers run 1 to kMaxTargets, so a target number never collides with kAddressAll.
inline constexpr int kMaxTargets = 200;
inline constexpr int kMaxSeconds = 32765;
static_assert(kMaxTargets < kAddressAll);

// The line controller's text frames. Its four banks of eight lines, A to D, are wired to targets 1
// to 32 in order; each frame ends in kLineEnd alone.
namespace lines {
inline constexpr int kBanks = 4;
inline constexpr int kPerBank = 8;
inline constexpr int kLastTarget = kBanks * kPerBank;
inline constexpr char kFirstBank = 'A';
inline constexpr char kLineEnd = '\r';
inline constexpr std::string_view kOn = "SETP";       // bank letter, line digit
inline constexpr std::string_view kOff = "RESP";      // bank letter, line digit
inline constexpr std::string_view kSetBank = "SP";    // bank letter, eight digits 0 or 1
inline constexpr std::string_view kConfigure = "CP";  // bank letter, then its settings
}  // namespace lines

constexpr std::uint8_t byteOf(Action action) {
    return static_cast<std::uint8_t>(action);
}

// The cell word that asks for this action.
constexpr const char* wordOfAction(Action action) {
    switch (action) {
        case Action::Friend:
            return "Friend";
        case Action::Foe:
            return "Foe";
        case Action::Edge:
            return "Edge";
        case Action::Down:
            return "Down";
    }
    return "";
}

// The action a cell word asks for; a Pause or any other text is no action.
constexpr std::optional<Action> actionOfWord(std::string_view cellWord) {
    for (Action a : {Action::Friend, Action::Foe, Action::Edge, Action::Down})
        if (cellWord == wordOfAction(a)) return a;
    return std::nullopt;
}

// The action a command byte carries, if it carries one.
constexpr std::optional<Action> actionOfByte(std::uint8_t byte) {
    if (byte >= byteOf(Action::Down) && byte <= byteOf(Action::Friend)) return static_cast<Action>(byte);
    return std::nullopt;
}

}  // namespace halvane::wire
