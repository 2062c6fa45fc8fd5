#pragma once
// Window positions in the user's settings (QSettings), under the application name the console uses.

#include "authoring/window_position.h"

namespace halvane::app {

class SettingsPositionStore : public PositionStore {
  public:
    std::vector<std::pair<std::string, std::string>> GetAllSettings(const std::string& appName,
                                                                    const std::string& section) override;
    void SaveSetting(const std::string& appName, const std::string& section, const std::string& key,
                     const std::string& value) override;
};

}  // namespace halvane::app
