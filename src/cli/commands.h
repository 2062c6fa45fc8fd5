#pragma once
// The subcommands of halvane-cli.

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "authoring/program_file.h"
#include "authoring/program_grid.h"
#include "authoring/shared_state.h"
#include "links/program_image.h"

namespace halvane::cli {

// `config`: the shared state as read at start-up, one Name=Value line each.
void printConfig(const SharedState& state, std::ostream& out);

// Loads a Program file as Open does, into `state` and `grid`.
std::optional<ProgramFileError> loadProgram(const std::string& path, SharedState& state,
                                            std::unique_ptr<ProgramGrid>& grid);

// `grid`: a line of the Program's shape, then every grid row from row 0, cells as text@BBGGRR.
void printGrid(const SharedState& state, const ProgramGrid& grid, std::ostream& out);

// `image`: the Program image exactly as temp.lm47 would hold it. Returns what would stop a send of
// it, so that the caller can say so beside the image.
std::optional<ImageProblem> printImage(const SharedState& state, ProgramGrid& grid, std::ostream& out);

// Where and how the transmitter is reached, from the command line's options.
struct TransmitterOptions {
    int place = 0;           // --place N
    int port = 0;            // --port N (0: ComPort of the configuration)
    std::string device;      // --device PATH (over --port)
    bool overwrite = false;  // --overwrite yes|no
    std::string output;      // -o OUT.hvn
};

// Reads the options after the command's own arguments; nothing (and a message on stderr) when they
// are bad. --place is required, 1 or more.
std::optional<TransmitterOptions> parseTransmitterOptions(const std::vector<std::string>& args, bool canSave);

// `send PROGRAM.hvn`: exit 0 only when the Program was stored.
int sendCommand(const std::string& programFile, const TransmitterOptions& options, SharedState& state);
// `download`: prints the grid; exit 0 on success or an empty place, 1 on failure.
int downloadCommand(const TransmitterOptions& options, SharedState& state);

}  // namespace halvane::cli
