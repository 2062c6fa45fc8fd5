// The range's command frames, byte for byte on each carrier, and which carriers the settings choose.

#include "links/command_frames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "text/fault.h"

namespace halvane {
namespace {

using wire::Action;

// Frames as "S F3 C8 | W 00 F3 C8"; a text line as S 'SETPA0<CR>'.
std::string show(const std::optional<Frame>& f) {
    if (!f) return "-";
    std::string out = f->carrier == Carrier::Serial ? "S " : "W ";
    // Text frames start with a printable character; binary ones with a zero or a command byte.
    if (const char first = f->bytes.at(0); first >= ' ' && first <= '~') {
        out += "'";
        for (char c : f->bytes) out += c == '\r' ? std::string("<CR>") : std::string(1, c);
        return out + "'";
    }
    for (unsigned char b : f->bytes) out += {"0123456789ABCDEF"[b >> 4], "0123456789ABCDEF"[b & 15], ' '};
    out.pop_back();
    return out;
}
std::string show(const std::vector<Frame>& frames) {
    std::string out;
    for (const Frame& f : frames) out += (out.empty() ? "" : " | ") + show(f);
    return out;
}

// "U", "V", "W" for RadioUSB, TypeVMR4000, RadioWiFi; in lower case, with the serial port closed.
Carriers carriers(std::string_view set) {
    const auto has = [set](const char* either) { return set.find_first_of(either) != set.npos; };
    return {has("Uu"), has("Vv"), has("Ww")};
}

TEST(CommandFrames, OneTargetOnEachCarrierInTheOrderSerialLineControllerSocket) {
    // clang-format off
    struct Case { Action action; int target; const char* carriers; const char* frames; };
    const Case cases[] = {
        {Action::Friend, 1, "U", "S F3 01"},          {Action::Foe, 5, "U", "S F2 05"},
        {Action::Edge, 7, "U", "S F1 07"},            {Action::Down, 200, "U", "S F0 C8"},
        {Action::Friend, 1, "V", "S 'SETPA0<CR>'"},   {Action::Foe, 5, "V", "S 'SETPA4<CR>'"},
        {Action::Friend, 5, "V", "S 'SETPA4<CR>'"},   {Action::Edge, 8, "V", "S 'RESPA7<CR>'"},
        {Action::Down, 9, "V", "S 'RESPB0<CR>'"},     {Action::Foe, 16, "V", "S 'SETPB7<CR>'"},
        {Action::Friend, 17, "V", "S 'SETPC0<CR>'"},  {Action::Down, 24, "V", "S 'RESPC7<CR>'"},
        {Action::Foe, 25, "V", "S 'SETPD0<CR>'"},     {Action::Edge, 32, "V", "S 'RESPD7<CR>'"},
        {Action::Edge, 33, "V", ""},                  {Action::Friend, 200, "W", "W 00 F3 C8"},
        {Action::Edge, 100, "w", "W 00 F1 64"},       {Action::Down, 4, "uvw", "W 00 F0 04"},
        {Action::Friend, 1, "uv", ""},                {Action::Friend, 1, "", ""},
        {Action::Foe, 3, "WVU", "S F2 03 | S 'SETPA2<CR>' | W 00 F2 03"},
        {Action::Friend, 33, "UVW", "S F3 21 | W 00 F3 21"},
    };
    // clang-format on
    for (const Case& c : cases) {
        const bool open = std::string_view(c.carriers).find_first_of("uvw") == std::string_view::npos;
        EXPECT_EQ(show(targetActionFrames(c.action, c.target, carriers(c.carriers), open)), c.frames)
            << wire::wordOfAction(c.action) << " to " << c.target << " on " << c.carriers;
    }
}

TEST(CommandFrames, ATargetOutsideOneTo200IsAFaultNamingIt) {
    for (int target : {0, -1, 201, 231}) {
        const std::string name = "Target " + std::to_string(target) + " ";
        for (const char* set : {"UVW", ""})
            EXPECT_THAT([&] { targetActionFrames(Action::Friend, target, carriers(set)); },
                        testing::ThrowsMessage<Fault>(testing::StartsWith(name)));
        EXPECT_THROW(hitScoreQueryFrame(target, carriers("U")), Fault) << name;
    }
}

TEST(CommandFrames, AllTargetsGoToAddressAllOrToEveryBankInOrder) {
    const std::string on =
        "S 'SPA11111111<CR>' | S 'SPB11111111<CR>' | S 'SPC11111111<CR>' | S 'SPD11111111<CR>'";
    const std::string off =
        "S 'SPA00000000<CR>' | S 'SPB00000000<CR>' | S 'SPC00000000<CR>' | S 'SPD00000000<CR>'";
    EXPECT_EQ(show(allTargetsActionFrames(Action::Friend, carriers("U"))), "S F3 E7");
    EXPECT_EQ(show(allTargetsActionFrames(Action::Foe, carriers("W"))), "W 00 F2 E7");
    EXPECT_EQ(show(allTargetsActionFrames(Action::Friend, carriers("V"))), on);
    EXPECT_EQ(show(allTargetsActionFrames(Action::Foe, carriers("V"))), on);
    EXPECT_EQ(show(allTargetsActionFrames(Action::Edge, carriers("V"))), off);
    EXPECT_EQ(show(allTargetsActionFrames(Action::Down, carriers("UVW"))),
              "S F0 E7 | " + off + " | W 00 F0 E7");
    EXPECT_EQ(show(allTargetsActionFrames(Action::Friend, carriers(""))), "");
}

TEST(CommandFrames, LineControllerOpeningLaysEveryBankDownAndConfiguresIt) {
    std::vector<std::string> frames = {"SPA00000000\r", "CPA00000000\r", "SPB00000000\r", "CPB00000000\r",
                                       "SPC00000000\r", "CPC00000000\r", "SPD00000000\r", "CPD0\r"};
    EXPECT_EQ(lineControllerOpening(false), frames);
    frames.insert(frames.begin(), " \r");
    EXPECT_EQ(lineControllerOpening(true), frames);
}

TEST(CommandFrames, HitScoresGoOnTheSerialLineElseTheSocketAndNeverAsText) {
    // Carriers, then the query to 7, the query to 200 and the clear.
    // clang-format off
    const std::pair<const char*, const char*> cases[] = {
        {"U", "S FA 07 / S FA C8 / S FA E7"},         {"UVW", "S FA 07 / S FA C8 / S FA E7"},
        {"W", "W 00 FA 07 / W 00 FA C8 / W 00 FB E7"}, {"VW", "W 00 FA 07 / W 00 FA C8 / W 00 FB E7"},
        {"V", "- / - / -"},                           {"", "- / - / -"},
    };
    // clang-format on
    for (const auto& [set, frames] : cases) {
        EXPECT_EQ(show(hitScoreQueryFrame(7, carriers(set))) + " / " +
                      show(hitScoreQueryFrame(200, carriers(set))) + " / " +
                      show(clearHitScoresFrame(carriers(set))),
                  frames)
            << set;
    }
}

}  // namespace
}  // namespace halvane
