#include "platform/ole_color.h"

namespace halvane::app {

QColor toQColor(Color color, const QPalette& palette) {
    if (color & 0x80000000u) {
        switch (color & 0xFFu) {
            case 0x05:
                return palette.color(QPalette::Base);
            case 0x08:
                return palette.color(QPalette::Text);
            case 0x0D:
                return palette.color(QPalette::Highlight);
            case 0x0E:
                return palette.color(QPalette::HighlightedText);
            case 0x0F:
                return palette.color(QPalette::Button);
            case 0x12:
                return palette.color(QPalette::ButtonText);
            default:
                return palette.color(QPalette::Window);
        }
    }
    return QColor(static_cast<int>(color & 0xFF), static_cast<int>((color >> 8) & 0xFF),
                  static_cast<int>((color >> 16) & 0xFF));
}

}  // namespace halvane::app
