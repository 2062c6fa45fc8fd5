#include "range/range_scroll.h"

#include <algorithm>
#include <cmath>

#include "range/range_view.h"

namespace halvane {

// The range view of the layout window steps by the height of a Friend picture, the run and live
// windows by the height of a tile; a tile is as tall as its picture, so both come to the same figure.
RangeScroll::RangeScroll(const std::string& iconSize, int wheelLines)
    : m_line(RangeView::pictureSize(iconSize).height + 2), m_wheelLines(wheelLines < 1 ? 3 : wheelLines) {}

// The bars reach the whole range as laid out, whatever its rows, columns and icon size. This program
// sizes them from the range itself rather than from fixed figures per row and per column, which would
// leave the last rows of a Large range, or columns beyond the thirtieth, out of reach.
int RangeScroll::maximum(int contentPixels, int viewportPixels) {
    return std::max(0, contentPixels - viewportPixels);
}

int RangeScroll::toPixels(float twips, double twipsPerPixel) {
    if (twipsPerPixel <= 0) return 0;
    return static_cast<int>(std::ceil(static_cast<double>(twips) / twipsPerPixel - 1e-9));
}

}  // namespace halvane
