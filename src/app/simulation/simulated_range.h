#pragma once
// The simulated range inside the console (halvane --simulate): the devices on pseudo-terminals and a
// loopback TCP port, served on a thread of their own, and a configuration of the console's own that
// points the port numbers and the Wi-Fi link at them.

#include <QObject>
#include <QTemporaryDir>
#include <filesystem>
#include <memory>
#include <thread>

#include "sim/range.h"
#include "sim/server/sim_server.h"

namespace halvane::app {

class SimulatedRange : public QObject {
    Q_OBJECT
  public:
    static constexpr int kTargets = 8;

    explicit SimulatedRange(QObject* parent = nullptr);
    ~SimulatedRange() override;

    // Opens the devices, writes the configuration and the example Program, and starts serving; false with a
    // reason on failure.
    bool start(std::string& error);
    std::filesystem::path configFile() const;
    // The example Program start() leaves beside the configuration, for the console to open.
    std::filesystem::path exampleProgram() const;
    sim::Range& range() { return m_range; }
    // Where each device stands, for the window: "transmitter  COM1  /dev/pts/4", ...
    QStringList places() const;

  signals:
    // One line of the frame log; emitted on the console's thread.
    void logged(const QString& line);

  private:
    void writeConfig();

    QTemporaryDir m_dir;
    sim::Range m_range;
    sim::SimServer m_server;
    std::thread m_thread;
};

}  // namespace halvane::app
