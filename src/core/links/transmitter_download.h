#pragma once
// Download of a stored Program from the transmitter into the Program grid.

#include <optional>
#include <string>
#include <vector>

#include "authoring/program_grid.h"
#include "authoring/shared_state.h"
#include "links/dialogue.h"
#include "links/program_decoder.h"
#include "links/timed_read.h"

namespace halvane {

// Shapes a newly created grid for a download: a length of one second and the headings of the
// Program's columns. The former Program is gone from here on, whatever the line does.
void prepareDownloadGrid(SharedState& state, ProgramGrid& grid);

// The download dialogue: "R" and the place, a reply of "0" or the first block, then "1" for each
// further block and a closing "1". Only the first block decides success; a later block that is late
// or spoiled is dropped without a word and leaves a gap in the Program. A line that goes away ends it
// as a failure at once, with what was decoded left in the grid.
class DownloadProgram : public Dialogue {
  public:
    enum class Outcome { Running, Done, NoProgram, Failed, LineLost };

    // `grid` as prepareDownloadGrid left it. Program numbers of 10 and more ask for place 10.
    DownloadProgram(SharedState& state, ProgramGrid& grid, int programNumber);
    DownloadProgram(const DownloadProgram&) = delete;
    DownloadProgram& operator=(const DownloadProgram&) = delete;

    void start(TimePoint now) override;
    std::size_t onBytes(std::string_view bytes, TimePoint now) override;
    void onTime(TimePoint now) override;
    void answer(Answer, TimePoint) override {}
    void onLineLost(TimePoint now) override;
    std::optional<TimePoint> nextDeadline() const override;
    bool finished() const override { return m_outcome != Outcome::Running; }
    // Blocks in, of the blocks the transmitter announced (1 until it has announced them).
    std::pair<int, int> progress() const override;

    Outcome outcome() const { return m_outcome; }
    // The window's Tag: the first block came whole, or the transmitter said it holds no program, and
    // the line stayed. False means the caller shows the failure window.
    bool tag() const { return m_tag; }

  private:
    void settle(TimePoint now);
    void onFirstBlock(TimePoint now);
    void onFurtherBlock(TimePoint now);
    void nextBlock(TimePoint now);
    void decode(std::string_view records, ProgramDecoder::Rules rules);
    void finish(Outcome outcome);

    SharedState& m_state;
    ProgramDecoder m_decoder;
    std::string m_command;
    std::string m_rx;  // the accumulator of the reply under way
    std::optional<TimedRead> m_read;
    int m_block = 0;   // the block awaited, from 1
    int m_blocks = 1;  // N, as the first block announces it
    Outcome m_outcome = Outcome::Running;
    bool m_tag = false;
    bool m_full = false;  // the grid is as long as it gets: the blocks left are taken and not decoded
    std::vector<std::string> m_leftOut;  // what the operator is told at the end
};

}  // namespace halvane
