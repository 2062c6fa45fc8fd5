#include "operator_script.h"

#include <QCoreApplication>
#include <filesystem>
#include <stdexcept>

#include "authoring/profile_file.h"
#include "authoring/program_file.h"
#include "links/program_image.h"
#include "sim/devices.h"
#include "sim/transmitter.h"

namespace halvane::monkey {

namespace fs = std::filesystem;

namespace {

const fs::path kData = HALVANE_TEST_DATA;
const char* const kPrograms[] = {
    "mixed.hvn",        "three_targets_two_groups.hvn", "two_targets.hvn",      "image/gap.hvn",
    "image/groups.hvn", "image/two_pauses.hvn",         "image/pause_first.hvn"};
// Files that are not Programs, or not quite (a Program without extension, one cut in half): each stops
// the reader somewhere else.
const char* const kOddFiles[] = {"groups_300.hvn", "negative_length.hvn", "too_long.hvn", "zero_bytes.hvn",
                                 "garbage.hvn",    "no_extension",        "truncated.hvn"};

sim::Faults faultOf(int port) {
    sim::Faults f;
    f.wrongSum = port == 2;
    f.refuseBlock = port == 3 ? 1 : port == 4 ? 2 : 0;
    f.lateBy = std::chrono::milliseconds(port == 5 ? 1200 : 0);
    f.splitReplies = port == 6;
    f.silent = port == 7;
    return f;
}

// Places 1-7 hold the test Programs, place 8 an image naming a column past any setup's targets.
void fillPlaces(sim::Transmitter& transmitter) {
    int place = 0;
    for (const char* name : kPrograms) {
        SharedState state;
        state.FilePath = (kData / name).string();
        std::unique_ptr<ProgramGrid> grid;
        if (readProgramFile(state, standaloneHost(state, grid)))
            throw std::runtime_error("cannot read " + state.FilePath);
        transmitter.setPlace(++place, imageBytes(WriteProgramImage(state, *grid)));
    }
    transmitter.setPlace(8, std::string("\xF3\x02\xFD\x03\xF2\x2C\xFE\x00\xFD\x02\xF0\x01", 12));
}

}  // namespace

const char* ScratchRange::faultName(int port) {
    static const char* const kNames[] = {
        "",     "no fault", "wrong sum", "refuses block 1", "refuses block 2",
        "late", "split",    "silent",    "no device"};
    return kNames[port];
}

ScratchRange::ScratchRange() {
    if (!m_dir.isValid()) throw std::runtime_error("no scratch folder: " + m_dir.errorString().toStdString());
    m_files = m_dir.filePath("files") + "/";
    for (int port = 1; port < kPorts; ++port) {
        auto device = sim::makeTransmitter(m_range, faultOf(port));
        fillPlaces(sim::asTransmitter(*device));
        m_ptys.push_back(m_server.addPty(faultName(port), std::move(device)));
    }
    m_thread = std::thread([this] { m_server.run(); });
    for (const char* program : kPrograms)
        openChoices.push_back(m_files + fs::path(program).filename().c_str());
    for (const char* name : kOddFiles) openChoices.push_back(m_files + name);
    for (const char* name : {"folder.hvn", "missing.hvn", "saved.hvn", "saved_again"})
        openChoices.push_back(m_files + name);
    for (const char* name : {"saved.hvn", "saved_again", "mixed.hvn", "no/such/x.hvn", "folder.hvn"})
        saveChoices.push_back(m_files + name);
}

ScratchRange::~ScratchRange() {
    m_server.stop();
    m_thread.join();
}

std::string ScratchRange::prepareRun(int targets, int groups, bool useGroups, bool leftClick, int comPort) {
    const fs::path files = m_files.toStdString();
    fs::remove_all(files);
    fs::create_directories(files / "folder.hvn");
    for (const char* name : kPrograms) fs::copy_file(kData / name, files / fs::path(name).filename());
    for (const char* name : kOddFiles) fs::copy_file(kData / "monkey" / name, files / name);

    const fs::path config = m_dir.filePath("hvn.cfg").toStdString();
    fs::remove(config);
    auto set = [&](const std::string& section, const std::string& key, const std::string& value) {
        WriteIni(config, section, key, value);
    };
    set("Settings", "Targets", std::to_string(targets));
    set("Settings", "Groups", useGroups ? "True" : "False");
    set("Settings", "Num Groups", std::to_string(groups));
    for (int n = 1; n <= targets; ++n) set("Group Num", std::to_string(n), std::to_string(1 + n % groups));
    set("Settings", "LMC-Radio", "True");
    set("Settings", "LeftClickIF", leftClick ? "True" : "False");
    set("Settings", "ComPort", std::to_string(comPort));
    for (int port = 1; port <= 16; ++port)
        set("Port Names", "COM" + std::to_string(port),
            port < kPorts ? m_ptys[static_cast<std::size_t>(port - 1)]
                          : m_dir.filePath("absent").toStdString());
    return config.string();
}

void prepareEnvironment() {
    static QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.filePath("config").toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    qputenv("TMPDIR", home.path().toLocal8Bit());  // temp.lm47 of every Send
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    // The script answers a file dialog through its widgets; a desktop's own dialog has none.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

}  // namespace halvane::monkey
