#pragma once
// A serial port on a virtual clock wired to a simulated device, so that a dialogue runs through the
// DialogueRunner as the windows and the command line run it. The carrier can be fast (the device's
// answer is in before write() returns, as on a pty with a quick simulator), and the line can be
// unplugged after the device's n-th reply: the port then closes itself, as the adapters do.

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "../core/scripted_operator.h"
#include "links/dialogue_runner.h"
#include "links/serial_port.h"
#include "sim/device.h"

namespace halvane::testing {

class VirtualPort : public SerialPort {
  public:
    struct Options {
        bool fast = false;    // answers arrive within the write that asks for them
        int unplugAfter = 0;  // the line goes after the device's n-th reply (0: never)
    };

    VirtualPort(sim::Device& device, Options options) : m_device(device), m_options(options) {}

    bool open(const std::string& name) override {
        if (m_open || m_unplugged) return false;
        m_open = true;
        m_name = name;
        return true;
    }
    void close() override {
        m_open = false;
        m_name.clear();
    }
    bool isOpen() const override { return m_open; }
    std::string deviceName() const override { return m_name; }
    bool write(std::string_view bytes) override {
        if (!m_open) {
            writtenWhileClosed += bytes;
            return false;
        }
        written += bytes;
        writes.push_back({now, std::string(bytes)});
        m_device.receive(bytes, now);
        if (m_options.fast) collect();
        return true;
    }
    void dropInput() override {}
    void dropOutput() override {}
    void setRts(bool) override {}
    void setDtr(bool) override {}

    // Runs the dialogue through a runner until it ends or `limit` of virtual time has passed.
    void run(Dialogue& dialogue, Operator& op, std::chrono::seconds limit = std::chrono::seconds(300)) {
        DialogueRunner runner(dialogue, *this, op, [this] { return now; });
        const TimePoint start = now;
        runner.start(now);
        while (!runner.finished() && now - start < limit) {
            TimePoint next = now + std::chrono::milliseconds(100);
            if (const auto deadline = runner.nextDeadline()) next = std::min(next, *deadline);
            if (const auto due = m_device.nextDue()) next = std::min(next, *due);
            now = std::max(now + std::chrono::microseconds(1), next);
            collect();
            runner.tick(now);
        }
    }

    // Runs a window's clock until `done`, delivering the device's replies as they fall due.
    void run(TimedMachine& machine, const std::function<bool()>& done,
             std::chrono::seconds limit = std::chrono::seconds(300)) {
        const TimePoint start = now;
        while (!done() && now - start < limit) {
            TimePoint next = now + std::chrono::milliseconds(100);
            if (const auto deadline = machine.nextDeadline()) next = std::min(next, *deadline);
            if (const auto due = m_device.nextDue()) next = std::min(next, *due);
            now = std::max(now + std::chrono::microseconds(1), next);
            collect();
            machine.onTime(now);
        }
    }

    TimePoint now{std::chrono::hours(1)};
    std::vector<std::pair<TimePoint, std::string>> writes;  // each write, when it was made
    std::string written;                                    // what reached the device
    std::string writtenWhileClosed;  // what a dialogue tried to write on the closed port
    int replies = 0;
    TimePoint unpluggedAt{};

  private:
    // Delivers the device's replies due by now. The line goes once the reply it was told has been taken.
    void collect() {
        if (m_unplugged) return;
        if (m_options.unplugAfter && replies >= m_options.unplugAfter) {
            m_unplugged = true;
            unpluggedAt = now;
            close();
            reportLost("unplugged");
            return;
        }
        for (auto& chunk : m_device.takeDue(now)) {
            deliver(chunk);
            if (++replies == m_options.unplugAfter) return;
        }
    }

    sim::Device& m_device;
    Options m_options;
    bool m_open = false;
    bool m_unplugged = false;
    std::string m_name;
};

// Runs the dialogue on a port of its own, open from the start; gives what reached the device.
inline std::string runOpen(sim::Device& device, Dialogue& dialogue, Operator& op,
                           VirtualPort::Options options = {}) {
    VirtualPort port(device, options);
    port.open("/dev/ttyS0");
    port.run(dialogue, op);
    return port.written;
}

}  // namespace halvane::testing
