#pragma once
// Storing a Program in one of the transmitter's ten places (SendProgram): the command, the status
// reply with the overwrite question, then blocks of 256 bytes with their sums, each acknowledged.

#include <cstdint>
#include <optional>
#include <string>

#include "links/dialogue.h"

namespace halvane {

class SendProgram : public Dialogue {
  public:
    enum class Outcome {
        Running,
        Stored,     // every block taken
        NoContact,  // no full status reply: the failure window follows
        Declined,   // the operator would not overwrite the place
        Refused,    // a block was refused (or its acknowledgement was no digit)
        LineLost,   // the line went away: the failure window follows
    };

    // The most blocks a transfer can announce, in the one byte N, and the most image values they hold.
    static constexpr int kMaxBlocks = 255;
    static constexpr std::size_t kMaxLines = 254 + 256 * (kMaxBlocks - 1);

    // `image`: one byte per image value; `programNumber` as chosen, 1 or more (10 or more means place
    // 10). Throws std::invalid_argument for a number below 1 and std::length_error for an image that
    // needs more blocks than N can say: callers check with findByteProblem before.
    SendProgram(std::string image, int programNumber);

    // The block count announced for an image of `lines` values (above kMaxBlocks it cannot be sent).
    static int blockCount(std::size_t lines);
    // The command for a program number: "S", two digits, CR LF.
    static std::string command(char letter, int programNumber);

    void start(TimePoint now) override;
    std::size_t onBytes(std::string_view bytes, TimePoint now) override;
    void onTime(TimePoint now) override;
    void answer(Answer answer, TimePoint now) override;
    void onLineLost(TimePoint now) override;
    std::optional<TimePoint> nextDeadline() const override;
    bool finished() const override { return m_outcome != Outcome::Running; }
    std::pair<int, int> progress() const override { return {m_blocksSent, m_blocks}; }

    Outcome outcome() const { return m_outcome; }
    // True unless a path that did not store the Program was taken.
    bool tag() const { return m_outcome == Outcome::Running || m_outcome == Outcome::Stored; }

  private:
    enum class Step { Status, Question, Acknowledgement, Done };
    // Writes `bytes` and waits for a reply of `count` bytes: what came before the write is dropped.
    void writeAndRead(std::string bytes, std::size_t count, TimePoint now);
    void replyEnded(TimePoint now);
    void sendBlock(TimePoint now);
    void refuse();

    std::string m_image;
    int m_programNumber;
    int m_blocks = 1;
    int m_blocksSent = 0;
    std::size_t m_next = 0;  // next image byte to send
    Step m_step = Step::Status;
    Outcome m_outcome = Outcome::Running;
    std::string m_slot;
    std::string m_reply;  // the last reply's first character; it keeps its value over a time-out
    std::optional<TimedRead> m_read;
};

}  // namespace halvane
