#include "simulation/simulated_range.h"

#include <QMetaObject>

#include "authoring/profile_file.h"
#include "links/port_names.h"
#include "sim/devices.h"
#include "simulation/example_program.h"
#include "text/conversions.h"

namespace halvane::app {

namespace {
// The serial devices and the port numbers they stand on, as a port search will find them.
struct Place {
    const char* name;
    int port;
};
constexpr Place kPlaces[] = {{"transmitter", 1}, {"radio", 2}, {"line", 3}};
}  // namespace

// Paced like a real 9600-baud line, so that a reply never beats the end of the command it answers.
SimulatedRange::SimulatedRange(QObject* parent)
    : QObject(parent), m_range(kTargets), m_server(sim::SimServer::Options{true, {}}) {}

SimulatedRange::~SimulatedRange() {
    m_server.stop();
    if (m_thread.joinable()) m_thread.join();
}

bool SimulatedRange::start(std::string& error) {
    if (!m_dir.isValid()) {
        error = "no folder for the simulation's settings: " + m_dir.errorString().toStdString();
        return false;
    }
    try {
        m_server.addPty("transmitter", sim::makeTransmitter(m_range, {}));
        m_server.addPty("radio", sim::makeRadioModem(m_range, {}));
        m_server.addPty("line", sim::makeLineController(m_range, {}));
        m_server.listenTcp([this] { return sim::makeWifiBridge(m_range, {}); });
    } catch (const std::exception& e) {
        error = e.what();
        return false;
    }
    m_server.setLog([this](const sim::LogEntry& entry) {
        const QString line = QString::fromStdString(sim::formatLogEntry(entry));
        QMetaObject::invokeMethod(
            this, [this, line] { emit logged(line); }, Qt::QueuedConnection);
    });
    writeConfig();
    if (const auto failed = ExampleProgram::write(exampleProgram(), kTargets)) {
        error = failed->message();
        return false;
    }
    m_thread = std::thread([this] {
        try {
            m_server.run();
        } catch (const std::exception& e) {
            const QString line = QString("simulator stopped: ") + e.what();
            QMetaObject::invokeMethod(
                this, [this, line] { emit logged(line); }, Qt::QueuedConnection);
        }
    });
    return true;
}

std::filesystem::path SimulatedRange::configFile() const {
    return (m_dir.path() + "/hvn.cfg").toStdString();
}

std::filesystem::path SimulatedRange::exampleProgram() const {
    return (m_dir.path() + "/" + ExampleProgram::kFileTitle).toStdString();
}

void SimulatedRange::writeConfig() {
    const std::string file = configFile().string();
    auto set = [&](const char* section, const std::string& key, const std::string& value) {
        WriteIni(file, section, key, value);
    };
    set("Settings", "Targets", std::to_string(kTargets));
    set("Settings", "Cols", "4");
    set("Settings", "LM-Series", "True");
    set("Settings", "LMC-Radio", "True");
    set("Settings", "WiFi-Radio", "True");
    set("Settings", "ComPort", " 1");
    set("Settings", "EthernetIP", "127.0.0.1");
    set("Settings", "EthernetPort", std::to_string(m_server.tcpPort()));
    // The console's captions name the serial numbers the simulated targets carry.
    const auto targets = m_range.snapshot();
    for (const auto& target : targets)
        set("Serial Num", text::Str(std::int64_t{target.slot}), text::Str(std::int64_t{target.serial}));
    // Only the simulated devices answer: the other port numbers lead nowhere.
    for (int port = kFirstPort; port <= kLastPort; ++port) {
        std::string device = (m_dir.path() + "/absent-COM" + QString::number(port)).toStdString();
        for (const auto& place : kPlaces)
            if (place.port == port) device = m_server.ptyPath(place.name);
        set(PortNames::kSection, "COM" + std::to_string(port), device);
    }
}

QStringList SimulatedRange::places() const {
    QStringList out;
    for (const auto& place : kPlaces)
        out << QString("%1 on Com Port %2 (%3)")
                   .arg(place.name)
                   .arg(place.port)
                   .arg(QString::fromStdString(m_server.ptyPath(place.name)));
    out << QString("wifi on 127.0.0.1:%1").arg(m_server.tcpPort());
    return out;
}

}  // namespace halvane::app
