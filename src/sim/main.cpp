// halvane-sim: a simulated range on pseudo-terminals and a loopback TCP port, for the console and for
// end-to-end tests.

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <signal.h>

#include "sim/devices.h"
#include "sim/range.h"
#include "sim/server/sim_server.h"

using namespace halvane::sim;

namespace {

constexpr const char* kUsage =
    "usage: halvane-sim [OPTION]...\n"
    "Serves a simulated range: the serial devices each on a pseudo-terminal, the Wi-Fi device on\n"
    "127.0.0.1. Prints NAME=/dev/pts/N for each pty and wifi=127.0.0.1:PORT, then a log of every\n"
    "chunk: seconds since start, device, in (from the console) or out (to it), the bytes in hex.\n"
    "Ends on SIGINT or SIGTERM.\n"
    "\n"
    "  --targets N             targets on the range, 1 to 200 (default 8)\n"
    "  --serial N=S            serial number S for target N (default 100000 + N); repeatable\n"
    "  --device NAME           put NAME on a pty: transmitter, radio or line; repeatable\n"
    "                          (default: all three)\n"
    "  --tcp-port P            the Wi-Fi device's port (default 0: any free port)\n"
    "  --link DIR              also link each pty as DIR/NAME\n"
    "  --no-pace               bytes cross the ptys at once, not at the real 9600 baud\n"
    "  --pace                  bytes cross the ptys at the real 9600 baud (the default)\n"
    "  --fault DEVICE:FAULT    make DEVICE (transmitter, radio, line, wifi) misbehave; repeatable:\n"
    "                          silent          read everything, answer nothing\n"
    "                          wrong-sum       every sum the transmitter sends is off by one\n"
    "                          refuse-block=N  the transmitter refuses block N of a send\n"
    "                          late=MS         every reply starts MS milliseconds late\n"
    "                          split           every reply comes in two pieces, 50 ms apart\n"
    "                          drop-after=N    the Wi-Fi device hangs up after N frames\n"
    "  --quiet                 no log\n"
    "  --help                  this text\n"
    "  --version               the name and the version\n";

const std::vector<std::string> kPtyDevices = {"transmitter", "radio", "line"};

std::atomic<SimServer*> signalTarget{nullptr};

void onSignal(int) {
    if (SimServer* server = signalTarget.load()) server->stop();
}

std::optional<int> parseInt(std::string_view text, int low, int high) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < low || value > high)
        return std::nullopt;
    return value;
}

// "late=250" and the like into `faults`; false if the text is no fault.
bool parseFault(std::string_view text, Faults& faults) {
    const auto equals = text.find('=');
    const std::string_view name = text.substr(0, equals);
    const std::optional<int> value =
        equals == std::string_view::npos ? std::nullopt : parseInt(text.substr(equals + 1), 0, 1000000);
    if (equals == std::string_view::npos) {
        if (name == "silent") return faults.silent = true;
        if (name == "wrong-sum") return faults.wrongSum = true;
        if (name == "split") return faults.splitReplies = true;
        return false;
    }
    if (!value) return false;
    if (name == "refuse-block")
        faults.refuseBlock = *value;
    else if (name == "late")
        faults.lateBy = std::chrono::milliseconds(*value);
    else if (name == "drop-after")
        faults.dropAfterFrames = *value;
    else
        return false;
    return true;
}

