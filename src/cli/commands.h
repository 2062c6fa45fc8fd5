#pragma once
// The subcommands of halvane-cli.

#include <chrono>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "authoring/program_file.h"
#include "authoring/program_grid.h"
#include "authoring/shared_state.h"
#include "cli/options.h"
#include "links/program_image.h"
#include "links/serial_port.h"
#include "text/wire_vocabulary.h"

namespace halvane {
class WorkbookWriter;
}

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

// Opens the port as the console opens its shared port: RTS and DTR off, then `keepStill` for kSettle
// before anything goes out. False when the device does not open.
inline constexpr std::chrono::milliseconds kSettle{100};
bool openLikeTheConsole(SerialPort& port, const std::string& device,
                        const std::function<void(std::chrono::milliseconds)>& keepStill);

// `send PROGRAM.hvn`: exit 0 only when the Program was stored; a Program too long or with a value
// beyond a byte sends nothing. A line lost on the way is told on stderr, exit 1.
int sendCommand(const std::string& programFile, const TransmitterOptions& options, SharedState& state);
// `download`: prints the grid; exit 0 on success or an empty place, 1 on failure (a lost line too).
int downloadCommand(const TransmitterOptions& options, SharedState& state);

// How `run` plays a Program, from the command line's options.
inline constexpr int kMaxRunSecond = 32765;
struct RunOptions {
    int from = 0;                  // --from S
    CarrierOptions carriers;       // --port N, --device PATH, --wifi HOST:PORT
    bool continueAtPause = false;  // --at-pause continue
};
std::optional<RunOptions> parseRunOptions(const std::vector<std::string>& args);
// `run PROGRAM.hvn`: one line per step on stdout, "Paused" at a Pause row, "Finished" after the last;
// exit 0, 1 when the Program or the port cannot be opened, 130 after SIGINT or SIGTERM. What the Wi-Fi
// link has to tell goes to stderr, and the run goes on.
int runCommand(const std::string& programFile, const RunOptions& options, SharedState& state);

// What `live` commands, from the command line: the action word, then target numbers (none: all
// targets) and the carrier options, in any order. Target numbers are kept as given, to be judged
// against the range.
struct LiveOptions {
    wire::Action action = wire::Action::Down;
    std::vector<int> targets;
    CarrierOptions carriers;
};
std::optional<LiveOptions> parseLiveOptions(const std::vector<std::string>& args);
// `live`: the live window's all-target button of the action, or its popup command for the targets.
// Exit 0; 1 when the port cannot be opened or its line is lost; 2, with nothing sent, for a target
// outside 1 to 200 or beyond the range's NumTargets; 130 after SIGINT or SIGTERM.
int liveCommand(const LiveOptions& options, SharedState& state);

// What `target read` and `target write` name: the target by serial number (or, to read, by target
// number), the carriers, and for a write the texts of the boxes by parameter index (the rest empty).
struct TargetOptions {
    bool write = false;
    std::string serial;  // --serial S
    std::string number;  // --number N
    CarrierOptions carriers;
    std::vector<std::pair<int, std::string>> boxes;  // Name=Value
};
// The arguments after `target`.
std::optional<TargetOptions> parseTargetOptions(const std::vector<std::string>& args);
// `target read`: the boxes and labels as a read leaves them, Name=Value in the order of the read, then
// SN=; exit 0, 1 when the port cannot be opened, the number is not found or the read stops on a fault,
// 2 for a serial entry the window ignores, 3 (values printed all the same) when no read had a reply.
// `target write`: the twelve frames of Save To Target; exit 0 when all went out, 1 when a box cannot
// become a byte (the frames before it sent) or a carrier failed. 130 after SIGINT or SIGTERM.
int targetCommand(const TargetOptions& options, SharedState& state);

// What `scores` does: a download by the road named, written in a format, or the clear frame.
struct ScoresOptions {
    bool clear = false;
    std::string from;  // "transmitter" or "radio"
    CarrierOptions carriers;
    std::string format = "csv";  // csv, txt or xls
    std::string output;          // -o FILE; "" for standard output
};
std::optional<ScoresOptions> parseScoresOptions(const std::vector<std::string>& args);
// `scores --from ROAD`: the grid as Save writes it; exit 0, 1 for a failure before any score was read
// (nothing written) or a link lost during a round (what was read written all the same), 2 for a road
// the settings do not offer or xls without -o. `scores --clear`: exit 0, 1 when its carrier cannot be
// reached. 130 after SIGINT or SIGTERM.
int scoresCommand(const ScoresOptions& options, SharedState& state, WorkbookWriter* workbooks);

// `ports`: the port search as its window runs it, then Finding=, Selected=, ComPort= and Present=; with
// `save`, OK: exit 1 when no port is selected or hvn.cfg cannot be written.
int portsCommand(bool save, SharedState& state);
// What `radio read` and `radio set CHANNEL` name: the USB radio or a target by serial number, and the
// port of the operation.
struct RadioOptions {
    bool set = false;
    std::string channel;  // the text of the channel box
    std::string serial;   // --target SERIAL (digits); "" for --usb
    int port = 1;         // --port N: the window's port box
    std::string device;   // --device PATH, for that port
};
std::optional<RadioOptions> parseRadioOptions(const std::vector<std::string>& args);
// `radio`: Read From Radio or Program, and the three seconds of the progress window; Channel= and the
// channel box on stdout. Exit 0; 1 when the port cannot be opened, a read finds no channel or the line
// fails; 2, with nothing sent, when the window's button refuses.
int radioCommand(const RadioOptions& options, SharedState& state);

}  // namespace halvane::cli
