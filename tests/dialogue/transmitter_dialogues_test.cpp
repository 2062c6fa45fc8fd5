// The transmitter's dialogues against the simulated transmitter and against a peer that answers from a
// script, through the runner on a virtual port and a virtual clock: storing a Program block by block,
// and downloading one with the grid the records of its blocks rebuild.

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

using namespace std::chrono_literals;
using sim::testing::hex;
using sim::testing::withSum;
const TimePoint t0 = sim::testing::at(0);

// The image of whole blocks, each block's records ("F3 01 FD 02") zero-filled to its size.
std::string image(const std::vector<std::string>& blocks) {
    std::string out;
    for (std::size_t b = 0; b < blocks.size(); ++b) {
        out += hex(blocks[b]);
        out.resize(254 + 256 * b, '\0');
    }
    return out;
}

// The grid as "label|cell|cell" rows, heading row included; every data cell must look as its word does.
std::vector<std::string> rowsOf(const ProgramGrid& grid) {
    std::vector<std::string> rows;
    for (int r = 0; r < grid.Rows(); ++r) {
        std::string row = grid.TextMatrix(r, 0);
        for (int c = 1; c < grid.Cols(); ++c) {
            const std::string& text = grid.TextMatrix(r, c);
            row += "|" + text;
            if (r == 0) continue;
            EXPECT_EQ(grid.cellBackColor(r, c), wordColor(text, colors::Window)) << r << "," << c;
            const bool pauseLook = grid.cellForeColor(r, c) == colors::PauseText &&
                                   grid.cellAlignment(r, c) == align::CenterCenter && grid.MergeRow(r);
            EXPECT_TRUE(text != words::Pause || pauseLook) << r << "," << c;
        }
        rows.push_back(row);
    }
    return rows;
}

SharedState range(int columns, bool groups = false) {
    SharedState state;
    state.NumTargets = state.NumGroups = static_cast<std::int16_t>(columns);
    state.UseGroups = groups;
    return state;
}

// The transmitter with one reply of a download spoiled: its sum broken, or never sent.
class SpoiledReply : public sim::Device {
  public:
    SpoiledReply(sim::Device& inner, int reply, bool withheld)
        : m_inner(inner), m_reply(reply), m_withheld(withheld) {}
    std::string name() const override { return m_inner.name(); }
    void receive(std::string_view bytes, TimePoint now) override { m_inner.receive(bytes, now); }
    std::optional<TimePoint> nextDue() const override { return m_inner.nextDue(); }
    std::vector<std::string> takeDue(TimePoint now) override {
        std::vector<std::string> out;
        for (auto& chunk : m_inner.takeDue(now)) {
            if (++m_seen == m_reply && m_withheld) continue;
            if (m_seen == m_reply) chunk.back() ^= 1;
            out.push_back(std::move(chunk));
        }
        return out;
    }

  private:
    sim::Device& m_inner;
    int m_reply;
    bool m_withheld;
    int m_seen = 0;
};

