#pragma once
// How far the range view's scroll bars move it, in pixels, and how far they reach.

#include <string>

namespace halvane {

class RangeScroll {
  public:
    // wheelLines is what the system says one notch of the wheel scrolls.
    RangeScroll(const std::string& iconSize, int wheelLines);

    // One arrow click: a tile's height and a little more.
    int lineStep() const { return m_line; }
    // One wheel notch: as many lines as the system asks for.
    int wheelStep() const { return m_line * m_wheelLines; }
    // One click in the trough: the visible part of the range along that bar.
    static int pageStep(int viewportPixels) { return viewportPixels > 0 ? viewportPixels : 1; }
    // The furthest value of a bar: the range's far edge meets the viewport's.
    static int maximum(int contentPixels, int viewportPixels);
    // The range's extent in pixels for an extent in twips, rounded up so nothing is cut off.
    static int toPixels(float twips, double twipsPerPixel);

  private:
    int m_line;
    int m_wheelLines;
};

}  // namespace halvane
