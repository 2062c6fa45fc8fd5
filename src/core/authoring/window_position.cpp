#include "authoring/window_position.h"

#include "text/conversions.h"

namespace halvane {

void RestoreWindowPos(WindowPlacement& window, PositionStore& store) {
    if (window.Tag.empty()) return;
    const auto settings = store.GetAllSettings(kPositionAppName, window.Tag);
    if (settings.empty()) return;
    for (const auto& [key, value] : settings) {
        const double v = text::Val(value);
        if (key == "Left")
            window.Left = v;
        else if (key == "Top")
            window.Top = v;
        else if (key == "Height")
            window.Height = v;
        else if (key == "Width")
            window.Width = v;
    }
    // The tag is used up: the window's closing code sets it again before saving.
    window.Tag.clear();
}

void SaveWindowPos(WindowPlacement& window, PositionStore& store) {
    if (window.Tag.empty() || window.WindowState == 1) return;
    store.SaveSetting(kPositionAppName, window.Tag, "Top", text::Str(window.Top));
    store.SaveSetting(kPositionAppName, window.Tag, "Left", text::Str(window.Left));
    store.SaveSetting(kPositionAppName, window.Tag, "Height", text::Str(window.Height));
    store.SaveSetting(kPositionAppName, window.Tag, "Width", text::Str(window.Width));
}

}  // namespace halvane
