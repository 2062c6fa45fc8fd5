#include "links/port_names.h"

#include "authoring/profile_file.h"

namespace halvane {

PortNames::PortNames() {
    for (int port = kFirstPort; port <= kLastPort; ++port)
        m_devices[static_cast<std::size_t>(port)] = defaultDevice(port);
}

std::string PortNames::defaultDevice(int port) {
    if (port < kFirstPort || port > kLastPort) return {};
#ifdef _WIN32
    return "COM" + std::to_string(port);
#else
    if (port <= 4) return "/dev/ttyS" + std::to_string(port - 1);
    if (port <= 12) return "/dev/ttyUSB" + std::to_string(port - 5);
    return "/dev/ttyACM" + std::to_string(port - 13);
#endif
}

void PortNames::readOverrides(const std::string& configFile) {
    const std::string content = readProfileFile(configFile);
    for (int port = kFirstPort; port <= kLastPort; ++port) {
        std::string device = profileRead(content, kSection, "COM" + std::to_string(port));
        if (!device.empty()) m_devices[static_cast<std::size_t>(port)] = std::move(device);
    }
}

std::string PortNames::device(int port) const {
    if (port < kFirstPort || port > kLastPort) return {};
    return m_devices[static_cast<std::size_t>(port)];
}

void PortNames::setDevice(int port, std::string device) {
    if (port >= kFirstPort && port <= kLastPort)
        m_devices[static_cast<std::size_t>(port)] = std::move(device);
}

}  // namespace halvane
