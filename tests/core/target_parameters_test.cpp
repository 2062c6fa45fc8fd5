// A target's parameter block: every code of every coded parameter both ways, the box texts replies
// give, the value bytes box texts give on each link, the serial number and the frames.

#include <gtest/gtest.h>

#include "fake_links.h"
#include "links/target_parameters.h"

namespace halvane::testing {
namespace {

using namespace target;

const Parameter& p(int index) {
    return *byIndex(index);
}

std::string shown(std::optional<std::uint8_t> byte) {
    return byte ? std::to_string(*byte) : "none";
}

TEST(TargetParameters, TheBlockIsReadInItsOrderAndTheHitModeListIsNotInCodeOrder) {
    std::string order;
    for (const Parameter& q : readOrder()) order += std::to_string(q.index) + (q.writable ? " " : "r ");
    EXPECT_EQ(order, "1 2 3 4 5 6 7 11 12 13 14 9 10r 16r ");
    EXPECT_EQ(p(2).list, (std::vector<std::string>{"Off", "Die", "Bob"}));
    EXPECT_EQ(p(6).list.size(), 201u);
    EXPECT_EQ(byIndex(8), nullptr);
}

TEST(TargetParameters, EveryCodeReadsAsItsTextAndEveryTextWritesAsItsCodeOnBothLinks) {
    const struct {
        int index;
        std::vector<std::string> texts;  // by code
    } coded[] = {{2, {"Off", "Bob", "Die"}},
                 {4, {"Normal", "Reverse", "No Edge"}},
                 {5, {"Down", "Edge", "Foe", "Friend"}},
                 {7, {"High", "Low"}},
                 {9, {"None", "PortA", "PortB", "Both"}}};
    for (const auto& c : coded) {
        for (std::size_t code = 0; code < c.texts.size(); ++code) {
            const auto byte = static_cast<std::uint8_t>(code);
            EXPECT_EQ(boxText(p(c.index), replyText(byte)), c.texts[code]) << c.index;
            for (const Carrier link : {Carrier::Serial, Carrier::WiFi})
                EXPECT_EQ(valueOf(p(c.index), c.texts[code], link).byte, byte) << c.index << c.texts[code];
        }
        // A byte past the codes, or no reply at all, leaves the box as it stands.
        EXPECT_EQ(boxText(p(c.index), replyText(static_cast<std::uint8_t>(c.texts.size()))), std::nullopt);
        EXPECT_EQ(boxText(p(c.index), ""), std::nullopt);
        // A text the list lacks: no value byte on the serial line, 0 on Wi-Fi.
        EXPECT_EQ(shown(valueOf(p(c.index), "", Carrier::Serial).byte), "none");
        EXPECT_EQ(shown(valueOf(p(c.index), "die", Carrier::WiFi).byte), "0");
    }
}

TEST(TargetParameters, RepliesBecomeNumbersVoltsAndVersionsAsTheirBoxesShowThem) {
    const struct {
        int index;
        const char* reply;
        const char* text;
    } cases[] = {
        {1, "0C", "12"},    {3, "FF", "255"},  {6, "00", "0"},  {11, "14", "20"},  {14, "", "0"},
        {10, "7D", "12.5"}, {10, "01", "0.1"}, {10, "", "0"},   {16, "12", "1.2"}, {16, "20", "2"},
        {16, "05", "0.5"},  {16, "1A", "0.1"}, {16, "A1", "0"}, {16, "", "0"},
    };
    for (const auto& c : cases) EXPECT_EQ(boxText(p(c.index), c.reply), c.text) << c.index << " " << c.reply;
    EXPECT_EQ(replyText(0x0C), "0C");
}

TEST(TargetParameters, BoxTextsBecomeValueBytesByTheRulesOfEachLink) {
    const struct {
        int index;
        const char* text;
        const char* serial;  // the byte, "none", or "error"
        const char* wifi;
    } cases[] = {
        {1, "12", "12", "18"},       // Hit Sense: hexadecimal over Wi-Fi
        {1, "9", "9", "9"},          //
        {1, "", "0", "0"},           // empty is 0 on either link
        {1, "100", "100", "error"},  // 0x100 is no byte
        {3, "16", "16", "10"},       // Hit Count: the hexadecimal text read as decimal
        {3, "20", "20", "14"},       //
        {3, "10", "10", "error"},    // "A"
        {6, "256", "error", "100"},  // Target Number
        {6, "150", "150", "96"},     //
        {6, "200", "200", "error"},  // "C8"
        {6, "12ab", "12", "error"},  // the number prefix; 12 is "C" in hexadecimal
        {11, "20", "20", "20"},      // groups are the number on both links
        {14, "255.5", "error", "error"},
        {12, "-1", "error", "error"},
        {10, "12.5", "error", "error"},  // read only
    };
    for (const auto& c : cases) {
        for (const Carrier link : {Carrier::Serial, Carrier::WiFi}) {
            const Value v = valueOf(p(c.index), c.text, link);
            const std::string got = v.error.empty() ? shown(v.byte) : "error";
            EXPECT_EQ(got, link == Carrier::Serial ? c.serial : c.wifi)
                << c.index << " \"" << c.text << "\" " << (link == Carrier::Serial ? "serial" : "wifi");
        }
    }
    EXPECT_EQ(valueOf(p(3), "10", Carrier::WiFi).error,
              "over Wi-Fi it goes as its hexadecimal \"A\", which is no number");
    EXPECT_EQ(shown(lookupNumber("16", Carrier::WiFi).byte), "10");
}

TEST(TargetParameters, TheSerialEntrySplitsByLengthAndTheFramesCarryItsBytes) {
    const struct {
        const char* tag;
        const char* texts;  // joined by '|', "" when the entry is ignored
    } cases[] = {{"SN5", "00|00|05"},
                 {"SN12", "00|00|12"},
                 {"SN123", "00|01|23"},
                 {"SN1234", "00|12|34"},
                 {"SN12345", "01|23|45"},
                 {"SN123456", "12|34|56"},
                 {"SN1234567", ""},
                 {"SN", ""},
                 {"TN12", ""}};
    for (const auto& c : cases) {
        const auto split = splitSerialTag(c.tag);
        EXPECT_EQ(split ? (*split)[0] + "|" + (*split)[1] + "|" + (*split)[2] : "", c.texts) << c.tag;
    }
    const auto serial = serialBytes({"12", "34", "56"});
    EXPECT_EQ(hexBytes(readFrame(serial, 6)), "F6 12 34 56 06 ED");
    EXPECT_EQ(hexBytes(writeFrame(serial, 2, 2)), "F6 12 34 56 02 02");
    EXPECT_EQ(hexBytes(writeFrame(serial, 2, std::nullopt)), "F6 12 34 56 02");
    EXPECT_EQ(hexBytes(wifiFrame(lookupFrame(10))), "00 F4 0A 00 00 00 00");
}

}  // namespace
}  // namespace halvane::testing
