#pragma once
// Serial port numbers 1 to 16 and the devices behind them.

#include <array>
#include <string>

namespace halvane {

inline constexpr int kFirstPort = 1;
inline constexpr int kLastPort = 16;

// The device name of each port number: "COMn" on Windows; on Linux a default per number
// (1-4 /dev/ttyS0-3, 5-12 /dev/ttyUSB0-7, 13-16 /dev/ttyACM0-3), which hvn.cfg can override in the
// section "Port Names" with keys "COM1" to "COM16" (a value such as "/dev/pts/4").
class PortNames {
  public:
    PortNames();
    // Reads the overrides from a configuration file; a missing file or key keeps the default.
    void readOverrides(const std::string& configFile);
    // The device of a port number; "" outside 1 to 16.
    std::string device(int port) const;
    void setDevice(int port, std::string device);
    static std::string defaultDevice(int port);

    static constexpr const char* kSection = "Port Names";

  private:
    std::array<std::string, kLastPort + 1> m_devices;
};

}  // namespace halvane
