#pragma once
// Simulated devices for the command line's end-to-end tests, served on a thread of their own (serial
// lines unpaced), with every chunk the console sent them and when.

#include <chrono>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "sim/devices.h"
#include "sim/server/sim_server.h"

namespace halvane::e2e {

class Served {
  public:
    explicit Served(int targets = 2) : m_range(targets), m_server(sim::SimServer::Options{false, {}}) {
        m_server.setLog([this](const sim::LogEntry& entry) {
            if (entry.kind != sim::LogEntry::Kind::ToDevice) return;
            std::lock_guard lock(m_mutex);
            m_chunks.push_back(entry);
        });
    }
    ~Served() {
        m_server.stop();
        if (m_serving.joinable()) m_serving.join();
    }
    // The radio on a pty, and its path.
    std::string radio(sim::Faults faults = {}) {
        const auto path = m_server.addPty("radio", sim::makeRadioModem(m_range, faults));
        m_serving = std::thread([this] { m_server.run(); });
        return path;
    }
    // The transmitter on a pty, and its path.
    std::string transmitter(sim::Faults faults = {}) {
        const auto path = m_server.addPty("transmitter", sim::makeTransmitter(m_range, faults));
        m_serving = std::thread([this] { m_server.run(); });
        return path;
    }
    // The operator registers `count` hits on the target in `slot`.
    void hit(int slot, int count) {
        for (int i = 0; i < count; ++i) m_range.addHit(slot);
    }
    // The Wi-Fi device on loopback, and its port.
    std::uint16_t wifi(sim::Faults faults) {
        const auto port = m_server.listenTcp([this, faults] { return sim::makeWifiBridge(m_range, faults); });
        m_serving = std::thread([this] { m_server.run(); });
        return port;
    }
    std::vector<sim::LogEntry> chunks() {
        std::lock_guard lock(m_mutex);
        return m_chunks;
    }
    // All bytes the console sent, once there are `atLeast` (the server may read them after the
    // console has gone), or after a second.
    std::string bytes(std::size_t atLeast = 0) {
        std::string all;
        for (int tries = 0; tries < 200 && (tries == 0 || all.size() < atLeast); ++tries) {
            if (tries) std::this_thread::sleep_for(std::chrono::milliseconds(5));
            all.clear();
            for (const auto& chunk : chunks()) all += chunk.bytes;
        }
        return all;
    }
    // The faces, slot 1 first: F friend, O foe, E edge, D down.
    std::string faces() const {
        std::string letters;
        for (const auto& target : m_range.snapshot()) letters += "DEOF"[static_cast<int>(target.face) & 3];
        return letters;
    }

    // The radio channel of each target, slot 1 first.
    std::vector<int> channels() const {
        std::vector<int> out;
        for (const auto& target : m_range.snapshot()) out.push_back(target.channel);
        return out;
    }

  private:
    sim::Range m_range;
    sim::SimServer m_server;
    std::mutex m_mutex;
    std::vector<sim::LogEntry> m_chunks;
    std::thread m_serving;
};

}  // namespace halvane::e2e
