// `radio read|set`: the radio setup window from the command line. Its boxes are filled from the
// arguments, its button is clicked, and its progress window runs its three seconds on the line's wait.

#include <algorithm>
#include <iostream>
#include <thread>

#include "cli/commands.h"
#include "cli/console_operator.h"
#include "cli/posix_serial_port.h"
#include "links/com_port.h"
#include "links/radio_setup.h"
#include "links/sending_radio.h"

namespace halvane::cli {

namespace {

void runToEnd(frmSendingRadio& window, PosixSerialPort& port) {
    using namespace std::chrono;
    while (!window.closed()) {
        auto wait = milliseconds(100);
        if (const auto deadline = window.nextDeadline())
            wait = std::clamp(duration_cast<milliseconds>(*deadline - steady_clock::now()) + milliseconds(1),
                              milliseconds(0), wait);
        if (port.isOpen())
            port.waitAndDeliver(wait);
        else
            std::this_thread::sleep_for(wait);
        window.onTime(steady_clock::now());
    }
}

bool allDigits(const std::string& text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

std::optional<RadioOptions> parseRadioOptions(const std::vector<std::string>& args) {
    RadioOptions options;
    std::size_t i = 1;
    if (!args.empty() && args[0] == "set" && args.size() >= 2) {
        options.set = true;
        options.channel = args[1];
        i = 2;
    } else if (args.empty() || args[0] != "read") {
        std::cerr << "radio needs read or set CHANNEL\n";
        return std::nullopt;
    }
    bool usb = false;
    for (; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--usb") {
            usb = true;
        } else if (a == "--target" && i + 1 < args.size()) {
            options.serial = args[++i];
            // The serial number box takes digits and nothing else.
            if (!allDigits(options.serial)) {
                std::cerr << "--target needs the serial number's digits\n";
                return std::nullopt;
            }
        } else if (bool bad = false; portOption(args, i, options.port, options.device, bad)) {
            if (bad) return std::nullopt;
        } else {
            std::cerr << "unknown or incomplete option: " << a << '\n';
            return std::nullopt;
        }
    }
    if (usb == !options.serial.empty()) {
        std::cerr << "radio needs either --usb or --target SERIAL\n";
        return std::nullopt;
    }
    return options;
}

int radioCommand(const RadioOptions& options, SharedState& state) {
    ConsoleOperator op(std::cerr, Answer::No);
    PosixSerialPort port;
    PortNames names;
    names.readOverrides(state.ConfigFile);
    if (!options.device.empty()) names.setDevice(options.port, options.device);
    ComPortModule comPort(state, port, names, op);
    frmRadioSetup setup(state, comPort, op);
    op.onShow([&port](Window& window) {
        auto* sending = dynamic_cast<frmSendingRadio*>(&window);
        if (sending) runToEnd(*sending, port);
        return sending != nullptr;
    });
    setup.Load();
    setup.CmbRadio = options.serial.empty() ? frmRadioSetup::kUSB : frmRadioSetup::kLM47;
    setup.CmbRadio_Click();
    setup.txtLMSN = options.serial;
    setup.cmbComPort = std::to_string(options.port);
    if (options.set) {
        setup.cmbchannel = options.channel;
        setup.Command1_Click();
    } else {
        setup.Command3_Click();
    }
    using Result = frmRadioSetup::Result;
    switch (setup.result()) {
        case Result::Done:
            std::cout << "Channel=" << setup.cmbchannel << '\n';
            return std::cout.flush() ? 0 : 1;
        case Result::Refused:
            return 2;
        case Result::NoReply:
            // The USB radio's silence has been told; the target's is silent in the window.
            if (setup.lm47()) std::cerr << "no reply from the target\n";
            return 1;
        case Result::NoFrame:
            std::cerr << "no frame went out: hvn.cfg names no serial radio or line controller\n";
            return 1;
        default:
            return 1;
    }
}

}  // namespace halvane::cli
