// halvane-cli: the console's file and device work for scripts, on the same core as the windows.

#include <cstring>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "authoring/program_file.h"
#include "authoring/startup.h"
#include "cli/commands.h"
#include "workbook/gsf_workbook_writer.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

using namespace halvane;

namespace {

constexpr const char* kUsage =
    "usage: halvane-cli [--config FILE] COMMAND [ARGS]\n"
    "       halvane-cli --help | --version\n"
    "Drives the console's windows from the command line: the settings of hvn.cfg, Program files, the\n"
    "transmitter, the range, the targets and the ports.\n"
    "commands:\n"
    "  config                  the settings read from hvn.cfg, one Name=Value per line\n"
    "  grid PROGRAM.hvn        the Program grid, one row per line, cells as text@colour\n"
    "  image PROGRAM.hvn       the Program image as temp.lm47 holds it, CR LF line ends\n"
    "  resave IN.hvn OUT.hvn   read a Program and write it again\n"
    "  send PROGRAM.hvn --place N [--port N | --device PATH] [--overwrite yes|no]\n"
    "                          store the Program in place N of the transmitter (an occupied place is\n"
    "                          answered No unless --overwrite yes); exit 0 only when it was stored\n"
    "  download --place N [--port N | --device PATH] [-o OUT.hvn]\n"
    "                          fetch place N and print it as `grid` does (and save it with -o)\n"
    "  run PROGRAM.hvn [--from S] [--port N | --device PATH] [--wifi HOST:PORT]\n"
    "      [--at-pause stop|continue]\n"
    "                          play the Program in real time as the run window does: one line per\n"
    "                          step (the second shown), Paused at a Pause row (then exit 0, or go on\n"
    "                          with continue), Finished after the last row; exit 130 on SIGINT/SIGTERM.\n"
    "                          Frames go where hvn.cfg sends them: the serial radio or line controller,\n"
    "                          and the Wi-Fi device at --wifi (else EthernetIP and EthernetPort)\n"
    "  live friend|foe|edge|down [TARGET...] [--port N | --device PATH] [--wifi HOST:PORT]\n"
    "                          command the targets as the live window does: with no TARGET, the\n"
    "                          all-target button; else the popup command for those targets (ascending,\n"
    "                          each once, whatever they show). The port opens as the window opens it;\n"
    "                          Wi-Fi frames are seen out before the exit, and its troubles told as the\n"
    "                          window tells them. Exit 0; 1 when the port cannot be opened or its line\n"
    "                          is lost; 2, with nothing sent, for a TARGET outside 1..200 or beyond the\n"
    "                          range's Targets in hvn.cfg\n"
    "  target read (--serial S | --number N) [--port N | --device PATH] [--wifi HOST:PORT]\n"
    "                          read a target's settings as the LM Setup window does (a number is\n"
    "                          looked up first) and print them, Name=Value in the order of the read,\n"
    "                          then SN=; exit 1 when not found, 2 for a serial of seven or more\n"
    "                          digits, 3 (values printed) when the target never answered\n"
    "  target write --serial S [--port N | --device PATH] [--wifi HOST:PORT] [Name=Value...]\n"
    "                          write the twelve settings as Save To Target does, the boxes holding\n"
    "                          the given texts (unnamed ones empty); exit 1 when a text cannot\n"
    "                          become a byte, after the settings before it\n"
    "  scores (--from transmitter | --from radio) [--port N | --device PATH] [--wifi HOST:PORT]\n"
    "         [--format csv|txt|xls] [-o FILE]\n"
    "                          download the hit scores by that road as the Read Hit Scores window\n"
    "                          does, and write its grid as Save writes it (CSV by default, to stdout\n"
    "                          unless -o; xls needs -o). Exit 1 when nothing was read (No Hit Scores\n"
    "                          in LMC, no port, no Wi-Fi) or a link was lost during a round (what was\n"
    "                          read is written all the same); 2 for a road hvn.cfg does not offer\n"
    "  scores --clear [--port N | --device PATH] [--wifi HOST:PORT]\n"
    "                          tell every target to clear its score; exit 1 when the carrier cannot\n"
    "                          be reached\n"
    "  ports [--save]          search ports 1-16 for the transmitter and the radio as the Com Ports\n"
    "                          window does, and print Finding= (the window's finding), Selected= (the\n"
    "                          port selected, 0 for none), ComPort= (where the search leaves it) and\n"
    "                          Present= (the ports that exist); --save then presses OK, storing the\n"
    "                          selected port in hvn.cfg (exit 1 when none is selected)\n"
    "  radio (read | set CHANNEL) (--usb | --target SERIAL) [--port N | --device PATH]\n"
    "                          read or program the radio channel of the USB radio or of the target\n"
    "                          with that serial number as the Radio Setup window does, on port N (1\n"
    "                          unless given), and print Channel=; exit 1 when the port cannot be\n"
    "                          opened or a read has no reply, 2 when the window refuses the values\n";

int usage() {
    std::cerr << kUsage;
    return 2;
}

// The image's CR LF must reach a file or pipe unchanged.
void binaryStdout() {
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY);
#endif
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    std::optional<std::filesystem::path> configOverride;
    if (args.size() >= 2 && args[0] == "--config") {
        configOverride = args[1];
        args.erase(args.begin(), args.begin() + 2);
    }
    if (args.empty()) return usage();
    if (args[0] == "--help" || args[0] == "-h") {
        std::cout << kUsage;
        return 0;
    }
    if (args[0] == "--version") {
        std::cout << "halvane-cli " HALVANE_VERSION "\n";
        return 0;
    }

