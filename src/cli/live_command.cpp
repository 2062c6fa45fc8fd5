// `live`: one command of the live window from the command line, with the window's own model: it opens
// the carriers as the window's load does, presses an all-target button or marks tiles and chooses the
// popup command, and closes as the window's unload does.

#include <algorithm>
#include <iostream>

#include "authoring/about_box.h"
#include "cli/commands.h"
#include "cli/console_operator.h"
#include "cli/range_carriers.h"
#include "range/live_mode.h"
#include "text/fault.h"

namespace halvane::cli {

namespace {

struct ActionWord {
    const char* word;
    wire::Action action;
};
constexpr ActionWord kActionWords[] = {{"friend", wire::Action::Friend},
                                       {"foe", wire::Action::Foe},
                                       {"edge", wire::Action::Edge},
                                       {"down", wire::Action::Down}};

void pressAllTargetsButton(frmLiveMode& window, wire::Action action, TimePoint now) {
    switch (action) {
        case wire::Action::Friend:
            return window.BtnFriend_Click(now);
        case wire::Action::Foe:
            return window.BtnFoe_Click(now);
        case wire::Action::Edge:
            return window.BtnEdge_Click(now);
        case wire::Action::Down:
            return window.BtnDown_Click(now);
    }
}

// Ctrl and the left button mark a tile and never open the popup, whichever click setting is in force.
void commandMarkedTargets(frmLiveMode& window, const LiveOptions& options, TimePoint now) {
    for (const int target : options.targets)
        window.PicTarget_MouseDown(target, frmLiveMode::kLeftButton, frmLiveMode::kCtrl, now);
    const auto& items = frmLiveMode::kPopupItems;
    const auto item = std::find_if(items.begin(), items.end(), [&](const frmLiveMode::PopupCommand& p) {
        return p.action == options.action;
    });
    window.popupItem_Click(item->name, now);
}

}  // namespace

std::optional<LiveOptions> parseLiveOptions(const std::vector<std::string>& args) {
    LiveOptions options;
    const auto word = std::find_if(std::begin(kActionWords), std::end(kActionWords),
                                   [&](const ActionWord& w) { return !args.empty() && args[0] == w.word; });
    if (word == std::end(kActionWords)) {
        std::cerr << "live needs friend, foe, edge or down\n";
        return std::nullopt;
    }
    options.action = word->action;
    for (std::size_t i = 1; i < args.size(); ++i) {
        if (const auto target = wholeNumber(args[i])) {
            options.targets.push_back(*target);
        } else if (bool bad = false; carrierOption(args, i, options.carriers, bad)) {
            if (bad) return std::nullopt;
        } else {
            std::cerr << "unknown or incomplete option: " << args[i] << '\n';
            return std::nullopt;
        }
    }
    return options;
}

int liveCommand(const LiveOptions& options, SharedState& state) {
    for (const int target : options.targets) {
        if (target < 1 || target > wire::kMaxTargets) {
            std::cerr << "target " << target << ": target numbers run from 1 to " << wire::kMaxTargets
                      << '\n';
            return 2;
        }
    }
    ConsoleOperator op(std::cerr, Answer::No);
    NoPositions positions;
    RangeCarriers carriers(options.carriers, state, op);
    frmLiveMode window(state, carriers.port, carriers.names, carriers.wifiSend(), op, positions);
    try {
        // The range's size as the load will take it, judged before the load sends anything.
        window.view().guard();
        for (const int target : options.targets) {
            if (target > state.NumTargets) {
                std::cerr << "target " << target << ": the range has " << state.NumTargets << " targets\n";
                return 2;
            }
        }
        window.Load();
        if (window.PortError) return 1;
        const bool lineOpened = carriers.port.isOpen();
        const TimePoint now = SteadyClock::now();
        if (options.targets.empty())
            pressAllTargetsButton(window, options.action, now);
        else
            commandMarkedTargets(window, options, now);
        carriers.drain();
        window.BtnExit_Click();
        window.QueryUnload();
        // A line lost under the frames closed the port, and the window has told why.
        const bool lost = lineOpened && !carriers.port.isOpen();
        window.Unload();
        if (RangeCarriers::interrupted()) return 130;
        return lost ? 1 : 0;
    } catch (const Fault& fault) {
        op.critical(fault.what(), kAppTitle);
        return 1;
    }
}

}  // namespace halvane::cli
