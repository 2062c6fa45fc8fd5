// `scores`: the hit score window from the command line. A download of the road named, on a freshly
// loaded grid, written as Save writes it; or the window's clear frame, its question answered OK.

#include <fstream>
#include <iostream>

#include "authoring/about_box.h"
#include "cli/commands.h"
#include "cli/console_operator.h"
#include "cli/range_carriers.h"
#include "links/com_port.h"
#include "links/wifi_link.h"
#include "scores/hit_scores.h"
#include "scores/score_files.h"

namespace halvane::cli {

namespace {

int refuse(const std::string& why) {
    std::cerr << why << '\n';
    return 2;
}

// Runs the window's clock until the download or clear is over.
bool runToEnd(FrmHitScores& window, RangeCarriers& carriers) {
    while (window.busy()) {
        if (!carriers.wait(window.nextDeadline())) return false;
        window.onTime(SteadyClock::now());
    }
    return true;
}

// The grid as Save writes it, to the file named or to standard output.
int writeGrid(const FrmHitScores& window, const ScoresOptions& options, WorkbookWriter* workbooks) {
    if (options.format == "xls") {
        const std::string error = workbooks->write(options.output, scoreCells(window.Grid));
        if (error.empty()) return 0;
        std::cerr << error << '\n';
        return 1;
    }
    const std::string bytes = options.format == "txt" ? scoresTxt(window.Grid) : scoresCsv(window.Grid);
    if (options.output.empty()) {
        std::cout << bytes;
        std::cout.flush();
        return std::cout ? 0 : 1;
    }
    std::ofstream out(options.output, std::ios::binary | std::ios::trunc);
    out << bytes;
    out.close();
    if (out) return 0;
    std::cerr << "The scores could not be written to " << options.output << ".\n";
    return 1;
}

}  // namespace

std::optional<ScoresOptions> parseScoresOptions(const std::vector<std::string>& args) {
    ScoresOptions options;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size() && !args[i + 1].empty();
        if (a == "--clear") {
            options.clear = true;
        } else if (a == "--from" && hasValue && (args[i + 1] == "transmitter" || args[i + 1] == "radio")) {
            options.from = args[++i];
        } else if (a == "--format" && hasValue &&
                   (args[i + 1] == "csv" || args[i + 1] == "txt" || args[i + 1] == "xls")) {
            options.format = args[++i];
        } else if (a == "-o" && hasValue) {
            options.output = args[++i];
        } else if (bool bad = false; carrierOption(args, i, options.carriers, bad)) {
            if (bad) return std::nullopt;
        } else {
            std::cerr << "unknown or incomplete option: " << a << '\n';
            return std::nullopt;
        }
    }
    if (options.clear == !options.from.empty()) {
        std::cerr << "scores needs either --from transmitter|radio or --clear\n";
        return std::nullopt;
    }
    return options;
}

int scoresCommand(const ScoresOptions& options, SharedState& state, WorkbookWriter* workbooks) {
    const bool radio = state.RadioUSB || state.RadioWiFi;
    // Refused before any traffic.
    if (options.from == "transmitter" && !state.RadioLMC)
        return refuse("the settings offer no transmitter to download scores from (LMC-Radio is off)");
    if (options.from == "radio" && !radio)
        return refuse(
            "the settings offer no radio to ask the targets with (USB-Radio and WiFi-Radio are off)");
    if (options.format == "xls" && options.output.empty())
        return refuse("--format xls writes a workbook: name its file with -o");
    if (options.format == "xls" && !workbooks) return refuse("this build writes no workbooks");

    ConsoleOperator op(std::cerr, Answer::Ok);
    RangeCarriers carriers(options.carriers, state, op);
    ComPortModule comPort(state, carriers.port, carriers.names, op);
    FrmHitScores window(state, &comPort, carriers.wifiLink(), op, workbooks);
    op.onShow([&](Window& shown) {
        auto* option = dynamic_cast<frmHitScore_Option*>(&shown);
        if (!option) return false;
        if (options.from == "transmitter")
            option->cmd_LMC_Click();
        else
            option->cmd_USB_Click();
        return true;
    });
    window.Load();
    using Outcome = FrmHitScores::Outcome;
    if (options.clear) {
        window.CmdClear_Click(SteadyClock::now());
        if (!runToEnd(window, carriers)) return 130;
        carriers.drain();
        WifiLink* wifi = carriers.wifiLink();
        const bool wifiLost =
            !state.RadioUSB && state.RadioWiFi && wifi && wifi->state() != TcpSocket::Connected;
        const bool reached = window.outcome() == Outcome::Done && !wifiLost;
        if (!reached && window.outcome() == Outcome::Done)
            std::cerr << "The clear frame did not reach the Wi-Fi device.\n";
        window.Unload();
        return reached || (!radio) ? 0 : 1;
    }
    window.CmdDownload_Click(SteadyClock::now());
    if (!runToEnd(window, carriers)) return 130;
    window.Unload();
    const Outcome outcome = window.outcome();
    const bool anyRead = options.from == "transmitter" ? outcome == Outcome::Done : window.answered() > 0;
    if (outcome == Outcome::Done) return writeGrid(window, options, workbooks);
    // A link lost in the middle of a round: what was read is written all the same.
    if (anyRead && (outcome == Outcome::LinkDown || outcome == Outcome::LineLost)) {
        writeGrid(window, options, workbooks);
        return 1;
    }
    return 1;
}

}  // namespace halvane::cli
