// `target read|write`: the target setup window from the command line, with the window's own models. The
// window's load opens its port or the Wi-Fi link, the entry dialog is answered from the options, and the
// read or write window runs to its end on the carriers' wait, as the console's clock would run it.

#include <algorithm>
#include <iostream>

#include "authoring/about_box.h"
#include "cli/commands.h"
#include "cli/console_operator.h"
#include "cli/range_carriers.h"
#include "scores/target_setup.h"
#include "scores/target_transfer.h"

namespace halvane::cli {

namespace {

// What the progress window shown last came to.
struct Transfer {
    bool shown = false;
    bool finished = false;  // ran to its end, not stopped nor interrupted
    int replies = 0;        // a read's whole replies
    int steps = 0;          // a write's frames sent
};

void runToEnd(TargetTransfer& window, RangeCarriers& carriers, Transfer& outcome) {
    outcome.shown = true;
    while (!window.closed()) {
        if (!carriers.wait(window.nextDeadline())) return;
        window.onTime(SteadyClock::now());
    }
    outcome.finished = !window.stopped();
    if (const auto* read = dynamic_cast<frmRetrieving*>(&window)) outcome.replies = read->replies();
    outcome.steps = window.progress().first;
}

int serialIgnored(const std::string& serial) {
    std::cerr << "serial number " << serial << ": the window takes one to six digits; nothing was sent\n";
    return 2;
}

int read(frmLM_Setup& setup, const TargetOptions& options, const Transfer& outcome) {
    setup.Command1_Click();
    if (RangeCarriers::interrupted()) return 130;
    // The window ignores an entry it cannot split into three bytes.
    if (!outcome.shown) return serialIgnored(options.serial);
    // Not found, or stopped on a fault: the window has said why.
    if (!outcome.finished) return 1;
    for (const target::Parameter& p : target::readOrder())
        std::cout << p.caption << '=' << setup.box(p.index) << '\n';
    std::cout << "SN=" << setup.LBL_SN.Caption.substr(3) << '\n';
    std::cout.flush();
    if (outcome.replies > 0) return 0;
    std::cerr << "warning: no reply from the target\n";
    return 3;
}

int write(frmLM_Setup& setup, const TargetOptions& options, const target::SerialTexts& serial,
          RangeCarriers& carriers, const Transfer& outcome) {
    // The window as a read of that serial number leaves it: the address in LBL_SN, Save enabled.
    setup.SnHigh = serial[0];
    setup.SnMiddle = serial[1];
    setup.SnLow = serial[2];
    setup.LBL_SN.Caption = "SN " + setup.SnHigh + setup.SnMiddle + setup.SnLow;
    setup.Command2.Enabled = true;
    for (const auto& [index, text] : options.boxes) setup.box(index) = text;
    setup.Command2_Click();
    // Wi-Fi frames may still wait for the connection or the device's hello.
    carriers.drain();
    if (RangeCarriers::interrupted()) return 130;
    const bool wifiLost =
        setup.state().RadioWiFi && (setup.radio().wifiWaiting() || setup.radio().wifiDown());
    return outcome.finished && outcome.steps == static_cast<int>(target::kWrites) && !wifiLost ? 0 : 1;
}

}  // namespace

std::optional<TargetOptions> parseTargetOptions(const std::vector<std::string>& args) {
    TargetOptions options;
    if (args.empty() || (args[0] != "read" && args[0] != "write")) {
        std::cerr << "target needs read or write\n";
        return std::nullopt;
    }
    options.write = args[0] == "write";
    for (std::size_t i = 1; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size() && !args[i + 1].empty();
        const auto equals = a.find('=');
        if (a == "--serial" && hasValue) {
            options.serial = args[++i];
        } else if (a == "--number" && hasValue && !options.write) {
            options.number = args[++i];
        } else if (bool bad = false; carrierOption(args, i, options.carriers, bad)) {
            if (bad) return std::nullopt;
        } else if (options.write && equals != std::string::npos) {
            const std::string name = a.substr(0, equals);
            const auto& order = target::readOrder();
            const auto p = std::find_if(order.begin(), order.begin() + target::kWrites,
                                        [&](const target::Parameter& q) { return name == q.caption; });
            if (p == order.begin() + target::kWrites) {
                std::cerr << "no setting a write can name: " << name << '\n';
                return std::nullopt;
            }
            options.boxes.emplace_back(p->index, a.substr(equals + 1));
        } else {
            std::cerr << "unknown or incomplete option: " << a << '\n';
            return std::nullopt;
        }
    }
    if (options.serial.empty() == options.number.empty()) {
        std::cerr << (options.write ? "target write needs --serial S\n"
                                    : "target read needs either --serial S or --number N\n");
        return std::nullopt;
    }
    return options;
}

int targetCommand(const TargetOptions& options, SharedState& state) {
    ConsoleOperator op(std::cerr, Answer::No);
    RangeCarriers carriers(options.carriers, state, op);
    frmLM_Setup setup(state, carriers.port, carriers.names, carriers.wifiLink(), op);
    Transfer outcome;
    op.onShow([&](Window& window) {
        if (auto* entry = dynamic_cast<frmSerialTarget*>(&window)) {
            entry->txtSerialNum = options.serial;
            entry->txtTargetNum = options.number;
            entry->OKButton_Click();
            return true;
        }
        if (auto* transfer = dynamic_cast<TargetTransfer*>(&window)) {
            runToEnd(*transfer, carriers, outcome);
            return true;
        }
        return false;
    });
    try {
        std::optional<target::SerialTexts> serial;
        if (options.write) {
            // The serial number as the entry dialog hands it over, split as a read splits it.
            frmSerialTarget entry(setup);
            entry.txtSerialNum = options.serial;
            entry.OKButton_Click();
            serial = target::splitSerialTag(setup.Tag);
            if (!serial) return serialIgnored(options.serial);
        }
        setup.Load();
        // The window stays open after its port failed to; the command has nothing to go on.
        int status = 1;
        if (!state.RadioUSB || carriers.port.isOpen())
            status =
                serial ? write(setup, options, *serial, carriers, outcome) : read(setup, options, outcome);
        setup.Unload();
        return status;
    } catch (const std::exception& fault) {
        op.critical(fault.what(), kAppTitle);
        setup.Unload();
        return 1;
    }
}

}  // namespace halvane::cli
