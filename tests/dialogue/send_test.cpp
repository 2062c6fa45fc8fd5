// Storing a Program in the transmitter, block by block on the wire, against the simulated transmitter
// and against a peer that answers from a script.

#include <gtest/gtest.h>

#include "links/program_image.h"
#include "links/transmitter_send.h"
#include "sim/devices.h"
#include "sim/transmitter.h"
#include "virtual_line.h"

namespace halvane {
namespace {

using Outcome = SendProgram::Outcome;

// A peer that answers when the console has written a given number of bytes in all ("" stays silent).
class ScriptedPeer : public sim::Device {
  public:
    explicit ScriptedPeer(std::vector<std::pair<std::size_t, std::string>> script)
        : m_script(std::move(script)) {}
    std::string name() const override { return "peer"; }
    void receive(std::string_view bytes, sim::TimePoint now) override {
        m_received += bytes.size();
        for (auto& [after, reply] : m_script)
            if (after && m_received >= after) {
                if (!reply.empty()) m_due.push_back({now, reply});
                after = 0;
            }
    }
    std::vector<std::string> takeDue(sim::TimePoint) override {
        std::vector<std::string> out;
        for (auto& d : m_due) out.push_back(d.second);
        m_due.clear();
        return out;
    }
    std::optional<sim::TimePoint> nextDue() const override {
        if (m_due.empty()) return std::nullopt;
        return m_due.front().first;
    }

  private:
    std::vector<std::pair<std::size_t, std::string>> m_script;
    std::vector<std::pair<sim::TimePoint, std::string>> m_due;
    std::size_t m_received = 0;
};

std::string imageOf(std::size_t lines) {
    std::string image;
    for (std::size_t i = 0; i < lines; ++i) image.push_back(static_cast<char>(i % 2 ? 1 + i % 200 : 0xF3));
    return image;
}

TEST(SendProgram, BlockCountAndCommandDigits) {
    const std::pair<std::size_t, int> counts[] = {{0, 1},   {254, 1}, {255, 2}, {256, 2},
                                                  {510, 3}, {511, 3}, {766, 3}, {767, 4}};
    for (const auto& [lines, blocks] : counts) EXPECT_EQ(SendProgram::blockCount(lines), blocks) << lines;
    EXPECT_EQ(SendProgram::command('S', 9), "S09\r\n");
    EXPECT_EQ(SendProgram::command('S', 10), "S10\r\n");
    EXPECT_EQ(SendProgram::command('R', 25), "R10\r\n");
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
    EXPECT_EQ(SendProgram::blockCount(65278), 255);
    EXPECT_EQ(SendProgram::blockCount(65280), 256);
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

    // The longest Program that fits is stored whole, every sum right.
    sim::Range range(4);
    auto device = sim::makeTransmitter(range, {});
    testing::ScriptedOperator op;
    SendProgram send(imageOf(65278), 1);
    testing::VirtualLine line(send, *device, op);
    line.run();
    EXPECT_EQ(send.outcome(), Outcome::Stored);
    EXPECT_EQ(line.written().substr(5, 2), "\x02\xFF");
    EXPECT_EQ(sim::asTransmitter(*device).place(1), imageOf(65278));
}

TEST(SendProgram, BlocksCarryTheirSumsAndTheTransmitterKeepsTheImage) {
    for (std::size_t lines : {std::size_t{2}, std::size_t{254}, std::size_t{256}, std::size_t{510}}) {
        sim::Range range(4);
        auto device = sim::makeTransmitter(range, {});
        testing::ScriptedOperator op;
        const std::string image = imageOf(lines);
        SendProgram send(image, 3);
        testing::VirtualLine line(send, *device, op);
        line.run();
        ASSERT_EQ(send.outcome(), Outcome::Stored) << lines;
        const int n = SendProgram::blockCount(lines);
        EXPECT_EQ(send.progress(), std::make_pair(n, n));
        // The simulated transmitter checks every sum; one block byte for byte: the count, data, sum.
        if (lines == 2) {
            EXPECT_EQ(line.written(),
                      "S03\r\n\x02\x01\xF3\x02" + std::string(252, '\0') + std::string("\0\xF8", 2));
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
        testing::VirtualLine line(send, *device, op);
        line.run();
        EXPECT_EQ(op.log.front(), "ask: Halvane: Over write current program in LMC?");
        if (answer == Answer::Yes) {
            EXPECT_EQ(send.outcome(), Outcome::Stored);
        } else {
            EXPECT_EQ(send.outcome(), Outcome::Declined);
            EXPECT_FALSE(send.tag()) << "the menu's Tag becomes False";
            EXPECT_EQ(line.written(), "S05\r\n\xFF");
            EXPECT_EQ(sim::asTransmitter(*device).place(5), before);
        }
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
        ScriptedPeer peer(c.script);
        testing::ScriptedOperator op;
        op.answers = {Answer::Yes};
        SendProgram send(imageOf(c.lines), 5);
        testing::VirtualLine line(send, peer, op);
        line.run();
        EXPECT_EQ(send.outcome(), c.outcome) << c.name;
        EXPECT_EQ(!line.written().empty() && line.written().back() == '\xFF',
                  c.abandon || c.outcome == Outcome::Declined)
            << c.name;
        const bool told =
            std::count(op.log.begin(), op.log.end(), "tell: Halvane: Sending program failed try again");
        EXPECT_EQ(told, c.abandon) << c.name;
        if (c.outcome == Outcome::NoContact) {
            EXPECT_EQ(line.written(), "S05\r\n") << c.name;
        }
    }
}

}  // namespace
}  // namespace halvane
