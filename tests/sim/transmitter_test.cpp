// The transmitter's dialogues as the console speaks them: probe, hit block, send, download, faults.
// Whole Programs of many blocks sent and downloaded against it are the dialogue tests' to show.

#include "sim/transmitter.h"

#include "sim/devices.h"
#include "sim_support.h"

namespace halvane::sim {
namespace {

using namespace testing;

const std::string kVer = "VER 3.12\r\n";

// The blocks the console sends for an image when it announces `n` blocks.
std::vector<std::string> consoleBlocks(std::string image, int n) {
    image.resize(254 + 256 * static_cast<std::size_t>(n - 1), '\0');
    std::vector<std::string> blocks{
        withSum(std::string{'\x02', static_cast<char>(n)} + image.substr(0, 254))};
    for (int b = 2; b <= n; ++b)
        blocks.push_back(withSum(image.substr(254 + 256 * static_cast<std::size_t>(b - 2), 256)));
    return blocks;
}

std::string pattern(std::size_t size) {
    std::string image;
    for (std::size_t i = 0; i < size; ++i) image.push_back(static_cast<char>(i * 37 + 11));
    return image;
}

TEST(Transmitter, CommandsProbeAndWaysOutOfADialogue) {
    Range range(3);
    range.addHit(2);
    auto tx = makeTransmitter(range, {});
    Transmitter& t = asTransmitter(*tx);
    t.setPlace(3, pattern(300));
    const auto good = consoleBlocks(pattern(20), 1);
    std::string bad = good[0];
    bad.back() = static_cast<char>(bad.back() + 1);

    run(*tx, {
                 {0, "\3771?\r\n", kVer},  // stray bytes (FF, "1") before a command
                 {10, "X\r\nS00\r\nS11\r\nR1\r\n", ""},
                 {20, "H\r\n", range.hitBlock()},
                 {30, "S03\r\n", "10302\r\n"},
                 {40, "\xFF", ""},  // No to the question
                 {50, "S03\r\n", "10302\r\n"},
                 {60000, good[0], "103\r\n"},  // Yes, after a minute's thought
                 {60010, "S01\r\n", "00100\r\n"},
                 {60020, bad, "001\r\n"},
                 {60040, "R01\r\n", "0"},
                 {60050, "R03\r\n", "10301\r\n" + good[0]},
                 {60060, "?\r\n", kVer},  // leaves the download
                 {60070, "1", ""},
                 {60080, "S02\r\n", "00200\r\n"},
                 {60090, good[0].substr(0, 100), ""},
                 {62090, "?\r\n", kVer},  // the half block was given up after two seconds
             });
    EXPECT_EQ(t.place(3), pattern(20) + std::string(234, '\0'));
    EXPECT_FALSE(t.place(1));
    EXPECT_FALSE(t.place(2));
    EXPECT_THROW(t.setPlace(11, ""), std::out_of_range);
}

TEST(Transmitter, RefusesTheBlockItIsToldTo) {
    const std::pair<int, std::vector<std::string>> cases[] = {
        {2, {"1", "0"}}, {3, {"1", "1", "001\r\n"}}, {4, {"1", "1", "101\r\n"}}};
    const auto blocks = consoleBlocks(pattern(510), 3);
    for (const auto& [refuse, acks] : cases) {
        Range range(1);
        auto tx = makeTransmitter(range, {.refuseBlock = refuse});
        exchange(*tx, "S01\r\n", at(0));
        for (std::size_t b = 0; b < acks.size(); ++b)
            EXPECT_EQ(exchange(*tx, blocks[b], at(10 + static_cast<int>(b))), acks[b]) << refuse;
        EXPECT_EQ(asTransmitter(*tx).place(1).has_value(), refuse == 4) << refuse;
    }
}

// Late and split replies are the reply queue's, shown on the Wi-Fi bridge and the radio modem.
TEST(Transmitter, WrongSumIsOffByOneAndASilentOneStillHearsEverything) {
    Range range(1);
    auto tx = makeTransmitter(range, {.wrongSum = true});
    asTransmitter(*tx).setPlace(1, "\x01\x02");
    EXPECT_EQ(hexOf(exchange(*tx, "R01\r\n", at(0)).substr(7 + 256)), "00 07");  // 02 01 01 02 is 6

    tx = makeTransmitter(range, {.silent = true});
    tx->receive("?\r\nS01\r\n", at(0));
    tx->receive(consoleBlocks("", 1)[0], at(10));
    EXPECT_FALSE(tx->nextDue());  // nothing to say, ever
    EXPECT_TRUE(asTransmitter(*tx).place(1));
}

}  // namespace
}  // namespace halvane::sim
