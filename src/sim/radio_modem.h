#pragma once
// The USB radio modem on a serial line. In data mode it is transparent: what the console writes goes
// on the air to every target on the modem's channel, and their replies come back as they are, each
// due when the frame that asked for it is complete.
//
// Command mode is entered by "+++" with a guard time of kGuard on both sides: the first "+" must
// follow kGuard of silence on the line (or be the first byte the modem hears), and no byte may follow
// the third for kGuard. The modem then answers "OK" CR, kGuard after the third "+". A "+" that turns
// out not to start an escape goes on the air with the bytes after it. The guard is shorter than the
// factory's second, so that the console's probe, which waits one second for the answer, finds it.
//
// In command mode lines end in CR; LF and other control bytes are ignored, blanks dropped, letters
// taken in either case. Each line is answered with CR at its end:
//
//   AT      "OK"
//   ATHP    the channel as a hexadecimal digit: "3" CR
//   ATHPn   n a hexadecimal number 0..6: the channel becomes n at once, "OK"; otherwise "ERROR"
//   ATWR    "OK" (the channel is kept in any case; the simulated modem has no power to lose)
//   ATCN    "OK", and back to data mode
//   other   "ERROR"
//
// Without a command line for kCommandTimeout the modem falls back to data mode by itself. The modem
// starts in data mode on channel 0.

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "sim/device.h"
#include "sim/frame_splitter.h"
#include "sim/range.h"
#include "sim/reply_queue.h"

namespace halvane::sim {

// The radio modem: a transparent link to the targets on its channel, set with AT commands.
class RadioModem : public Device {
  public:
    static constexpr std::chrono::milliseconds kGuard{100};
    static constexpr std::chrono::seconds kCommandTimeout{10};
    static constexpr int kMaxChannel = 6;

    RadioModem(Range& range, Faults faults) : m_range(range), m_out(faults) {}

    std::string name() const override { return "radio"; }
    void receive(std::string_view bytes, TimePoint now) override;
    std::vector<std::string> takeDue(TimePoint now) override;
    std::optional<TimePoint> nextDue() const override;

    int channel() const { return m_channel; }
    bool inCommandMode() const { return m_commandMode; }

  private:
    void settle(TimePoint now);
    void onCommandLine(TimePoint now);

    Range& m_range;
    ReplyQueue m_out;
    FrameSplitter m_air;
    int m_channel = 0;
    bool m_commandMode = false;
    int m_plusHeld = 0;  // "+" bytes after a guard that may yet be an escape
    bool m_heardAny = false;
    TimePoint m_lastByteAt{};
    TimePoint m_lastCommandAt{};
    std::string m_line;
};

}  // namespace halvane::sim
