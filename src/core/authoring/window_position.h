#pragma once
// Window positions kept per user between runs, under the application name "KRV".

#include <string>
#include <utility>
#include <vector>

namespace halvane {

inline constexpr const char* kPositionAppName = "KRV";

// The per-user settings store: sections of key/value texts under an application name.
class PositionStore {
  public:
    virtual ~PositionStore() = default;
    virtual std::vector<std::pair<std::string, std::string>> GetAllSettings(const std::string& appName,
                                                                            const std::string& section) = 0;
    virtual void SaveSetting(const std::string& appName, const std::string& section, const std::string& key,
                             const std::string& value) = 0;
};

// A window's place on the screen in twips, its state and its Tag.
struct WindowPlacement {
    double Left = 0;
    double Top = 0;
    double Width = 0;
    double Height = 0;
    int WindowState = 0;  // 0 normal, 1 minimised, 2 maximised
    std::string Tag;
};

void RestoreWindowPos(WindowPlacement& window, PositionStore& store);
void SaveWindowPos(WindowPlacement& window, PositionStore& store);

}  // namespace halvane
