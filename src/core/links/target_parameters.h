#pragma once
// A target's block of one-byte parameters as the console reads and writes it over the air: which
// parameters there are, how a reply byte becomes the text of a box, how the text of a box becomes a
// byte on each carrier, the serial number that addresses a target, and the lookup, read and write
// frames. Both carriers are kept exactly as targets in the field expect them, also where they differ:
// a Hit Sense of 12 written over Wi-Fi goes out as 0x12.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "links/command_frames.h"

namespace halvane::target {

// How a parameter's byte reads as text.
enum class Kind {
    Number,   // the byte in decimal
    Coded,    // a text of the parameter's list, by code
    Battery,  // tenths of a volt
    Version,  // two decimal digits, tenths
};

struct Parameter {
    int index;            // the byte in the frames
    const char* caption;  // "Hit Sense"
    const char* control;  // the box or label of the setup window: "Cmb_Hit_Sense"
    const char* tab;      // the tab it stands on
    Kind kind;
    bool writable;
    std::vector<std::string> list;   // what the box offers, in its order
    std::vector<std::string> codes;  // Coded: the text of each code, code 0 first
};

// The parameters in the order of a read: fourteen, the last two read only. A write sends the first
// twelve in the same order.
const std::vector<Parameter>& readOrder();
inline constexpr std::size_t kWrites = 12;
// The parameters as the setup window's tabs show them, tab by tab.
std::vector<const Parameter*> tabOrder();
// The parameter of an index; nothing for an index the block does not use here.
const Parameter* byIndex(int index);

// The text a reply byte is written as: two upper-case hexadecimal digits ("0C").
std::string replyText(std::uint8_t byte);

// The box text a reply text gives; nothing when the box is to stand as it is (a code the list lacks).
// An empty reply text, as after a target that never answered, reads as 0.
std::optional<std::string> boxText(const Parameter& p, std::string_view reply);

// The value byte a box text gives on a link (the two differ). `byte` empty and `error` empty: a serial write
// of a text that no code has, whose frame then goes without a value byte. `error` set: the text cannot become
// a byte on this link, in words.
struct Value {
    std::optional<std::uint8_t> byte;
    std::string error;
};
Value valueOf(const Parameter& p, std::string_view text, Carrier link);
// The target number of a lookup, by the same rules as the Target Number box.
Value lookupNumber(std::string_view text, Carrier link);

// The three serial texts of a target ("12", "34", "56" for 123456).
using SerialTexts = std::array<std::string, 3>;
// The serial texts of one to six digits, split in pairs from the right ("1875" gives "00", "18", "75");
// nothing for any other length.
std::optional<SerialTexts> splitSerial(std::string_view digits);
// The same of the setup window's mailbox, "SN" and the digits.
std::optional<SerialTexts> splitSerialTag(std::string_view tag);
// The three bytes of serial texts, each read as hexadecimal.
std::array<std::uint8_t, 3> serialBytes(const SerialTexts& serial);

// The target's radio channel: no box of the setup window shows it; the radio setup reads and writes it.
inline constexpr int kChannelIndex = 0x13;

// The frames as they go on the serial line; on Wi-Fi each goes with a leading zero (wifiFrame).
std::string lookupFrame(std::uint8_t number);
std::string readFrame(const std::array<std::uint8_t, 3>& serial, int index);
// Five bytes when there is no value byte.
std::string writeFrame(const std::array<std::uint8_t, 3>& serial, int index,
                       std::optional<std::uint8_t> value);
std::string wifiFrame(std::string_view frame);

}  // namespace halvane::target
