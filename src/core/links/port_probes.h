#pragma once
// One question put to every present serial port, to find out what sits behind it: the port is opened,
// left still for a tenth of a second, asked, and given a fixed time for the answer that names the
// device; then it is closed. Several ports may be asked at once: what each device hears, what counts
// as its answer and which ports answered are the same as when they are asked one by one in rising
// order, only the waits overlap. Opening or closing a port can take milliseconds, so each call does at
// most one of each and leaves the rest due at once: the window paints between them.

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "links/port_names.h"
#include "links/serial_port.h"
#include "links/timed_machine.h"

namespace halvane {

struct ProbeQuestion {
    std::string asked;                // what goes out once the port has settled
    std::string answer;               // the first characters of the answer that names the device
    std::chrono::milliseconds limit;  // from the question, for the whole answer
    std::string afterAnswer;          // sent when the answer came ("" for nothing)
};

// The transmitter in its PC mode answers "?" with its version; the radio modem answers the command mode
// escape with "OK" and is sent back to data mode at once.
inline const ProbeQuestion kTransmitterProbe{"?\r\n", "VER", std::chrono::milliseconds(100), ""};
inline const ProbeQuestion kRadioProbe{"+++", "OK", std::chrono::milliseconds(1000), "ATCN\r\n"};

class PortProbes : public TimedMachine {
  public:
    using PortFactory = std::function<std::unique_ptr<SerialPort>()>;
    static constexpr std::chrono::milliseconds kSettle{100};

    // What a port that will not open means: a failure the operator is told, or, when the opening is
    // also the scan of which ports exist, a port that is absent.
    enum class Opening { Told, Scan };

    // `ports` in rising order; at most `atOnce` are asked at the same time (1: one by one). The clock
    // stamps what comes off the lines: a character that comes after its port's time is up is no answer.
    PortProbes(ProbeQuestion question, Opening opening, std::vector<int> ports, const PortNames& names,
               PortFactory newPort, std::function<TimePoint()> clock, int atOnce);
    ~PortProbes() override;
    PortProbes(const PortProbes&) = delete;
    PortProbes& operator=(const PortProbes&) = delete;

    void start(TimePoint now);
    std::optional<TimePoint> nextDeadline() const override;
    void onTime(TimePoint now) override;

    bool done() const;
    // The ports that opened, rising.
    std::vector<int> opened() const;
    // The ports whose device gave the answer, rising.
    std::vector<int> answered() const;
    // The ports that could not be asked, rising, each with what the operator is to be told.
    std::vector<std::pair<int, std::string>> failures() const;
    // The ports being asked now, rising.
    std::vector<int> underWay() const;

  private:
    struct Probe;
    // Opens the next port to ask, if one may be asked now.
    void launch(TimePoint now);
    bool mayLaunch() const;
    void ask(Probe& probe, TimePoint now);
    void received(Probe& probe, std::string_view bytes);
    void finish(Probe& probe, std::string failure = {});

    ProbeQuestion m_question;
    Opening m_opening;
    const PortNames& m_names;
    PortFactory m_newPort;
    std::function<TimePoint()> m_clock;
    int m_atOnce;
    std::vector<std::unique_ptr<Probe>> m_probes;  // one per port, in rising order
    std::size_t m_next = 0;                        // the first probe not yet started
};

}  // namespace halvane