TEST(DownloadProgram, AgainstTheTransmitter) {
    using enum DownloadProgram::Outcome;
    // clang-format off
    // `place`: each block's records, none for an empty place; `spoiled`: the reply whose sum is broken,
    // from 1, negative when withheld; `rows`: heading row first, none for a grid too long to list.
    struct Case { const char* name; std::optional<std::vector<std::string>> place; sim::Faults faults;
                  int spoiled; std::string written; DownloadProgram::Outcome outcome; std::string told;
                  int numSeconds; std::vector<std::string> rows; SharedState state = range(2); int program = 3; };
    const std::string two = "Seconds|Target # 1|Target # 2", one = "Seconds|Target # 1";
    const std::vector<std::string> four = {"F3 01 F2 02 FD 02", "F0 01 FD 01", "F3 02", ""};
    const std::vector<std::string> whole = {two, "0|Friend|Foe", "1|Friend|Foe", "2|Down|Foe", "4||Friend"};
    const std::vector<std::string> cleared = {two, "0||", "1||"};
    std::string delays;
    for (int i = 0; i < 255; ++i) delays += "FD FF ";
    const std::string full =
        "Block 2: The Program on the transmitter is longer than 32765 seconds, the most a "
        "Program can have. The rest of the Program was left out.";
    const Case cases[] = {
        {"four blocks, the last all zeros: actions hold down their column; later blocks label one higher",
         four, {}, 0, "R03\r\n1111", Done, "", 3, whole},
        {"late by 999 ms", four, {.lateBy = 999ms}, 0, "R03\r\n1111", Done, "", 3, whole},
        {"program 12 asks for place 10; all in row 1", {{"F3 01"}}, {}, 0, "R10\r\n1", Done, "", 0,
         {two, "0|Friend|", "1||"}, range(2), 12},
        {"bad sum in block 2", four, {}, 2, "R03\r\n1111", Done, "", 2,
         {two, "0|Friend|Foe", "1||Foe", "2||Friend"}},
        {"block 3 never comes", four, {}, -3, "R03\r\n1111", Done, "", 3,
         {two, "0|Friend|Foe", "1|Friend|", "2|Down|", "4||"}},
        {"a Pause lands a row lower and adds two rows; its column is held down to it, no hold crosses it",
         {{"FE 01 FD 01 F2 02 FD 02 FE 02 FD 01 F3 01"}}, {}, 0, "R03\r\n1", Done, "", 8,
         {two, "0||", "1|Pause|Pause", "2||", "3||Foe", "4||Foe", "5||", "6|Pause|Pause", "7||",
          "8|Friend|"}},
        {"more Pauses than columns add target columns, in groups mode too", {{"FE 01 FD 01 FE 02"}}, {}, 0,
         "R03\r\n1", Done, "", 5,
         {"Seconds|Groups # 1|Target # 2", "0||", "1|Pause|", "2||", "3||", "4|Pause|Pause", "5||"},
         range(1, true)},
        {"unknown codes add columns and hold, then do nothing", {{"F3 01 FD 02 77 01 A0 03"}}, {}, 0,
         "R03\r\n1", Done, "", 2, {one + "|Target # 2|Target # 3", "0|Friend||", "1|Friend||", "2|||"},
         range(1)},
        {"operand 0 ends the block, except for a Pause", {{"FE 00 F3 01 F2 00 F0 01"}}, {}, 0, "R03\r\n1",
         Done, "", 2, {one, "0|", "1|Pause", "2|Friend"}, range(1)},
        {"later blocks go on from their row; their delays label one higher, their Pauses not",
         {{"F3 01 FD 01", "FD 01 FE 01 FD 01 F0 01"}}, {}, 0, "R03\r\n11", Done, "", 5,
         {one, "0|Friend", "1|Friend", "3|", "3|Pause", "4|", "6|Down"}, range(1)},
        {"a column beyond the grid leaves the rest of its block",
         {{"F3 01 F3 C9 F2 01", "FD 01 F2 01 F3 03 FD 01 F2 02", "F0 02"}}, {}, 0, "R03\r\n111", Done,
         "Block 1 of the Program names column 201, which the grid does not have; the rest of that block was "
         "left out.\nBlock 2 of the Program names column 3, which the grid does not have; the rest of that "
         "block was left out.", 1, {two, "0|Friend|", "2|Foe|Down"}},
        // The blocks after it are asked for and dropped, and the closing "1" ends the transmitter's side.
        {"the grid is full in the last block", {{delays.substr(0, 762), delays.substr(762)}}, {}, 0,
         "R03\r\n11", Done, full, 32765, {}},
        {"the grid is full before the last block", {{delays.substr(0, 762), delays.substr(762), "F3 01"}}, {},
         0, "R03\r\n111", Done, full, 32765, {}},
        {"empty place", std::nullopt, {}, 0, "R03\r\n", NoProgram, "No program to download", 1, cleared},
        {"silence", four, {.silent = true}, 0, "R03\r\n", Failed, "", 1, cleared},
        {"late by 1000 ms", four, {.lateBy = 1000ms}, 0, "R03\r\n", Failed, "", 1, cleared},
        {"one budget for the whole first reply", four, {.lateBy = 960ms, .splitReplies = true}, 0, "R03\r\n",
         Failed, "", 1, cleared},
        {"bad sum in the first block", four, {.wrongSum = true}, 0, "R03\r\n", Failed, "", 1, cleared},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        sim::Range simRange(2);
        auto tx = sim::makeTransmitter(simRange, c.faults);
        if (c.place) sim::asTransmitter(*tx).setPlace(std::min(c.program, 10), image(*c.place));
        SpoiledReply device(*tx, std::abs(c.spoiled), c.spoiled < 0);
        SharedState state = c.state;
        ProgramGrid grid;
        prepareDownloadGrid(state, grid);
        DownloadProgram download(state, grid, c.program);
        testing::ScriptedOperator op;
        const std::string written = testing::runOpen(device, download, op);
        const auto told =
            c.told.empty() ? std::vector<std::string>{} : std::vector{"tell: Halvane: " + c.told};
        EXPECT_EQ(std::tie(written, op.log), std::tie(c.written, told));
        EXPECT_EQ(std::make_tuple(download.outcome(), download.tag(), int{state.NumSeconds}),
                  std::make_tuple(c.outcome, c.outcome != Failed, c.numSeconds));
        if (c.rows.empty()) continue;  // too long to list
        EXPECT_EQ(rowsOf(grid), c.rows);
    }
}

// What the line sees that the transmitter cannot show: input dropped before every request, and no
// byte taken beyond the reply awaited.
TEST(DownloadProgram, TakesOnlyItsReplyAndDropsInputBeforeEachRequest) {
    auto kinds = [](Dialogue& d) {
        static const char* const names[] = {"write:", "drop-in", "drop-out", "ask", "tell"};
        std::string out;
        for (const auto& a : d.takeActions()) out += names[static_cast<int>(a.kind)] + a.bytes + " ";
        return out;
    };
    SharedState state = range(2);
    ProgramGrid grid;
    prepareDownloadGrid(state, grid);
    DownloadProgram empty(state, grid, 1);
    empty.start(t0);
    EXPECT_EQ(kinds(empty), "drop-in drop-out write:R01\r\n ");
    EXPECT_EQ(empty.onBytes("0\x02\x01", t0 + 5ms), 1u);
    EXPECT_EQ(kinds(empty), "drop-in tell ");

    DownloadProgram two(state, grid, 1);
    two.start(t0);
    kinds(two);
    const std::string first = "10102\r\n" + withSum(std::string("\x02\x02", 2) + std::string(254, '\0'));
    EXPECT_EQ(two.onBytes(first + "stale", t0 + 300ms), 265u);
    EXPECT_EQ(kinds(two), "drop-in write:1 ");
    EXPECT_EQ(std::make_pair(two.progress(), two.nextDeadline()),
              std::make_pair(std::make_pair(1, 2), std::optional(t0 + 1300ms)));
    EXPECT_EQ(two.onBytes(withSum(std::string(256, '\0')) + "x", t0 + 600ms), 258u);
    EXPECT_EQ(kinds(two), "write:1 ");
    EXPECT_TRUE(two.finished() && two.progress() == std::make_pair(2, 2));
}

}  // namespace
}  // namespace halvane
