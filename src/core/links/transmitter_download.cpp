#include "links/transmitter_download.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

#include "authoring/about_box.h"
#include "authoring/grid_setup.h"
#include "text/fault.h"

namespace halvane {

namespace {

constexpr std::size_t kStatusBytes = 7;
constexpr std::size_t kFirstReply = 265;  // status, block mark, N, 254 image bytes, sum
constexpr std::size_t kFirstImage = 254;
constexpr std::size_t kFurtherReply = 258;
constexpr std::size_t kFurtherImage = 256;

// The 16-bit sum of `summed` against the two bytes behind it, high byte first.
bool sumMatches(std::string_view summed, std::string_view sum) {
    unsigned total = 0;
    for (char c : summed) total += static_cast<std::uint8_t>(c);
    return static_cast<std::uint8_t>(sum[0]) == (total >> 8 & 0xFF) &&
           static_cast<std::uint8_t>(sum[1]) == (total & 0xFF);
}

}  // namespace

void prepareDownloadGrid(SharedState& state, ProgramGrid& grid) {
    state.NumSeconds = 1;
    SetupGrid(grid, state);
}

DownloadProgram::DownloadProgram(SharedState& state, ProgramGrid& grid, int programNumber)
    : m_state(state), m_decoder(state, grid) {
    if (programNumber < 1) throw std::invalid_argument("program places count from 1");
    const int place = std::min(programNumber, 10);
    m_command = {'R', static_cast<char>('0' + place / 10), static_cast<char>('0' + place % 10), '\r', '\n'};
}

void DownloadProgram::start(TimePoint now) {
    dropInput();
    dropOutput();
    m_block = 1;
    m_read.emplace(m_rx, kFirstReply, now);
    write(m_command);
}

std::size_t DownloadProgram::onBytes(std::string_view bytes, TimePoint now) {
    if (finished() || !m_read) return 0;
    std::size_t taken = 0;
    if (m_block == 1 && m_rx.empty() && !bytes.empty()) {
        // "0" is the whole reply for an empty place: whatever follows it is not taken.
        taken = m_read->feed(bytes.substr(0, 1), now);
        if (m_rx == "0") {
            dropInput();
            m_tag = true;
            tell("No program to download", kAppTitle);
            finish(Outcome::NoProgram);
            return taken;
        }
    }
    taken += m_read->feed(bytes.substr(taken), now);
    settle(now);
    return taken;
}

void DownloadProgram::onTime(TimePoint now) {
    if (!finished() && m_read) settle(now);
}

std::optional<TimePoint> DownloadProgram::nextDeadline() const {
    if (finished() || !m_read || m_read->status() != TimedRead::Status::Waiting) return std::nullopt;
    return m_read->deadline();
}

std::pair<int, int> DownloadProgram::progress() const {
    const int done = m_outcome == Outcome::Done ? m_blocks : std::max(m_block - 1, 0);
    return {done, m_blocks};
}

void DownloadProgram::settle(TimePoint now) {
    m_read->tick(now);
    if (m_read->status() == TimedRead::Status::Waiting) return;
    if (m_block == 1)
        onFirstBlock(now);
    else
        onFurtherBlock(now);
}

void DownloadProgram::onFirstBlock(TimePoint now) {
    const std::string_view reply = m_rx;
    if (m_read->status() != TimedRead::Status::Done ||
        !sumMatches(reply.substr(kStatusBytes, kFirstReply - kStatusBytes - 2),
                    reply.substr(kFirstReply - 2))) {
        // The caller shows the failure window; the line hears nothing more.
        dropInput();
        dropOutput();
        finish(Outcome::Failed);
        return;
    }
    m_tag = true;
    m_blocks = std::max(1, static_cast<int>(static_cast<std::uint8_t>(reply[kStatusBytes + 1])));
    decode(reply.substr(kStatusBytes + 2, kFirstImage), ProgramDecoder::Rules::FirstBlock);
    nextBlock(now);
}

void DownloadProgram::onFurtherBlock(TimePoint now) {
    const std::string_view block = m_rx;
    if (m_read->status() == TimedRead::Status::Done &&
        sumMatches(block.substr(0, kFurtherImage), block.substr(kFurtherImage)))
        decode(block.substr(0, kFurtherImage), ProgramDecoder::Rules::FurtherBlock);
    nextBlock(now);
}

void DownloadProgram::nextBlock(TimePoint now) {
    if (++m_block <= m_blocks) {
        dropInput();
        m_read.emplace(m_rx, kFurtherReply, now);
        write("1");
        return;
    }
    m_state.NumSeconds -= 1;
    write("1");
    finish(Outcome::Done);
}

// Once the grid is as full as it gets, the blocks left are still asked for, and dropped, so that the
// transmitter ends its dialogue with the closing "1" as after any download.
void DownloadProgram::decode(std::string_view records, ProgramDecoder::Rules rules) {
    if (m_full) return;
    const std::string block = "Block " + std::to_string(m_block);
    try {
        if (const auto column = m_decoder.decode(records, rules))
            m_leftOut.push_back(block + " of the Program names column " + std::to_string(*column) +
                                ", which the grid does not have; the rest of that block was left out.");
    } catch (const Fault& fault) {
        m_leftOut.push_back(block + ": " + fault.what() + " The rest of the Program was left out.");
        m_full = true;
    }
}

void DownloadProgram::onLineLost(TimePoint) {
    if (m_outcome == Outcome::Running && m_tag) m_state.NumSeconds -= 1;  // the length of what came
    if (m_outcome != Outcome::Running && m_outcome != Outcome::Done) return;
    m_tag = false;
    finish(Outcome::LineLost);
}

// Messages wait for the end, so that no message box holds up a block the transmitter is sending.
void DownloadProgram::finish(Outcome outcome) {
    m_outcome = outcome;
    m_read.reset();
    if (m_leftOut.empty()) return;
    std::string text;
    for (const auto& line : m_leftOut) text += (text.empty() ? "" : "\n") + line;
    m_leftOut.clear();
    tell(text, kAppTitle);
}

}  // namespace halvane
