// `send` and `download`: the transmitter dialogues from the command line, on a port of the system.

#include <chrono>
#include <iostream>
#include <memory>
#include <thread>

#include "authoring/grid_setup.h"
#include "authoring/program_file.h"
#include "cli/commands.h"
#include "cli/console_operator.h"
#include "cli/options.h"
#include "cli/posix_serial_port.h"
#include "links/com_port.h"
#include "links/dialogue_runner.h"
#include "links/port_names.h"
#include "links/program_image.h"
#include "links/transmitter_download.h"
#include "links/transmitter_send.h"
#include "links/transmitter_windows.h"

namespace halvane::cli {

namespace {

TimePoint now() {
    return std::chrono::steady_clock::now();
}

// Runs a dialogue on the port until it ends, waiting for bytes or for its next deadline.
void runOnPort(Dialogue& dialogue, PosixSerialPort& port, Operator& op) {
    DialogueRunner runner(dialogue, port, op);
    runner.start(now());
    while (!runner.finished()) {
        auto wait = std::chrono::milliseconds(100);
        if (const auto deadline = runner.nextDeadline())
            wait = std::min(wait, std::chrono::duration_cast<std::chrono::milliseconds>(*deadline - now()) +
                                      std::chrono::milliseconds(1));
        port.waitAndDeliver(wait);
        runner.tick(now());
    }
}

// The failure window's words, after the cause when the line went away.
void tellFailure(bool lineLost, const PosixSerialPort& port, const std::string& device, Operator& op) {
    if (lineLost) std::cerr << "The line to " << device << " was lost: " << port.lostReason() << ".\n";
    FailedBox box;
    op.show(box);
}

// Opens the port of the options (or of the configuration) and answers its device, or nothing.
std::optional<std::string> openPort(const TransmitterOptions& options, const SharedState& state,
                                    PosixSerialPort& port) {
    std::string device = options.device;
    const int number = options.port ? options.port : state.ComPort;
    if (device.empty()) {
        PortNames names;
        names.readOverrides(state.ConfigFile);
        device = names.device(number);
    }
    if (!device.empty() && openLikeTheConsole(port, device, [](std::chrono::milliseconds still) {
            std::this_thread::sleep_for(still);
        }))
        return device;
    if (options.device.empty())
        std::cerr << ComPortModule::inUseMessage(number) << " (" << (device.empty() ? "no device" : device)
                  << ": " << port.error() << ")\n"
                  << (port.deniedToUser() ? std::string(ComPortModule::kPermissionHint) + "\n" : "");
    else
        std::cerr << "Cannot open " << device << ": " << port.error() << '\n';
    return std::nullopt;
}

}  // namespace

bool openLikeTheConsole(SerialPort& port, const std::string& device,
                        const std::function<void(std::chrono::milliseconds)>& keepStill) {
    if (!port.open(device)) return false;
    port.setRts(false);
    port.setDtr(false);
    keepStill(kSettle);
    return true;
}

std::optional<TransmitterOptions> parseTransmitterOptions(const std::vector<std::string>& args,
                                                          bool canSave) {
    TransmitterOptions options;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == "--place" && hasValue) {
            const auto n = wholeNumber(args[++i]);
            if (!n || *n < 1) {
                std::cerr << "--place needs a program number of 1 or more (10 or more means place 10)\n";
                return std::nullopt;
            }
            options.place = *n;
        } else if (bool bad = false; portOption(args, i, options.port, options.device, bad)) {
            if (bad) return std::nullopt;
        } else if (a == "--overwrite" && hasValue && !canSave) {
            const std::string& v = args[++i];
            if (v != "yes" && v != "no") {
                std::cerr << "--overwrite takes yes or no\n";
                return std::nullopt;
            }
            options.overwrite = v == "yes";
        } else if (a == "-o" && hasValue && canSave) {
            options.output = args[++i];
        } else {
            std::cerr << "unknown or incomplete option: " << a << '\n';
            return std::nullopt;
        }
    }
    if (options.place < 1) {
        std::cerr << "--place N is required\n";
        return std::nullopt;
    }
    return options;
}

int sendCommand(const std::string& programFile, const TransmitterOptions& options, SharedState& state) {
    std::unique_ptr<ProgramGrid> grid;
    if (const auto error = loadProgram(programFile, state, grid)) {
        std::cerr << error->message() << '\n';
        return 1;
    }
    const auto image = WriteProgramImage(state, *grid);
    if (const auto problem = findByteProblem(image)) {
        std::cerr << problem->message << '\n';
        return 1;
    }
    if (const auto error = writeTempImage(image)) {
        std::cerr << *error << '\n';
        return 1;
    }
    PosixSerialPort port;
    const auto device = openPort(options, state, port);
    if (!device) return 1;
    ConsoleOperator op(std::cerr, options.overwrite ? Answer::Yes : Answer::No);
    SendProgram send(imageBytes(image), options.place);
    runOnPort(send, port, op);
    switch (send.outcome()) {
        case SendProgram::Outcome::Stored:
            std::cerr << "Program " << options.place << " sent successful\n";
            return 0;
        case SendProgram::Outcome::NoContact:
        case SendProgram::Outcome::LineLost:
            tellFailure(send.outcome() == SendProgram::Outcome::LineLost, port, *device, op);
            return 1;
        default:
            return 1;
    }
}

int downloadCommand(const TransmitterOptions& options, SharedState& state) {
    PosixSerialPort port;
    const auto device = openPort(options, state, port);
    if (!device) return 1;
    auto grid = std::make_unique<ProgramGrid>();
    prepareDownloadGrid(state, *grid);
    ConsoleOperator op(std::cerr, Answer::No);
    DownloadProgram download(state, *grid, options.place);
    runOnPort(download, port, op);
    if (!download.tag()) {
        tellFailure(download.outcome() == DownloadProgram::Outcome::LineLost, port, *device, op);
        return 1;
    }
    printGrid(state, *grid, std::cout);
    if (!options.output.empty()) {
        state.FilePath = options.output;
        if (const auto error = writeProgramFile(state, *grid)) {
            std::cerr << error->message() << '\n';
            return 1;
        }
    }
    return std::cout.flush() ? 0 : 1;
}

}  // namespace halvane::cli
