#include "cli/options.h"

#include <iostream>

#include "links/port_names.h"

namespace halvane::cli {

std::optional<int> wholeNumber(const std::string& text) {
    const std::size_t digits = text.size() - (!text.empty() && text[0] == '-' ? 1 : 0);
    if (digits == 0 || digits > 9) return std::nullopt;
    for (std::size_t j = text.size() - digits; j < text.size(); ++j)
        if (text[j] < '0' || text[j] > '9') return std::nullopt;
    return std::stoi(text);
}

bool portOption(const std::vector<std::string>& args, std::size_t& i, int& port, std::string& device,
                bool& bad) {
    const std::string& a = args[i];
    if (i + 1 >= args.size() || (a != "--port" && a != "--device")) return false;
    const std::string& value = args[++i];
    if (a == "--device") {
        device = value;
        return true;
    }
    const auto n = wholeNumber(value);
    if (!n || *n < kFirstPort || *n > kLastPort) {
        std::cerr << "--port needs a port number from 1 to 16\n";
        bad = true;
    } else {
        port = *n;
    }
    return true;
}

bool carrierOption(const std::vector<std::string>& args, std::size_t& i, CarrierOptions& options, bool& bad) {
    if (portOption(args, i, options.port, options.device, bad)) return true;
    if (args[i] != "--wifi" || i + 1 >= args.size()) return false;
    options.wifi = args[++i];
    const auto colon = options.wifi.rfind(':');
    if (colon == std::string::npos || colon == 0 || !wholeNumber(options.wifi.substr(colon + 1))) {
        std::cerr << "--wifi needs HOST:PORT\n";
        bad = true;
    }
    return true;
}

}  // namespace halvane::cli
