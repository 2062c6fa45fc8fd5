// The transmitter's dialogues as the console speaks them: probe, hit block, send, download, faults.

#include "sim/transmitter.h"

#include "sim/devices.h"
#include "sim_support.h"

namespace halvane::sim {
namespace {

using testing::at;
using testing::exchange;
using testing::hexOf;
using testing::run;
using testing::Step;

constexpr std::string_view kVer = "VER 3.12\r\n";

std::string withSum(std::string block) {
    unsigned sum = 0;
    for (char c : block) sum += static_cast<unsigned char>(c);
    return block + static_cast<char>(sum >> 8 & 0xFF) + static_cast<char>(sum & 0xFF);
}

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

// Feeds a block in pieces of `piece` bytes, 1 ms apart, and gives all that came back.
std::string sendInPieces(Device& tx, const std::string& block, std::size_t piece, int& ms) {
    std::string out;
    for (std::size_t i = 0; i < block.size(); i += piece)
        out += exchange(tx, block.substr(i, piece), at(++ms));
    return out;
}

TEST(Transmitter, SendThenDownloadGivesTheBlocksBack) {
    struct Case {
        std::size_t imageBytes;
        int announced;
        int place;
        std::size_t piece;
        std::vector<std::string> acks;
    };
    const Case cases[] = {
        {0, 1, 1, 258, {"101\r\n"}},
        {254, 1, 9, 258, {"109\r\n"}},
        {256, 2, 10, 1, {"1", "110\r\n"}},
        {510, 3, 2, 7, {"1", "1", "102\r\n"}},  // the console's extra, all-zero block
        {700, 3, 5, 100, {"1", "1", "105\r\n"}},
    };
    ASSERT_EQ(hexOf(consoleBlocks("", 1)[0].substr(254)), "00 00 00 03");  // the console's empty image
    for (const Case& c : cases) {
        SCOPED_TRACE(c.imageBytes);
        Range range(1);
        auto tx = makeTransmitter(range, {});
        const std::string number = (c.place < 10 ? "0" : "") + std::to_string(c.place);
        int ms = 0;
        EXPECT_EQ(sendInPieces(*tx, "S" + number + "\r\n", c.piece, ms), "0" + number + "00\r\n");
        const auto blocks = consoleBlocks(pattern(c.imageBytes), c.announced);
        for (std::size_t b = 0; b < blocks.size(); ++b)
            EXPECT_EQ(sendInPieces(*tx, blocks[b], c.piece, ms), c.acks[b]);

        const std::string status = "1" + number + "0" + std::to_string(c.announced) + "\r\n";
        EXPECT_EQ(exchange(*tx, "S" + number + "\r\n", at(++ms)), status);  // now taken
        EXPECT_EQ(exchange(*tx, "\xFF", at(++ms)), "");
        EXPECT_EQ(exchange(*tx, "R" + number + "\r\n", at(++ms)), status + blocks[0]);
        for (std::size_t b = 1; b < blocks.size(); ++b) EXPECT_EQ(exchange(*tx, "1", at(++ms)), blocks[b]);
        EXPECT_EQ(exchange(*tx, "1", at(++ms)), "");  // closing
        EXPECT_EQ(exchange(*tx, "?\r\n", at(++ms)), kVer);
    }
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
                 {0,
                  "\xFF"
                  "1?\r\n",
                  std::string(kVer)},  // stray bytes before a command
                 {10, "X\r\nS00\r\nS11\r\nR1\r\n", ""},
                 {20, "H\r\n", range.hitBlock()},
                 {30, "S03\r\n", "10302\r\n"},
                 {40, "\xFF", ""},  // No to the question
                 {50, "S03\r\n", "10302\r\n"},
                 {60000, good[0], "103\r\n"},  // Yes, after a minute's thought
                 {60010, "S01\r\n", "00100\r\n"},
                 {60020, bad, "001\r\n"},
                 {60030, "\xFF", ""},
                 {60040, "R01\r\n", "0"},
                 {60050, "R03\r\n", "10301\r\n" + good[0]},
                 {60060, "?\r\n", std::string(kVer)},  // leaves the download
                 {60070, "1", ""},
                 {60080, "S02\r\n", "00200\r\n"},
                 {60090, good[0].substr(0, 100), ""},
                 {62090, "?\r\n", std::string(kVer)},  // the half block was given up after two seconds
             });
    EXPECT_EQ(t.place(3), pattern(20) + std::string(234, '\0'));
    EXPECT_FALSE(t.place(1));
    EXPECT_FALSE(t.place(2));
    EXPECT_THROW(t.setPlace(11, ""), std::out_of_range);
}

TEST(Transmitter, RefusesTheBlockItIsToldTo) {
    struct Case {
        int refuse;
        std::size_t imageBytes;
        int announced;
        std::vector<std::string> acks;
    };
    const Case cases[] = {
        {1, 0, 1, {"001\r\n"}},
        {2, 510, 3, {"1", "0"}},
        {3, 510, 3, {"1", "1", "001\r\n"}},
        {4, 510, 3, {"1", "1", "101\r\n"}},
    };
    for (const Case& c : cases) {
        Range range(1);
        Faults faults;
        faults.refuseBlock = c.refuse;
        auto tx = makeTransmitter(range, faults);
        exchange(*tx, "S01\r\n", at(0));
        const auto blocks = consoleBlocks(pattern(c.imageBytes), c.announced);
        for (std::size_t b = 0; b < c.acks.size(); ++b) {
            EXPECT_EQ(exchange(*tx, blocks[b], at(10 + static_cast<int>(b))), c.acks[b]) << c.refuse;
        }
        EXPECT_EQ(asTransmitter(*tx).place(1).has_value(), c.refuse > c.announced) << c.refuse;
    }
}

TEST(Transmitter, FaultsBendItsReplies) {
    Range range(1);
    Faults wrongSum, late, split, silent;
    wrongSum.wrongSum = true;
    late.lateBy = std::chrono::milliseconds(300);
    split.splitReplies = true;
    silent.silent = true;

    auto tx = makeTransmitter(range, wrongSum);
    asTransmitter(*tx).setPlace(1, "\x01\x02");
    const std::string download = exchange(*tx, "R01\r\n", at(0));
    ASSERT_EQ(download.size(), 7u + 258u);
    EXPECT_EQ(hexOf(download.substr(download.size() - 2)), "00 07");  // 02 01 01 02 is 6

    tx = makeTransmitter(range, late);
    tx->receive("?\r\n", at(0));
    EXPECT_EQ(tx->nextDue(), at(300));
    EXPECT_TRUE(tx->takeDue(at(299)).empty());
    EXPECT_EQ(tx->takeDue(at(300)), std::vector<std::string>{std::string(kVer)});

    tx = makeTransmitter(range, split);
    tx->receive("?\r\n", at(0));
    EXPECT_EQ(tx->takeDue(at(49)), std::vector<std::string>{"VER 3"});
    EXPECT_EQ(tx->takeDue(at(50)), std::vector<std::string>{".12\r\n"});

    tx = makeTransmitter(range, silent);
    EXPECT_EQ(exchange(*tx, "?\r\nS01\r\n", at(0)), "");
    EXPECT_EQ(exchange(*tx, consoleBlocks("", 1)[0], at(10)), "");
    EXPECT_FALSE(tx->nextDue());
    EXPECT_TRUE(asTransmitter(*tx).place(1));  // it heard everything
}

}  // namespace
}  // namespace halvane::sim
