// `run`: plays a Program in real time from the command line, with the run window's own engine, on the
// serial line and the Wi-Fi link as the settings choose.

#include <iostream>
#include <memory>

#include "cli/commands.h"
#include "cli/console_operator.h"
#include "cli/range_carriers.h"
#include "range/range_running.h"

namespace halvane::cli {

namespace {

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

}  // namespace

std::optional<RunOptions> parseRunOptions(const std::vector<std::string>& args) {
    RunOptions options;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == "--from" && hasValue) {
            const auto n = wholeNumber(args[++i]);
            if (!n || *n < 0 || *n > kMaxRunSecond) {
                std::cerr << "--from needs a second from 0 to " << kMaxRunSecond << '\n';
                return std::nullopt;
            }
            options.from = *n;
        } else if (bool bad = false; carrierOption(args, i, options.carriers, bad)) {
            if (bad) return std::nullopt;
        } else if (a == "--at-pause" && hasValue) {
            const std::string& v = args[++i];
            if (v != "stop" && v != "continue") {
                std::cerr << "--at-pause takes stop or continue\n";
                return std::nullopt;
            }
            options.continueAtPause = v == "continue";
        } else {
            std::cerr << "unknown or incomplete option: " << a << '\n';
            return std::nullopt;
        }
    }
    return options;
}

int runCommand(const std::string& programFile, const RunOptions& options, SharedState& state) {
    std::unique_ptr<ProgramGrid> grid;
    if (const auto error = loadProgram(programFile, state, grid)) {
        std::cerr << error->message() << '\n';
        return 1;
    }
    ConsoleOperator op(std::cerr, Answer::No);
    NoPositions positions;
    RangeCarriers carriers(options.carriers, state, op);
    frmRangeRunning window(state, *grid, carriers.port, carriers.names, carriers.wifiSend(), op, positions);
    window.Load();
    if (window.BtnConnect.Enabled) {
        window.BtnConnect_Click();
        if (window.PortError) return 1;
    }

    bool stop = false;
    window.setStepObserver([&] {
        using State = frmRangeRunning::RunState;
        const State s = window.runState();
        if (s == State::Finished) {
            std::cout << "Finished\n";
            stop = true;
        } else {
            std::cout << trimmed(window.txtTimer.Caption) << '\n';
            if (s == State::PausedByProgram) {
                std::cout << "Paused\n";
                stop = !options.continueAtPause;
            }
        }
        std::cout.flush();
    });

    window.txtTimer.Caption = std::to_string(options.from);
    window.BtnStart_Click(SteadyClock::now());
    while (!stop && !RangeCarriers::interrupted()) {
        // A Program's pause goes on as Start would, one second after the step that paused.
        const bool paused = window.runState() == frmRangeRunning::RunState::PausedByProgram;
        const auto due = paused ? window.NextTick : window.nextDeadline();
        if (!due) break;
        if (!carriers.wait(due)) break;
        const TimePoint now = SteadyClock::now();
        if (now < *due) continue;
        if (paused)
            window.BtnStart_Click(*due);
        else
            window.onTime(now);
    }
    // The frames of the last step may still wait for the connection or the device's hello.
    carriers.drain();
    window.BtnExit_Click();
    window.QueryUnload();
    window.Unload();
    return RangeCarriers::interrupted() ? 130 : 0;
}

}  // namespace halvane::cli