    SharedState state;
    const auto configFile = locateConfig(executableDir(), userConfigDir(), configOverride);
    const auto report = readStartup(configFile, state);
    for (const auto& line : report.badKeys) std::cerr << configFile.string() << ": " << line << '\n';

    const std::string& command = args[0];
    if (command == "config" && args.size() == 1) {
        cli::printConfig(state, std::cout);
        return 0;
    }
    if (((command == "grid" || command == "image") && args.size() == 2) ||
        (command == "resave" && args.size() == 3)) {
        std::unique_ptr<ProgramGrid> grid;
        if (const auto error = cli::loadProgram(args[1], state, grid)) {
            std::cerr << error->message() << '\n';
            return 1;
        }
        if (command == "grid") {
            cli::printGrid(state, *grid, std::cout);
            return std::cout.flush() ? 0 : 1;
        }
        if (command == "image") {
            binaryStdout();
            if (const auto problem = cli::printImage(state, *grid, std::cout))
                std::cerr << args[1] << ": warning: " << problem->message << '\n';
            return std::cout.flush() ? 0 : 1;
        }
        state.FilePath = args[2];
        if (const auto error = writeProgramFile(state, *grid)) {
            std::cerr << error->message() << '\n';
            return 1;
        }
        return 0;
    }
    if (command == "send" && args.size() >= 2) {
        const auto options = cli::parseTransmitterOptions({args.begin() + 2, args.end()}, false);
        return options ? cli::sendCommand(args[1], *options, state) : usage();
    }
    if (command == "run" && args.size() >= 2) {
        const auto options = cli::parseRunOptions({args.begin() + 2, args.end()});
        return options ? cli::runCommand(args[1], *options, state) : usage();
    }
    if (command == "live") {
        const auto options = cli::parseLiveOptions({args.begin() + 1, args.end()});
        return options ? cli::liveCommand(*options, state) : usage();
    }
    if (command == "target") {
        const auto options = cli::parseTargetOptions({args.begin() + 1, args.end()});
        return options ? cli::targetCommand(*options, state) : usage();
    }
    if (command == "radio") {
        const auto options = cli::parseRadioOptions({args.begin() + 1, args.end()});
        return options ? cli::radioCommand(*options, state) : usage();
    }
    if (command == "scores") {
        const auto options = cli::parseScoresOptions({args.begin() + 1, args.end()});
        GsfWorkbookWriter workbooks;
        return options ? cli::scoresCommand(*options, state, &workbooks) : usage();
    }
    if (command == "ports" && (args.size() == 1 || (args.size() == 2 && args[1] == "--save")))
        return cli::portsCommand(args.size() == 2, state);
    if (command == "download") {
        const auto options = cli::parseTransmitterOptions({args.begin() + 1, args.end()}, true);
        return options ? cli::downloadCommand(*options, state) : usage();
    }
    return usage();
}
