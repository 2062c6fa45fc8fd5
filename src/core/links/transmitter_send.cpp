#include "links/transmitter_send.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "authoring/about_box.h"
#include "text/conversions.h"

namespace halvane {

namespace {
constexpr std::size_t kFirstBlockData = 254;
constexpr std::size_t kBlockData = 256;
constexpr char kAbandon = '\xFF';

// The plain 16-bit sum of a block's bytes, high byte first.
std::string sumBytes(unsigned sum) {
    return {static_cast<char>((sum / 256) & 0xFF), static_cast<char>(sum % 256)};
}
}  // namespace

SendProgram::SendProgram(std::string image, int programNumber)
    : m_image(std::move(image)), m_programNumber(programNumber), m_blocks(blockCount(m_image.size())) {
    if (programNumber < 1) throw std::invalid_argument("program places count from 1");
    // N goes out as one byte: a larger count would wrap and spoil the first block's sum.
    if (m_blocks > kMaxBlocks)
        throw std::length_error("an image of " + std::to_string(m_image.size()) + " values needs " +
                                std::to_string(m_blocks) + " blocks; one byte announces at most 255");
}

int SendProgram::blockCount(std::size_t lines) {
    if (lines <= kFirstBlockData) return 1;
    // Exact halves round to even, so an odd multiple of 256 announces one block more than needed.
    const auto rounded = text::toInt32((static_cast<double>(lines) - 254) / 256 + 0.5);
    return rounded ? *rounded + 1 : std::numeric_limits<int>::max();
}

std::string SendProgram::command(char letter, int programNumber) {
    const int place = std::min(programNumber, 10);
    return std::string(1, letter) + (place < 10 ? "0" : "") + std::to_string(place) + "\r\n";
}

void SendProgram::start(TimePoint now) {
    dropOutput();
    writeAndRead(command('S', m_programNumber), 7, now);
}

// The reader drops the input as it starts, right after the write whose reply it awaits; the drop is
// put first, since on a fast carrier the reply may already be in.
void SendProgram::writeAndRead(std::string bytes, std::size_t count, TimePoint now) {
    dropInput();
    write(std::move(bytes));
    m_read.emplace(m_slot, count, now);
}

std::size_t SendProgram::onBytes(std::string_view bytes, TimePoint now) {
    if (!m_read) return 0;
    const std::size_t taken = m_read->feed(bytes, now);
    if (m_read->status() != TimedRead::Status::Waiting) replyEnded(now);
    return taken;
}

void SendProgram::onTime(TimePoint now) {
    if (!m_read) return;
    m_read->tick(now);
    if (m_read->status() != TimedRead::Status::Waiting) replyEnded(now);
}

std::optional<TimePoint> SendProgram::nextDeadline() const {
    if (m_read) return m_read->deadline();
    return std::nullopt;
}

void SendProgram::replyEnded(TimePoint now) {
    if (auto first = ReadReplyResult(*m_read, m_slot)) m_reply = std::string(1, *first);
    m_read.reset();
    if (m_step == Step::Status) {
        if (m_reply.empty()) {
            m_outcome = Outcome::NoContact;
            return;
        }
        const double status = text::Val(m_reply);
        if (status == 1 || status == 2) {
            m_step = Step::Question;
            ask("Over write current program in LMC?", kAppTitle, Buttons::YesNoCancel);
            return;
        }
        answer(Answer::Yes, now);
        return;
    }
    // An acknowledgement: "0" refuses; a reply that is no digit ends the transfer the same way. After a
    // time-out the reply before it decides.
    const auto digit = text::strictNumber(m_reply);
    if (!digit || *digit == 0) {
        refuse();
        return;
    }
    if (m_blocksSent == m_blocks) {
        m_step = Step::Done;
        m_outcome = Outcome::Stored;
        return;
    }
    sendBlock(now);
}

void SendProgram::answer(Answer answer, TimePoint now) {
    if (finished() || (m_step != Step::Question && m_step != Step::Status)) return;
    if (answer != Answer::Yes) {
        write(std::string(1, kAbandon));
        m_outcome = Outcome::Declined;
        return;
    }
    m_step = Step::Acknowledgement;
    write(std::string{'\x02', static_cast<char>(m_blocks)});
    sendBlock(now);
}

void SendProgram::sendBlock(TimePoint now) {
    const bool first = m_blocksSent == 0;
    const std::size_t size = first ? kFirstBlockData : kBlockData;
    std::string data = m_image.substr(std::min(m_next, m_image.size()), size);
    m_next += size;
    data.resize(size, '\0');
    unsigned sum = first ? 2u + static_cast<unsigned>(m_blocks) : 0u;
    for (const char byte : data) sum += static_cast<unsigned char>(byte);
    ++m_blocksSent;
    const bool last = m_blocksSent == m_blocks;
    writeAndRead(data + sumBytes(sum), last ? 5 : 1, now);
}

void SendProgram::onLineLost(TimePoint) {
    if (finished()) return;
    m_read.reset();
    m_step = Step::Done;
    m_outcome = Outcome::LineLost;
}

void SendProgram::refuse() {
    tell("Sending program failed try again", kAppTitle);
    write(std::string(1, kAbandon));
    m_outcome = Outcome::Refused;
}

}  // namespace halvane
