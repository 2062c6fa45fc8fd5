#include "links/target_parameters.h"

#include <algorithm>

#include "text/conversions.h"
#include "text/wire_vocabulary.h"

namespace halvane::target {

namespace {

std::vector<std::string> numbers(int from, int to) {
    std::vector<std::string> out;
    for (int i = from; i <= to; ++i) out.push_back(std::to_string(i));
    return out;
}

const std::vector<Parameter> kBlock = {
    {1, "Hit Sense", "Cmb_Hit_Sense", "Hit Setting", Kind::Number, true, numbers(1, 20), {}},
    // The list shows Die second; its code is 2.
    {2,
     "Hit Mode",
     "Cmb_Hit_Mode",
     "Hit Setting",
     Kind::Coded,
     true,
     {"Off", "Die", "Bob"},
     {"Off", "Bob", "Die"}},
    {3, "Hit Count", "Cmb_Hit_Count", "Hit Setting", Kind::Number, true, numbers(1, 20), {}},
    {4,
     "Hit Position",
     "Cmb_Hit_Position",
     "Hit Setting",
     Kind::Coded,
     true,
     {"Normal", "Reverse", "No Edge"},
     {"Normal", "Reverse", "No Edge"}},
    {5,
     "Die Face",
     "Cmb_Die_Face",
     "Hit Setting",
     Kind::Coded,
     true,
     {"Down", "Edge", "Foe", "Friend"},
     {"Down", "Edge", "Foe", "Friend"}},
    {6, "Target Number", "Cmb_Target_Num", "Target Control", Kind::Number, true, numbers(0, 200), {}},
    {7,
     "Target Speed",
     "Cmb_Target_Speed",
     "Target Control",
     Kind::Coded,
     true,
     {"High", "Low"},
     {"High", "Low"}},
    {11, "Group A", "Cmb_GroupA", "Target Control", Kind::Number, true, numbers(0, 20), {}},
    {12, "Group B", "Cmb_GroupB", "Target Control", Kind::Number, true, numbers(0, 20), {}},
    {13, "Group C", "Cmb_GroupC", "Target Control", Kind::Number, true, numbers(0, 20), {}},
    {14, "Group D", "Cmb_GroupD", "Target Control", Kind::Number, true, numbers(0, 20), {}},
    {9,
     "Data Port",
     "Cmb_Data_Port",
     "Utility",
     Kind::Coded,
     true,
     {"None", "PortA", "PortB", "Both"},
     {"None", "PortA", "PortB", "Both"}},
    {10, "Battery Voltage", "Lbl_Battery_Voltage", "Utility", Kind::Battery, false, {}, {}},
    {16, "Target Version", "Lbl_FirmWare", "Utility", Kind::Version, false, {}, {}},
};

constexpr int kHitSense = 1, kGroupA = 11, kGroupD = 14;

// A text read as hexadecimal digits, as a reply text or a serial text is.
double hexValue(std::string_view text) {
    return text::Val("&H" + std::string(text));
}

Value byteOf(double v, const std::string& how) {
    const auto whole = text::toInt32(v);
    if (!whole || *whole < 0 || *whole > 255) return {std::nullopt, how + " is not a number from 0 to 255"};
    return {static_cast<std::uint8_t>(*whole), {}};
}

// Over Wi-Fi a count or a target number goes as its hexadecimal text taken for a decimal number.
Value hexadecimalAsDecimal(std::string_view text) {
    const auto whole = text::toInt32(text::Val(text));
    const std::string hex = whole ? text::Hex(*whole) : std::string("?");
    if (!std::all_of(hex.begin(), hex.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return {std::nullopt, "over Wi-Fi it goes as its hexadecimal \"" + hex + "\", which is no number"};
    return byteOf(text::Val(hex), "over Wi-Fi it goes as its hexadecimal \"" + hex + "\", which");
}

}  // namespace

const std::vector<Parameter>& readOrder() {
    return kBlock;
}

std::vector<const Parameter*> tabOrder() {
    std::vector<const Parameter*> out;
    for (const int index : {9, 10, 16, 1, 3, 2, 5, 4, 6, 7, 11, 12, 13, 14}) out.push_back(byIndex(index));
    return out;
}

const Parameter* byIndex(int index) {
    const auto found =
        std::find_if(kBlock.begin(), kBlock.end(), [index](const Parameter& p) { return p.index == index; });
    return found == kBlock.end() ? nullptr : &*found;
}

std::string replyText(std::uint8_t byte) {
    return text::hexByte(byte);
}

std::optional<std::string> boxText(const Parameter& p, std::string_view reply) {
    switch (p.kind) {
        case Kind::Number:
            return text::CStr(hexValue(reply));
        case Kind::Battery:
            return text::CStr(hexValue(reply) * 0.1);
        case Kind::Version:
            // Read as a decimal number: a letter digit ends it.
            return text::CStr(text::Val(reply) * 0.1);
        case Kind::Coded:
            for (std::size_t code = 0; code < p.codes.size(); ++code)
                if (reply == replyText(static_cast<std::uint8_t>(code))) return p.codes[code];
            return std::nullopt;
    }
    return std::nullopt;
}

Value valueOf(const Parameter& p, std::string_view text, Carrier link) {
    if (!p.writable) return {std::nullopt, "it is never written to a target"};
    if (p.kind == Kind::Coded) {
        const auto code = std::find(p.codes.begin(), p.codes.end(), text);
        if (code != p.codes.end()) return {static_cast<std::uint8_t>(code - p.codes.begin()), {}};
        // A text the list lacks: no value byte on the serial line, 0 on Wi-Fi.
        return {link == Carrier::WiFi ? std::optional<std::uint8_t>(0) : std::nullopt, {}};
    }
    if (link == Carrier::Serial || (p.index >= kGroupA && p.index <= kGroupD))
        return byteOf(text::Val(text), "it");
    if (p.index == kHitSense) return byteOf(hexValue(text), "over Wi-Fi it is read as hexadecimal, and");
    return hexadecimalAsDecimal(text);
}

Value lookupNumber(std::string_view text, Carrier link) {
    return valueOf(*byIndex(6), text, link);
}

std::optional<SerialTexts> splitSerial(std::string_view digits) {
    if (digits.empty() || digits.size() > 6) return std::nullopt;
    const std::string six = std::string(6 - digits.size(), '0') + std::string(digits);
    return SerialTexts{six.substr(0, 2), six.substr(2, 2), six.substr(4, 2)};
}

std::optional<SerialTexts> splitSerialTag(std::string_view tag) {
    if (tag.size() < 3 || tag.substr(0, 2) != "SN") return std::nullopt;
    return splitSerial(tag.substr(2));
}

std::array<std::uint8_t, 3> serialBytes(const SerialTexts& serial) {
    std::array<std::uint8_t, 3> out{};
    for (std::size_t i = 0; i < 3; ++i) {
        // A text that is no hexadecimal byte (a sign typed into the serial box) addresses as 0.
        const double v = hexValue(serial[i]);
        out[i] = v >= 0 && v <= 255 ? static_cast<std::uint8_t>(v) : 0;
    }
    return out;
}

std::string lookupFrame(std::uint8_t number) {
    return std::string{static_cast<char>(wire::kLookup), static_cast<char>(number), 0, 0, 0, 0};
}

std::string readFrame(const std::array<std::uint8_t, 3>& serial, int index) {
    return writeFrame(serial, index, wire::kReadMarker);
}

std::string writeFrame(const std::array<std::uint8_t, 3>& serial, int index,
                       std::optional<std::uint8_t> value) {
    std::string frame{static_cast<char>(wire::kParameterAccess), static_cast<char>(serial[0]),
                      static_cast<char>(serial[1]), static_cast<char>(serial[2]), static_cast<char>(index)};
    if (value) frame.push_back(static_cast<char>(*value));
    return frame;
}

std::string wifiFrame(std::string_view frame) {
    return std::string(1, '\0') + std::string(frame);
}

}  // namespace halvane::target
