#pragma once
// Window coordinates are kept in twips (1/1440 inch); Qt places widgets in logical pixels of 1/96 inch.

namespace halvane::app {

inline constexpr double kTwipsPerPixel = 15.0;

inline int toPixels(double twips) {
    return static_cast<int>(twips / kTwipsPerPixel + (twips >= 0 ? 0.5 : -0.5));
}
inline double toTwips(int pixels) {
    return pixels * kTwipsPerPixel;
}

}  // namespace halvane::app