int usage(const std::string& problem) {
    std::cerr << "halvane-sim: " << problem << '\n' << kUsage;
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    int targets = 8;
    std::map<int, std::int32_t> serials;
    std::vector<std::string> devices;
    std::map<std::string, Faults, std::less<>> faults;
    SimServer::Options options;
    int tcpPort = 0;
    bool quiet = false;

    const std::vector<std::string_view> args(argv + 1, argv + argc);
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string_view arg = args[i];
        if (arg == "--help" || arg == "-h") {
            std::cout << kUsage;
            return 0;
        }
        if (arg == "--version") {
            std::cout << "halvane-sim " HALVANE_VERSION "\n";
            return 0;
        }
        if (arg == "--pace" || arg == "--no-pace") {
            options.pace = arg == "--pace";
            continue;
        }
        if (arg == "--quiet") {
            quiet = true;
            continue;
        }
        if (i + 1 == args.size()) return usage("unknown option or missing value: " + std::string(arg));
        const std::string_view value = args[++i];
        const std::string bad = "bad " + std::string(arg) + " " + std::string(value);
        if (arg == "--targets") {
            const auto n = parseInt(value, 1, Range::kMaxTargets);
            if (!n) return usage(bad);
            targets = *n;
        } else if (arg == "--serial") {
            const auto equals = value.find('=');
            const auto target = parseInt(value.substr(0, equals), 1, Range::kMaxTargets);
            const auto serial = equals == std::string_view::npos
                                    ? std::nullopt
                                    : parseInt(value.substr(equals + 1), 0, 999998);
            if (!target || !serial) return usage(bad);
            serials[*target] = *serial;
        } else if (arg == "--device") {
            if (std::find(kPtyDevices.begin(), kPtyDevices.end(), value) == kPtyDevices.end())
                return usage(bad);
            if (std::find(devices.begin(), devices.end(), value) == devices.end())
                devices.emplace_back(value);
        } else if (arg == "--tcp-port") {
            const auto port = parseInt(value, 0, 65535);
            if (!port) return usage(bad);
            tcpPort = *port;
        } else if (arg == "--link") {
            options.linkDir = value;
        } else if (arg == "--fault") {
            const auto colon = value.find(':');
            const std::string device(value.substr(0, colon));
            if (colon == std::string_view::npos ||
                (device != "wifi" &&
                 std::find(kPtyDevices.begin(), kPtyDevices.end(), device) == kPtyDevices.end()))
                return usage(bad);
            if (!parseFault(value.substr(colon + 1), faults[device])) return usage(bad);
        } else {
            return usage("unknown option: " + std::string(arg));
        }
    }
    if (devices.empty()) devices = kPtyDevices;
    for (const auto& [target, serial] : serials)
        if (target > targets)
            return usage("--serial for target " + std::to_string(target) + " of " + std::to_string(targets));

    std::vector<std::int32_t> serialNumbers;
    for (int target = 1; target <= targets; ++target)
        serialNumbers.push_back(serials.count(target) ? serials[target] : 100000 + target);
    try {
        Range range(targets, serialNumbers);
        SimServer server(options);
        for (const auto& name : kPtyDevices) {
            if (std::find(devices.begin(), devices.end(), name) == devices.end()) continue;
            auto device = name == "transmitter" ? makeTransmitter(range, faults[name])
                          : name == "radio"     ? makeRadioModem(range, faults[name])
                                                : makeLineController(range, faults[name]);
            std::cout << name << '=' << server.addPty(name, std::move(device)) << '\n';
        }
        const Faults wifiFaults = faults["wifi"];
        const auto port = server.listenTcp([&range, wifiFaults] { return makeWifiBridge(range, wifiFaults); },
                                           static_cast<std::uint16_t>(tcpPort));
        if (!quiet)
            server.setLog([](const LogEntry& entry) { std::cout << formatLogEntry(entry) << std::endl; });
        // Ready for a signal before anyone reading the addresses below can send one.
        signalTarget = &server;
        struct sigaction action {};
        action.sa_handler = onSignal;
        sigemptyset(&action.sa_mask);
        sigaction(SIGINT, &action, nullptr);
        sigaction(SIGTERM, &action, nullptr);
        // A reader of the log that goes away must not take the simulator with it.
        std::signal(SIGPIPE, SIG_IGN);
        std::cout << "wifi=127.0.0.1:" << port << std::endl;
        server.run();
        signalTarget = nullptr;
    } catch (const std::exception& error) {
        std::cerr << "halvane-sim: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
