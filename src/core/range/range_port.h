#pragma once
// The serial port and Wi-Fi link of a range window (run or live): opening the port as the settings
// ask, and sending the frames of target commands on their carriers.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "authoring/control.h"
#include "authoring/shared_state.h"
#include "links/command_frames.h"
#include "links/port_names.h"
#include "links/serial_port.h"
#include "links/timed_read.h"

namespace halvane {

class Operator;

// The hit score buttons of a range window as the settings have them: enabled for LM series targets,
// hidden with groups.
void showHitScoreButtons(const SharedState& state, Control& get, Control& clear);

class RangePort {
  public:
    // Hands one Wi-Fi frame (its leading zero included) to the Wi-Fi link; never waits.
    using WifiSend = std::function<void(std::string_view frame, TimePoint now)>;

    RangePort(SharedState& state, SerialPort& port, const PortNames& names, WifiSend wifi, Operator& op);

    enum class Opening { NotNeeded, Opened, Failed };
    // Opens the window's own port when the settings need one (a line controller wins over the USB
    // radio, which it switches off), RTS and DTR off, both buffers dropped. A port that will not open
    // is told as "Comm Port n in use or invalid".
    Opening open();
    bool isOpen() const { return m_port.isOpen(); }
    void close();

    // `received` hears the bytes that come, `lost` the line vanish under the open port.
    void listen(std::function<void(std::string_view bytes)> received, std::function<void()> lost);
    void stopListening() { m_port.stopListening(); }
    // Both do nothing on a closed port.
    void dropInput();
    void dropOutput();

    // Serial frames wait for flush(), so the frames of one command go back to back; Wi-Fi frames go
    // at once. Serial frames meet a closed port as nothing.
    void queue(const std::vector<Frame>& frames, TimePoint now);
    void queueSerial(std::string bytes) { m_serialOut += bytes; }
    // False when the open port would not take the bytes: the caller treats that as a lost line.
    bool flush();
    void discard() { m_serialOut.clear(); }

    // "Comm Port n: the line went away (why). " and then `after`.
    std::string lostMessage(const std::string& after) const;

  private:
    SharedState& m_state;
    SerialPort& m_port;
    const PortNames& m_names;
    WifiSend m_wifi;
    Operator& m_operator;
    std::string m_serialOut;
};

}  // namespace halvane
