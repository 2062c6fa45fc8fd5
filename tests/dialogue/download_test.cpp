// Download of a Program: the decoder fed blocks directly, and the dialogue against the simulated
// transmitter on a virtual clock.

#include <gtest/gtest.h>

#include <sstream>

#include "authoring/grid_setup.h"
#include "links/program_decoder.h"
#include "links/transmitter_download.h"
#include "sim/devices.h"
#include "sim/transmitter.h"
#include "virtual_line.h"

namespace halvane {
namespace {

using namespace std::chrono_literals;
const TimePoint t0 = TimePoint{} + 1h;

// "F3 01 FD 02" to its bytes.
std::string bytes(std::string_view hex) {
    std::istringstream in{std::string(hex)};
    std::string out;
    for (std::string pair; in >> pair;) out.push_back(static_cast<char>(std::stoi(pair, nullptr, 16)));
    return out;
}

// The image of whole blocks, each block's records zero-filled to its size.
std::string image(const std::vector<std::string>& blocks) {
    std::string out;
    for (std::size_t b = 0; b < blocks.size(); ++b) {
        out += blocks[b];
        out.resize(254 + 256 * b, '\0');
    }
    return out;
}

std::string withSum(std::string block) {
    unsigned sum = 0;
    for (char c : block) sum += static_cast<unsigned char>(c);
    return block + static_cast<char>(sum >> 8 & 0xFF) + static_cast<char>(sum & 0xFF);
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

TEST(ProgramDecoder, RebuildsTheGridRecordByRecord) {
    struct Case {
        const char* name;
        SharedState state;
        std::vector<std::string> blocks;  // the first block's records, then further blocks'
        std::vector<std::string> rows;
        int lastRow;                      // NumSeconds while decoding
        std::vector<int> stoppedAt = {};  // per block, 0 for a block decoded to its end
    };
    // clang-format off
    const Case cases[] = {
        {"an action holds down its column until the next", range(2), {"F3 01 F2 02 FD 02 F0 01 FD 01 F3 02"},
         {"Seconds|Target # 1|Target # 2", "0|Friend|Foe", "1|Friend|Foe", "2|Down|Foe", "3||Friend"}, 4},
        {"a Pause lands a row lower, adds two rows, and no hold crosses it", range(2),
         {"F3 01 F2 02 FD 02 F0 01 FD 01 FE 01 FD 01 F0 01"},
         {"Seconds|Target # 1|Target # 2", "0|Friend|Foe", "1|Friend|", "2|Down|", "3||", "4|Pause|Pause", "5||",
          "6|Down|"}, 7},
        {"a Pause first, and its number's column held down before the second", range(2),
         {"FE 01 FD 01 F2 02 FD 02 FE 02 FD 01 F3 01"},
         {"Seconds|Target # 1|Target # 2", "0||", "1|Pause|Pause", "2||", "3||Foe", "4||Foe", "5||",
          "6|Pause|Pause", "7||", "8|Friend|"}, 9},
        {"more Pauses than columns add target columns, in groups mode too", range(1, true), {"FE 01 FD 01 FE 02"},
         {"Seconds|Groups # 1|Target # 2", "0||", "1|Pause|", "2||", "3||", "4|Pause|Pause", "5||"}, 6},
        {"unknown codes add columns and hold, then do nothing", range(1), {"F3 01 FD 02 77 01 A0 03"},
         {"Seconds|Target # 1|Target # 2|Target # 3", "0|Friend||", "1|Friend||", "2|||"}, 3},
        {"operand 0 ends the block, except for a Pause", range(1), {"FE 00 F3 01 F2 00 F0 01"},
         {"Seconds|Target # 1", "0|", "1|Pause", "2|Friend"}, 3},
        {"further blocks go on from their row; their delays label one higher, their Pauses not", range(1),
         {"F3 01 FD 01", "FD 01 FE 01 FD 01 F0 01"},
         {"Seconds|Target # 1", "0|Friend", "1|Friend", "3|", "3|Pause", "4|", "6|Down"}, 6},
        {"a column beyond the grid leaves the rest of its block", range(2),
         {"F3 01 F3 C9 F2 01", "FD 01 F2 01 F3 03 FD 01 F2 02", "F0 02"},
         {"Seconds|Target # 1|Target # 2", "0|Friend|", "2|Foe|Down"}, 2, {201, 3, 0}},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        SharedState state = c.state;
        ProgramGrid grid;
        prepareDownloadGrid(state, grid);
        ProgramDecoder decoder(state, grid);
        for (std::size_t b = 0; b < c.blocks.size(); ++b) {
            const auto rules =
                b == 0 ? ProgramDecoder::Rules::FirstBlock : ProgramDecoder::Rules::FurtherBlock;
            EXPECT_EQ(decoder.decode(bytes(c.blocks[b]), rules).value_or(0),
                      c.stoppedAt.empty() ? 0 : c.stoppedAt[b]);
        }
        EXPECT_EQ(rowsOf(grid), c.rows);
        EXPECT_EQ(state.NumSeconds, c.lastRow);
    }
}

// The transmitter with one reply of a download spoiled: its sum broken, or never sent.
class SpoiledReply : public sim::Device {
  public:
    enum class Spoil { None, Sum, Withheld };
    SpoiledReply(sim::Device& inner, Spoil spoil, int reply)
        : m_inner(inner), m_spoil(spoil), m_reply(reply) {}
    std::string name() const override { return m_inner.name(); }
    void receive(std::string_view bytes, TimePoint now) override { m_inner.receive(bytes, now); }
    std::optional<TimePoint> nextDue() const override { return m_inner.nextDue(); }
    std::vector<std::string> takeDue(TimePoint now) override {
        std::vector<std::string> out;
        for (auto& chunk : m_inner.takeDue(now)) {
            if (++m_seen == m_reply && m_spoil == Spoil::Withheld) continue;
            if (m_seen == m_reply && m_spoil == Spoil::Sum) chunk.back() ^= 1;
            out.push_back(std::move(chunk));
        }
        return out;
    }

  private:
    sim::Device& m_inner;
    Spoil m_spoil;
    int m_reply;
    int m_seen = 0;
};

// What one download left, from a transmitter holding `place` (blocks of records; nothing for an empty
// place) with one reply spoiled, into a grid of two targets.
struct Download {
    std::string written;
    DownloadProgram::Outcome outcome;
    bool tag;
    std::vector<std::string> log;
    int numSeconds;
    int gridRows;
    std::vector<std::string> rows;

    Download(int program, const std::optional<std::vector<std::string>>& place, sim::Faults faults = {},
             SpoiledReply::Spoil spoil = SpoiledReply::Spoil::None, int reply = 0) {
        sim::Range simRange(2);
        auto tx = sim::makeTransmitter(simRange, faults);
        if (place) sim::asTransmitter(*tx).setPlace(std::min(program, 10), image(*place));
        SpoiledReply device(*tx, spoil, reply);
        SharedState state = range(2);
        ProgramGrid grid;
        prepareDownloadGrid(state, grid);
        DownloadProgram download(state, grid, program);
        testing::ScriptedOperator op;
        testing::VirtualLine line(download, device, op);
        line.run(t0);
        written = line.written();
        outcome = download.outcome();
        tag = download.tag();
        log = op.log;
        numSeconds = state.NumSeconds;
        gridRows = grid.Rows();
        if (gridRows < 100) rows = rowsOf(grid);
    }
};

TEST(DownloadProgram, AgainstTheTransmitter) {
    using Spoil = SpoiledReply::Spoil;
    using enum DownloadProgram::Outcome;
    struct Case {
        const char* name;
        int program;
        std::optional<std::vector<std::string>> place;
        sim::Faults faults;
        Spoil spoil;
        int reply;  // the one spoiled, from 1
        std::string written;
        DownloadProgram::Outcome outcome;
        std::string told;
        int numSeconds;
        std::vector<std::string> rows;  // under the heading row
    };
    const std::vector<std::string> four = {bytes("F3 01 F2 02 FD 02"), bytes("F0 01 FD 01"), bytes("F3 02"),
                                           ""};
    const std::vector<std::string> whole = {"0|Friend|Foe", "1|Friend|Foe", "2|Down|Foe", "4||Friend"};
    const std::vector<std::string> cleared = {"0||", "1||"};
    // clang-format off
    const Case cases[] = {
        {"four blocks, the last all zeros", 3, four, {}, Spoil::None, 0, "R03\r\n1111", Done, "", 3, whole},
        {"late by 999 ms", 3, four, {.lateBy = 999ms}, Spoil::None, 0, "R03\r\n1111", Done, "", 3, whole},
        {"program 12 asks for place 10; all in row 1", 12, {{bytes("F3 01")}}, {}, Spoil::None, 0, "R10\r\n1", Done,
         "", 0, {"0|Friend|", "1||"}},
        {"bad sum in block 2", 3, four, {}, Spoil::Sum, 2, "R03\r\n1111", Done, "", 2,
         {"0|Friend|Foe", "1||Foe", "2||Friend"}},
        {"block 3 never comes", 3, four, {}, Spoil::Withheld, 3, "R03\r\n1111", Done, "", 3,
         {"0|Friend|Foe", "1|Friend|", "2|Down|", "4||"}},
        {"a column beyond the grid in block 2", 3, {{four[0], bytes("F0 01 F3 05 FD 01"), four[2], ""}}, {},
         Spoil::None, 0, "R03\r\n1111", Done, "Block 2 of the Program names column 5, which the grid does not "
         "have; the rest of that block was left out.", 2, {"0|Friend|Foe", "1|Friend|Foe", "2|Down|Friend"}},
        {"empty place", 3, std::nullopt, {}, Spoil::None, 0, "R03\r\n", NoProgram, "No program to download", 1,
         cleared},
        {"silence", 3, four, {.silent = true}, Spoil::None, 0, "R03\r\n", Failed, "", 1, cleared},
        {"late by 1000 ms", 3, four, {.lateBy = 1000ms}, Spoil::None, 0, "R03\r\n", Failed, "", 1, cleared},
        {"one budget for the whole first reply", 3, four, {.lateBy = 960ms, .splitReplies = true}, Spoil::None, 0,
         "R03\r\n", Failed, "", 1, cleared},
        {"bad sum in the first block", 3, four, {}, Spoil::Sum, 1, "R03\r\n", Failed, "", 1, cleared},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Download d(c.program, c.place, c.faults, c.spoil, c.reply);
        EXPECT_EQ(d.written, c.written);
        EXPECT_EQ(d.outcome, c.outcome);
        EXPECT_EQ(d.tag, c.outcome != Failed);
        EXPECT_EQ(d.log, c.told.empty() ? std::vector<std::string>{}
                                        : std::vector<std::string>{"tell: Halvane: " + c.told});
        EXPECT_EQ(d.numSeconds, c.numSeconds);
        auto rows = c.rows;
        rows.insert(rows.begin(), "Seconds|Target # 1|Target # 2");
        EXPECT_EQ(d.rows, rows);
    }
}

TEST(DownloadProgram, StopsWhereTheGridIsFull) {
    std::string delays;
    for (int i = 0; i < 255; ++i) delays += bytes("FD FF");
    const Download d(3, std::vector<std::string>{delays.substr(0, 254), delays.substr(254)});
    EXPECT_EQ(d.written, "R03\r\n1");  // the transmitter is left waiting
    EXPECT_EQ(d.outcome, DownloadProgram::Outcome::Done);
    EXPECT_EQ(d.log,
              std::vector<std::string>{"tell: Halvane: Block 2: The Program on the transmitter is longer "
                                       "than 32765 seconds, the most a Program can have. The download "
                                       "stopped there."});
    EXPECT_EQ(d.numSeconds, 32765);
    EXPECT_EQ(d.gridRows, 32767);
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
    EXPECT_TRUE(empty.finished());

    DownloadProgram two(state, grid, 1);
    two.start(t0);
    kinds(two);
    const std::string first = "10102\r\n" + withSum(std::string("\x02\x02", 2) + std::string(254, '\0'));
    EXPECT_EQ(two.onBytes(first + "stale", t0 + 300ms), 265u);
    EXPECT_EQ(kinds(two), "drop-in write:1 ");
    EXPECT_EQ(two.progress(), std::make_pair(1, 2));
    EXPECT_EQ(two.nextDeadline(), t0 + 1300ms);
    EXPECT_EQ(two.onBytes(withSum(std::string(256, '\0')) + "x", t0 + 600ms), 258u);
    EXPECT_EQ(kinds(two), "write:1 ");
    EXPECT_EQ(two.progress(), std::make_pair(2, 2));
    EXPECT_TRUE(two.finished());
}

}  // namespace
}  // namespace halvane
