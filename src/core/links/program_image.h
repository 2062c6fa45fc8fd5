#pragma once
// The Program image: the compact form in which a Program travels to the transmitter, and temp.lm47.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "authoring/program_grid.h"
#include "authoring/shared_state.h"
#include "text/wire_vocabulary.h"

namespace halvane {

// The codes of the image, as wide as a record's values: the actions are those of the range frames.
namespace image {
inline constexpr std::uint32_t Down = wire::byteOf(wire::Action::Down);
inline constexpr std::uint32_t Edge = wire::byteOf(wire::Action::Edge);
inline constexpr std::uint32_t Foe = wire::byteOf(wire::Action::Foe);
inline constexpr std::uint32_t Friend = wire::byteOf(wire::Action::Friend);
inline constexpr std::uint32_t Delay = wire::kDelay;  // operand: seconds since the record before
inline constexpr std::uint32_t Pause = wire::kPause;  // operand: the running number of the Pause
}  // namespace image

// One record of the image, with the grid cell it came from. A delay record carries the row of the
// record after it and column 0, since it belongs to the whole row.
struct ImageRecord {
    std::uint32_t code;
    std::uint32_t operand;
    int row;
    int col;
    bool operator==(const ImageRecord&) const = default;
};

// Scans rows 1 to NumSeconds + 1 and, in each, the Program's columns (groups or targets), writing a
// record where a cell differs from the one above it. The grid's current cell follows the scan and
// stays on the last cell visited. Values above 255 are kept as they are (see findByteProblem).
// Throws the grid's Fault when the grid is smaller than the state says.
std::vector<ImageRecord> WriteProgramImage(const SharedState& state, ProgramGrid& grid);

// The bytes of temp.lm47: code then operand of each record, one per line, each as a quoted
// upper-case hexadecimal value without leading zeros followed by CR LF.
std::string imageText(const std::vector<ImageRecord>& image);

// Where temp.lm47 lies: the folder named by TMP, else TMPDIR, else the system's temporary folder
// (the working folder if there is none). An empty variable counts as unset.
std::filesystem::path tempImagePath();

// Writes temp.lm47, replacing what was there; the file stays afterwards, as there is one image at a
// time. Returns a message naming the file when it cannot be written; a half-written file is removed.
std::optional<std::string> writeTempImage(const std::vector<ImageRecord>& image,
                                          const std::filesystem::path& path = tempImagePath());

// A value of the image that cannot travel as one byte, told in the grid's terms.
struct ImageProblem {
    std::string message;
    int row;
    int col;
};

// The first value above 255, if any (for a delay the place is the first change after it); else, when
// the image needs more blocks than the one-byte block count can announce, by how much and where the
// first record that does not fit lies. Nothing here means every byte of the send fits.
std::optional<ImageProblem> findByteProblem(const std::vector<ImageRecord>& image);

// The image as it goes on the wire, one byte per value. A value above 255 keeps only its low byte,
// so callers check findByteProblem first.
std::string imageBytes(const std::vector<ImageRecord>& image);

}  // namespace halvane
