#pragma once
// Turning the records of a downloaded Program image back into cells of the Program grid.

#include <optional>
#include <string_view>

#include "authoring/program_grid.h"
#include "authoring/shared_state.h"

namespace halvane {

// Rebuilds the Program grid record by record: each action is held down its column until the next,
// and each Pause gets two rows of its own. While it runs, NumSeconds is the index of the last row in
// use; the download brings it back to a length when the last block is in.
class ProgramDecoder {
  public:
    // The first block starts at row 1 and may add columns; further blocks go on from the row where
    // the block before them ended and label new rows one higher.
    enum class Rules { FirstBlock, FurtherBlock };

    ProgramDecoder(SharedState& state, ProgramGrid& grid) : m_state(state), m_grid(grid) {}

    // Decodes (code, operand) pairs up to the end mark or the end of `records`. Returns the column of
    // a record that addresses a column the grid does not have: the block is left at that record, and
    // what came before it stays. Throws Fault when the Program grows beyond the longest grid.
    std::optional<int> decode(std::string_view records, Rules rules);

  private:
    void addColumns(int operand);
    void holdFill();
    void advanceRows(int count, Rules rules);
    void insertPause();
    void addRow();

    SharedState& m_state;
    ProgramGrid& m_grid;
};

}  // namespace halvane
