// Start-up: hvn.cfg into the shared state, key by key in the console's order, and where hvn.cfg lives.
#include "authoring/startup.h"

#include <cstdlib>
#include <system_error>

#include "authoring/profile_file.h"
#include "text/conversions.h"
#include "text/system_files.h"

namespace halvane {
namespace {

constexpr std::string_view kSettings = "Settings";
constexpr std::string_view kGroupNum = "Group Num";
constexpr std::string_view kSerialNum = "Serial Num";
constexpr double kTargetsLimit = 201;    // "Targets" is taken only when 0 < v < 201
constexpr double kSerialLimit = 999999;  // a serial number is stored only when 0 < v < 999999
constexpr const char* kConfigName = "hvn.cfg";

// Keys of one file's bytes, with the report of values that could not be taken as they stood.
class ConfigReader {
  public:
    ConfigReader(std::string content, StartupReport& report)
        : m_content(std::move(content)), m_report(report) {}

    std::string text(std::string_view section, std::string_view key) const {
        return profileRead(m_content, section, key);
    }

    bool isTrue(std::string_view key) const { return text(kSettings, key) == "True"; }

    // Val rounded half to even into a 16-bit variable; a value that does not fit keeps `fallback`.
    std::int16_t int16(std::string_view section, std::string_view key, std::int16_t fallback) {
        const std::string value = text(section, key);
        if (const auto n = text::toInt16(text::Val(value))) return *n;
        report(section, key, value, "out of range, kept " + std::to_string(fallback));
        return fallback;
    }

    void report(std::string_view section, std::string_view key, std::string_view value,
                const std::string& what) {
        std::string line;
        line.append(section).append("/").append(key).append(" = \"").append(value).append("\": ").append(
            what);
        m_report.badKeys.push_back(std::move(line));
    }

  private:
    std::string m_content;
    StartupReport& m_report;
};

// Everything start-up fills goes back to what a missing file gives, so a second read starts clean.
void resetSettings(SharedState& state) {
    const SharedState defaults;
    state.NumTargets = defaults.NumTargets;
    state.NumCols = defaults.NumCols;
    state.SerialNum = defaults.SerialNum;
    state.StartBottom = defaults.StartBottom;
    state.IconSize = defaults.IconSize;
    state.UseGroups = defaults.UseGroups;
    state.NumGroups = defaults.NumGroups;
    state.GroupNum = defaults.GroupNum;
    state.TypeNXBox = defaults.TypeNXBox;
    state.TypeVMR4000 = defaults.TypeVMR4000;
    state.TypeLMSeries = defaults.TypeLMSeries;
    state.RadioLMC = defaults.RadioLMC;
    state.RadioUSB = defaults.RadioUSB;
    state.RadioWiFi = defaults.RadioWiFi;
    state.LeftClickIF = defaults.LeftClickIF;
    state.RightClickIF = defaults.RightClickIF;
    state.ComPort = defaults.ComPort;
    state.EthernetIP = defaults.EthernetIP;
    state.EthernetPort = defaults.EthernetPort;
}

void readTargets(ConfigReader& cfg, SharedState& state) {
    const std::string value = cfg.text(kSettings, "Targets");
    const double v = text::Val(value);
    if (!(v > 0 && v < kTargetsLimit)) {
        state.TargetsValid = false;
        return;
    }
    std::int16_t count = *text::toInt16(v);
    // 200.5 < v < 201 passes the test but rounds to 201, one more target than the arrays hold.
    if (count > SharedState::kMaxTargets) {
        count = SharedState::kMaxTargets;
        cfg.report(kSettings, "Targets", value, "taken as " + std::to_string(count));
    }
    state.NumTargets = count;
    for (int n = 1; n <= count; ++n) {
        const std::string key = text::Str(std::int64_t{n});
        state.GroupNum[n] = cfg.int16(kGroupNum, key, 0);
        const double serial = text::Val(cfg.text(kSerialNum, key));
        if (serial > 0 && serial < kSerialLimit) state.SerialNum[n] = *text::toInt32(serial);
    }
}

}  // namespace

StartupReport readStartup(const std::filesystem::path& configFile, SharedState& state) {
    StartupReport report;
    ConfigReader cfg(readProfileFile(configFile), report);
    resetSettings(state);
    state.ConfigFile = configFile.string();
    state.TargetsValid = true;
    readTargets(cfg, state);

    state.NumCols = cfg.int16(kSettings, "Cols", 0);
    state.StartBottom = cfg.text(kSettings, "Start Location") != "Top";
    if (std::string icon = cfg.text(kSettings, "Icon"); !icon.empty()) state.IconSize = std::move(icon);
    state.UseGroups = cfg.isTrue("Groups");
    state.NumGroups = cfg.int16(kSettings, "Num Groups", 0);
    if (text::Val(cfg.text(kSettings, "ComPort")) > 1) state.ComPort = cfg.int16(kSettings, "ComPort", 1);
    state.TypeLMSeries = cfg.isTrue("LM-Series");
    state.TypeNXBox = cfg.isTrue("NX-Box");
    state.TypeVMR4000 = cfg.isTrue("VMR4000");
    state.RadioLMC = cfg.isTrue("LMC-Radio");
    state.RadioUSB = cfg.isTrue("USB-Radio");
    state.RadioWiFi = cfg.isTrue("WiFi-Radio");
    state.EthernetIP = cfg.text(kSettings, "EthernetIP");
    state.EthernetPort = cfg.text(kSettings, "EthernetPort");
    state.LeftClickIF = cfg.isTrue("LeftClickIF");
    state.RightClickIF = !state.LeftClickIF;
    return report;
}

std::filesystem::path locateConfig(const std::filesystem::path& exeDir,
                                   const std::filesystem::path& userConfigDir,
                                   const std::optional<std::filesystem::path>& override,
                                   const std::function<bool(const std::filesystem::path&)>& isWritable) {
    if (override) return *override;
    const std::filesystem::path beside = exeDir / kConfigName;
    std::error_code ec;
    if (isWritable(exeDir) || std::filesystem::exists(beside, ec)) return beside;
    return userConfigDir / kConfigName;
}

std::filesystem::path locateConfig(const std::filesystem::path& exeDir,
                                   const std::filesystem::path& userConfigDir,
                                   const std::optional<std::filesystem::path>& override) {
    return locateConfig(exeDir, userConfigDir, override, folderWritable);
}

std::filesystem::path userConfigDir() {
    // XDG asks that a relative XDG_CONFIG_HOME be ignored.
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    if (xdg && xdg[0] == '/') return std::filesystem::path(xdg) / "halvane";
    const std::string home = homeFolder();
    return std::filesystem::path(home.empty() ? "." : home) / ".config" / "halvane";
}

std::filesystem::path executableDir() {
    std::error_code ec;
    const std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (!ec) return exe.parent_path();
    const std::filesystem::path cwd = std::filesystem::current_path(ec);
    return ec ? std::filesystem::path(".") : cwd;
}

}  // namespace halvane
