// Storing a Program in the transmitter, block by block on the wire, against the simulated transmitter
// and against a peer that answers from a script, through the runner on a virtual port.

#include <gtest/gtest.h>

#include "../sim/sim_support.h"
#include "authoring/grid_setup.h"
#include "links/program_image.h"
#include "links/transmitter_download.h"
#include "links/transmitter_send.h"
#include "sim/devices.h"
#include "sim/transmitter.h"
#include "virtual_port.h"

namespace halvane {
namespace {

using Outcome = SendProgram::Outcome;
using testing::runOpen;

// A peer that answers when the console has written a given number of bytes in all ("" stays silent).
sim::testing::ScriptedDevice peer(std::vector<std::pair<std::size_t, std::string>> script) {
    auto answer = [script, received = std::size_t{0}](std::string_view bytes) mutable {
        received += bytes.size();
        std::string reply;
        for (auto& [after, text] : script)
            if (after && received >= after) {
                reply += text;
                after = 0;
            }
        return reply;
    };
    return sim::testing::ScriptedDevice({}, answer);
}

std::string imageOf(std::size_t lines) {
    std::string image;
    for (std::size_t i = 0; i < lines; ++i) image.push_back(static_cast<char>(i % 2 ? 1 + i % 200 : 0xF3));
    return image;
}

// Records of four targets changing every second from row 1 on: a delay before each row after the first.
std::vector<ImageRecord> everySecond(std::size_t records) {
    std::vector<ImageRecord> image;
    for (int row = 1; image.size() < records; ++row) {
        if (row > 1) image.push_back({image::Delay, 1, row, 0});
        for (int col = 1; col <= 4 && image.size() < records; ++col)
            image.push_back(
                {col % 2 ? image::Friend : image::Foe, static_cast<std::uint32_t>(col), row, col});
    }
    image.resize(records);
    return image;
}

// N is one byte: 255 blocks hold 65,278 values (32,639 records). Beyond that nothing may go out, and the
// operator hears by how much the Program is too long and where the first record that does not fit is.
TEST(SendProgram, AProgramBeyond255BlocksIsTooLongToSend) {
    const std::pair<std::size_t, int> counts[] = {{0, 1},   {254, 1}, {255, 2}, {256, 2},     {510, 3},
                                                  {511, 3}, {766, 3}, {767, 4}, {65278, 255}, {65280, 256}};
    for (const auto& [lines, blocks] : counts) EXPECT_EQ(SendProgram::blockCount(lines), blocks) << lines;
    EXPECT_EQ(SendProgram::command('S', 9) + SendProgram::command('S', 10) + SendProgram::command('R', 25),
              "S09\r\nS10\r\nR10\r\n");
    EXPECT_EQ(findByteProblem(everySecond(32639)), std::nullopt);
    // Record 32,640 is the delay before row 6,529 (5 records a row after the first): its place is the
    // change it leads to.
    const auto problem = findByteProblem(everySecond(32641));
    ASSERT_TRUE(problem.has_value());
    EXPECT_EQ(
        problem->message,
        "The Program is too long to send: its image has 32641 records (65282 values), which need 256 "
        "blocks, and the transmitter takes at most 255 blocks (32639 records). It is 2 records too long; "
        "the first that does not fit is at second 6528 (row 6529, column 1).");
    EXPECT_EQ(std::make_pair(problem->row, problem->col), std::make_pair(6529, 1));
    EXPECT_THROW(SendProgram(imageOf(65280), 1), std::length_error);
}

// The longest Program that fits included: every sum right, and the transmitter keeps the image.
TEST(SendProgram, BlocksCarryTheirSumsAndTheTransmitterKeepsTheImage) {
    for (std::size_t lines : {std::size_t{2}, std::size_t{254}, std::size_t{510}, std::size_t{65278}}) {
        sim::Range range(4);
        auto device = sim::makeTransmitter(range, {});
        testing::ScriptedOperator op;
        const std::string image = imageOf(lines);
        SendProgram send(image, 3);
        const std::string written = runOpen(*device, send, op);
        ASSERT_EQ(send.outcome(), Outcome::Stored) << lines;
        const int n = SendProgram::blockCount(lines);
        EXPECT_EQ(send.progress(), std::make_pair(n, n));
        EXPECT_EQ(static_cast<unsigned char>(written[6]), n);
        // The simulated transmitter checks every sum; one block byte for byte: the count, data, sum.
        if (lines == 2) {
            EXPECT_EQ(written, "S03\r\n\x02\x01\xF3\x02" + std::string(252, '\0') + std::string("\0\xF8", 2));
        }
        EXPECT_EQ(sim::asTransmitter(*device).place(3).value_or("none").substr(0, image.size()), image);
        EXPECT_TRUE(op.log.empty());
    }
}

TEST(SendProgram, AnOccupiedPlaceAsksAndNoAbandons) {
    for (Answer answer : {Answer::No, Answer::Cancel, Answer::Yes}) {
        sim::Range range(4);
        auto device = sim::makeTransmitter(range, {});
        sim::asTransmitter(*device).setPlace(5, std::string(256, '\x01'));
        const auto before = sim::asTransmitter(*device).place(5);
        testing::ScriptedOperator op;
        op.answers = {answer};
        SendProgram send(imageOf(10), 5);
        const std::string written = runOpen(*device, send, op);
        EXPECT_EQ(op.log.front(), "ask: Halvane: Over write current program in LMC?");
        EXPECT_EQ(send.outcome(), answer == Answer::Yes ? Outcome::Stored : Outcome::Declined);
        if (answer == Answer::Yes) continue;
        EXPECT_FALSE(send.tag()) << "the menu's Tag becomes False";
        EXPECT_EQ(written, "S05\r\n\xFF");
        EXPECT_EQ(sim::asTransmitter(*device).place(5), before);
    }
}

TEST(SendProgram, FailurePathsOnTheWire) {
    const std::string status1 = "1050000";
    const std::string status0 = "0050000";
    // `script`: bytes written so far -> reply; `abandon`: ends with 0xFF and the failure message.
    // clang-format off
    struct Case { const char* name; std::vector<std::pair<std::size_t, std::string>> script;
                  std::size_t lines; Outcome outcome; bool abandon; };
    const Case cases[] = {
        {"silence", {}, 10, Outcome::NoContact, false},
        {"short status", {{5, "10"}}, 10, Outcome::NoContact, false},
        {"refused block", {{5, status0}, {263, "0"}}, 300, Outcome::Refused, true},
        // A silent acknowledgement: the status reply before it decides.
        {"after a taken place: taken", {{5, status1}}, 300, Outcome::Stored, false},
        {"after a free place: refused", {{5, status0}}, 10, Outcome::Refused, true},
        {"an acknowledgement that is no digit", {{5, status0}, {263, "X"}}, 300, Outcome::Refused, true},
        {"a status that is no digit: a free place", {{5, "Z050000"}, {263, "1ok\r\n"}}, 10, Outcome::Stored,
         false},
    };
    // clang-format on
    for (const auto& c : cases) {
        auto device = peer(c.script);
        testing::ScriptedOperator op;
        op.answers = {Answer::Yes};
        SendProgram send(imageOf(c.lines), 5);
        const std::string written = runOpen(device, send, op);
        EXPECT_EQ(send.outcome(), c.outcome) << c.name;
        EXPECT_EQ(!written.empty() && written.back() == '\xFF', c.abandon) << c.name;
        const bool told =
            std::count(op.log.begin(), op.log.end(), "tell: Halvane: Sending program failed try again");
        EXPECT_EQ(told, c.abandon) << c.name;
        if (c.outcome == Outcome::NoContact) {
            EXPECT_EQ(written, "S05\r\n") << c.name;
        }
    }
}

// A reply that is in before the write that asked for it has returned must not be dropped with what
// came before that write.
TEST(DialogueRunner, AFastCarrierLosesNoReply) {
    for (const bool occupied : {false, true}) {
        for (const std::size_t lines : {std::size_t{10}, std::size_t{600}}) {
            SCOPED_TRACE(std::to_string(lines) + (occupied ? " lines, to a place in use" : " lines"));
            sim::Range range(4);
            auto device = sim::makeTransmitter(range, {});
            if (occupied) sim::asTransmitter(*device).setPlace(2, std::string(10, '\x01'));
            testing::ScriptedOperator op;
            op.answers = {Answer::Yes};
            SendProgram send(imageOf(lines), 2);
            runOpen(*device, send, op, {.fast = true});
            EXPECT_EQ(send.outcome(), SendProgram::Outcome::Stored);
            EXPECT_EQ(sim::asTransmitter(*device).place(2).value_or("").substr(0, lines), imageOf(lines));
        }
    }
    sim::Range range(2);
    auto device = sim::makeTransmitter(range, {});
    sim::asTransmitter(*device).setPlace(4, std::string("\xF3\x01\xFD\x02", 4) + std::string(300, '\0'));
    SharedState state;
    state.NumTargets = 2;
    ProgramGrid grid;
    prepareDownloadGrid(state, grid);
    DownloadProgram download(state, grid, 4);
    testing::ScriptedOperator op;
    EXPECT_EQ(runOpen(*device, download, op, {.fast = true}), "R04\r\n11");
    EXPECT_EQ(download.outcome(), DownloadProgram::Outcome::Done);
    EXPECT_EQ(grid.TextMatrix(1, 1), "Friend");
}

}  // namespace
}  // namespace halvane
