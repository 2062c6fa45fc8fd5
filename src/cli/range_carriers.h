#pragma once
// The carriers of a command that drives a range window or the target setup window: the window's own serial
// port under the options' name, the Wi-Fi link at the options' address, and the one wait on the line, the
// socket and a deadline. SIGINT and SIGTERM are caught for the carriers' life and end a wait.

#include <signal.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "authoring/shared_state.h"
#include "authoring/window_position.h"
#include "cli/options.h"
#include "cli/posix_serial_port.h"
#include "links/port_names.h"
#include "range/range_port.h"

namespace halvane {
class Operator;
class WifiLink;
}  // namespace halvane

namespace halvane::cli {

class RangeCarriers {
  public:
    // Sets ComPort and its device from the options; the Wi-Fi link exists only when the settings put
    // frames on it.
    RangeCarriers(const CarrierOptions& options, SharedState& state, Operator& op);
    ~RangeCarriers();
    RangeCarriers(const RangeCarriers&) = delete;
    RangeCarriers& operator=(const RangeCarriers&) = delete;

    PosixSerialPort port;
    PortNames names;
    // Hands a frame to the Wi-Fi link; empty without one.
    RangePort::WifiSend wifiSend();
    // The Wi-Fi link itself, for a window that listens to it too; nothing without one.
    WifiLink* wifiLink();

    // Waits until `deadline` (for ever without one, until a signal) or until the line or the socket
    // has something to say, and lets the Wi-Fi link act on the time. False when a signal came.
    bool wait(std::optional<TimePoint> deadline);
    // Lets the frames handed to the Wi-Fi link leave before the command closes: they may still wait
    // for the connection or the device's hello.
    void drain();
    static bool interrupted();

  private:
    struct Wifi;
    bool arm(std::optional<TimePoint> deadline);

    std::unique_ptr<Wifi> m_wifi;
    int m_timer;
    sigset_t m_before;
    sigset_t m_during;
};

// Window positions mean nothing on the command line.
class NoPositions : public PositionStore {
  public:
    std::vector<std::pair<std::string, std::string>> GetAllSettings(const std::string&,
                                                                    const std::string&) override {
        return {};
    }
    void SaveSetting(const std::string&, const std::string&, const std::string&,
                     const std::string&) override {}
};

}  // namespace halvane::cli
