#pragma once
// What the device commands of halvane-cli read from their options alike.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace halvane::cli {

// A whole decimal number and nothing else ("7", "-2"); nothing for anything else.
std::optional<int> wholeNumber(const std::string& text);

// `--port N` (1 to 16) and `--device PATH` at args[i]: true when it is one of them, with `i` moved onto
// its value; `bad` is set, and stderr told, when the value cannot be used.
bool portOption(const std::vector<std::string>& args, std::size_t& i, int& port, std::string& device,
                bool& bad);

// Where the commands that drive a range send their frames, over what the configuration says.
struct CarrierOptions {
    int port = 0;        // --port N (0: ComPort of the configuration)
    std::string device;  // --device PATH (over --port)
    std::string wifi;    // --wifi HOST:PORT (else EthernetIP and EthernetPort)
};

// `--port`, `--device` or `--wifi` at args[i], as portOption reads its two.
bool carrierOption(const std::vector<std::string>& args, std::size_t& i, CarrierOptions& options, bool& bad);

}  // namespace halvane::cli
