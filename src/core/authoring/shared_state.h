#pragma once
// The one process-wide state of the console: settings read from hvn.cfg and what every window shares.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "text/wire_vocabulary.h"

namespace halvane {

struct SharedState {
    static constexpr int kMaxTargets = wire::kMaxTargets;
    static constexpr int kMaxSeconds = wire::kMaxSeconds;
    static constexpr int kNumPorts = 16;

    std::int16_t NumTargets = 0;
    std::int16_t NumCols = 0;
    std::int16_t NumSeconds = 30;
    bool GridLoaded = false;
    bool FileChanged = false;
    std::string FilePath;
    std::string FileTitle;
    std::array<std::int32_t, 202> SerialNum{};  // 0..201, index 0 = no target
    bool StartBottom = true;
    std::string IconSize = "Medium";
    bool UseGroups = false;
    std::int16_t NumGroups = 0;
    std::array<std::int16_t, 201> GroupNum{};  // 0..200
    bool TargetsValid = false;
    std::string ConfigFile;
    std::array<std::int16_t, 201> SelRow{};  // 0..200, index = grid column
    bool TypeNXBox = false;
    bool TypeVMR4000 = false;
    bool TypeLMSeries = false;
    bool RadioLMC = false;
    bool RadioUSB = false;
    bool RadioWiFi = false;
    bool LeftClickIF = false;
    bool RightClickIF = true;
    std::int16_t ComPort = 1;
    std::array<bool, kNumPorts + 1> PortPresent{};  // 1..16
    std::int16_t PortVer = 0;
    std::int16_t PortOk = 0;
    std::vector<std::string> RxBuffer;
    std::array<std::string, 202> ReplyHex;  // 0..201

    // The texts of the Wi-Fi window's server boxes, filled at start-up and kept for the whole run.
    std::string EthernetIP;
    std::string EthernetPort;
};

}  // namespace halvane
