#include "platform/settings_position_store.h"

#include <QSettings>

namespace halvane::app {

std::vector<std::pair<std::string, std::string>> SettingsPositionStore::GetAllSettings(
    const std::string& appName, const std::string& section) {
    QSettings settings(QString::fromStdString(appName));
    settings.beginGroup(QString::fromStdString(section));
    std::vector<std::pair<std::string, std::string>> out;
    for (const QString& key : settings.childKeys())
        out.emplace_back(key.toStdString(), settings.value(key).toString().toStdString());
    return out;
}

void SettingsPositionStore::SaveSetting(const std::string& appName, const std::string& section,
                                        const std::string& key, const std::string& value) {
    QSettings settings(QString::fromStdString(appName));
    settings.beginGroup(QString::fromStdString(section));
    settings.setValue(QString::fromStdString(key), QString::fromStdString(value));
}

}  // namespace halvane::app
