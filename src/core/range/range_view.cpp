#include "range/range_view.h"

#include <algorithm>

#include "text/fault.h"

namespace halvane {

namespace {

constexpr float kFirstX = 920;
constexpr float kFirstY = 370;
constexpr float kRowLabelLeft = 120;
constexpr float kRowLabelBelowRowTop = 400;
constexpr float kCutRowExtra = 250;  // under a short last row, and once more under every top-left range

enum class Size { Large, Medium, Small, None };

Size sizeOf(const std::string& iconSize) {
    if (iconSize == "Large") return Size::Large;
    if (iconSize == "Medium") return Size::Medium;
    if (iconSize == "Small") return Size::Small;
    return Size::None;
}

const char* faceWord(wire::Action face) {
    switch (face) {
        case wire::Action::Friend:
            return "friend";
        case wire::Action::Foe:
            return "foe";
        case wire::Action::Edge:
            return "edge";
        case wire::Action::Down:
            break;
    }
    return "down";
}

}  // namespace

RangeView::RangeView(SharedState& state, RangeWindowKind kind) : m_state(state), m_kind(kind) {
    clearTileMap();
}

// The map stands whole from the start, all empty, whichever layout the window uses.
void RangeView::clearTileMap() {
    const auto side = static_cast<std::size_t>(SharedState::kMaxTargets + 1);
    m_tileMap.assign(side, std::vector<std::int16_t>(side, 0));
    m_tileRows = 0;
}

RangeView::Pitches RangeView::pitches() const {
    const bool layout = m_kind == RangeWindowKind::Layout;
    // A size the table does not know lays out as Medium; its tiles simply stay without a picture.
    switch (sizeOf(m_state.IconSize)) {
        case Size::Large:
            return {1600, 2500, 280, 1700, 1900, -150};
        case Size::Small:
            return {900, layout ? 1350.0f : 1650.0f, 250, 900, 1100, 150};
        case Size::Medium:
        case Size::None:
            break;
    }
    return {1080, layout ? 1800.0f : 2000.0f, 250, 1200, 1400, 0};
}

PixelSize RangeView::pictureSize(const std::string& iconSize) {
    switch (sizeOf(iconSize)) {
        case Size::Large:
            return {90, 105};
        case Size::Small:
            return {45, 53};
        case Size::Medium:
        case Size::None:
            break;
    }
    return {60, 70};
}

std::string RangeView::pictureName(wire::Action face) const {
    switch (sizeOf(m_state.IconSize)) {
        case Size::Large:
            return std::string(faceWord(face)) + "_lg";
        case Size::Medium:
            return std::string(faceWord(face)) + "_md";
        case Size::Small:
            return std::string(faceWord(face)) + "_sm";
        case Size::None:
            break;
    }
    return "";
}

void RangeView::guard() {
    if (m_state.NumTargets == 0) m_state.NumTargets = 1;
    if (m_state.NumCols == 0) m_state.NumCols = 1;
    if (m_state.NumTargets < 1 || m_state.NumTargets > SharedState::kMaxTargets)
        throw Fault("A range holds 1 to 200 targets, not " + std::to_string(m_state.NumTargets) + ".");
    if (m_state.NumCols < 1)
        throw Fault("A range needs at least one column, not " + std::to_string(m_state.NumCols) + ".");
}

void RangeView::build() {
    guard();
    m_tiles.assign(static_cast<std::size_t>(m_state.NumTargets), RangeTile{});
    m_rowLabels.clear();
    m_picMainWidth = m_picMainHeight = 0;
    m_pitch = pitches();
    // Views hear of the whole range once it stands, not of each caption on the way.
    m_building = true;
    if (m_state.StartBottom) {
        BuildTileMap();
        LayoutBottomLeft();
    } else {
        LayoutTopLeft();
    }
    m_building = false;
    changed(0);
}

void RangeView::startLayout() {
    m_y = kFirstY;
    m_x = kFirstX;
}

void RangeView::buildTile(int target) {
    CurTile = static_cast<std::int16_t>(target);
    RangeTile& t = m_tiles[static_cast<std::size_t>(target - 1)];
    t.target = target;
    t.tile = {m_x, m_y};
    t.face = wire::Action::Down;
    const float captionLeft = m_x - m_pitch.captionsLeftOf;
    t.numberCaption = {captionLeft, m_y - m_pitch.numberAbove};
    if (m_state.UseGroups)
        DrawGroupCaption();
    else
        DrawTargetCaption();
    if (m_state.TypeLMSeries) {
        t.serialCaption = {captionLeft, m_y + m_pitch.serialBelow};
        t.serialText = "";
        DrawSerialCaption();
        if (m_kind != RangeWindowKind::Layout && !m_state.UseGroups) {
            t.hitsCaption = {captionLeft, m_y + m_pitch.hitsBelow};
            t.hitsText = "";
            drawHits(false);
        }
    }
    m_x += m_pitch.column;
    if (m_picMainWidth < m_x) m_picMainWidth = m_x;
}

void RangeView::LayoutTopLeft() {
    startLayout();
    const int targets = m_state.NumTargets, cols = m_state.NumCols;
    int r = 0;
    int col = 1;
    for (int base = 0; base <= targets; base += cols) {
        if (base < targets) {
            ++r;
            m_rowLabels.push_back(
                {r, {kRowLabelLeft, m_y + kRowLabelBelowRowTop}, "Row " + std::to_string(r)});
        }
        bool pastLast = false;
        for (col = 1; col <= cols; ++col) {
            if (base + col == targets + 1) {
                pastLast = true;
                break;
            }
            buildTile(base + col);
        }
        if (pastLast) break;
        m_y += m_pitch.row;
        m_picMainHeight = m_y;
        m_x = kFirstX;
    }
    // The short last row never reached the row step above, so it is added here.
    if (col != 1) m_picMainHeight += m_pitch.row + kCutRowExtra;
    m_picMainHeight += kCutRowExtra;
}

void RangeView::BuildTileMap() {
    clearTileMap();
    const int targets = m_state.NumTargets, cols = m_state.NumCols;
    for (int base = 0; base <= targets; base += cols) {
        if (base >= targets) continue;
        ++m_tileRows;
        for (int col = 1; col <= cols && base + col != targets + 1; ++col)
            m_tileMap[static_cast<std::size_t>(m_tileRows)][static_cast<std::size_t>(col)] =
                static_cast<std::int16_t>(base + col);
    }
}

void RangeView::LayoutBottomLeft() {
    startLayout();
    // No row holds more than 200 targets, so columns beyond the map are empty.
    const int cols = std::min<int>(m_state.NumCols, SharedState::kMaxTargets);
    for (int r = m_tileRows; r >= 1; --r) {
        const auto& row = m_tileMap[static_cast<std::size_t>(r)];
        if (row[1] > 0)
            m_rowLabels.push_back({r, {m_x - 800, m_y + kRowLabelBelowRowTop}, "Row " + std::to_string(r)});
        for (int col = 1; col <= cols; ++col)
            if (row[static_cast<std::size_t>(col)] >= 1) buildTile(row[static_cast<std::size_t>(col)]);
        if (row[1] > 0) {
            m_y += m_pitch.row;
            m_picMainHeight = m_y;
            m_x = kFirstX;
        }
    }
}

RangeTile& RangeView::tileOf(int target) {
    return const_cast<RangeTile&>(static_cast<const RangeView*>(this)->tileOf(target));
}

const RangeTile& RangeView::tileOf(int target) const {
    if (target < 1 || target > static_cast<int>(m_tiles.size()))
        throw Fault("There is no target " + std::to_string(target) + " on this range of " +
                    std::to_string(m_tiles.size()) + " targets.");
    return m_tiles[static_cast<std::size_t>(target - 1)];
}

wire::Action RangeView::face(int target) const {
    return tileOf(target).face;
}

void RangeView::setFace(int target, wire::Action face) {
    RangeTile& t = tileOf(target);
    if (t.face == face) return;
    t.face = face;
    changed(target);
}

void RangeView::setMark(int target, const std::string& tag, int borderStyle) {
    RangeTile& t = tileOf(target);
    if (t.Tag == tag && t.BorderStyle == borderStyle) return;
    t.Tag = tag;
    t.BorderStyle = borderStyle;
    changed(target);
}

void RangeView::DrawTargetCaption() {
    tileOf(CurTile).numberText = "Target " + std::to_string(CurTile);
    changed(CurTile);
}

void RangeView::DrawGroupCaption() {
    tileOf(CurTile).numberText =
        "Group " + std::to_string(m_state.GroupNum[static_cast<std::size_t>(CurTile)]);
    changed(CurTile);
}

void RangeView::DrawSerialCaption() {
    RangeTile& t = tileOf(CurTile);
    if (!t.serialText)
        throw Fault("Target " + std::to_string(CurTile) + " has no serial number on this range view.");
    t.serialText = "SN " + std::to_string(m_state.SerialNum[static_cast<std::size_t>(CurTile)]);
    changed(CurTile);
}

void RangeView::DrawHitsZero() {
    drawHits(true);
}

void RangeView::DrawHitsRaw() {
    drawHits(false);
}

void RangeView::drawHits(bool zeroForEmpty) {
    RangeTile& t = tileOf(CurTile);
    if (m_kind == RangeWindowKind::Live && m_state.UseGroups) {
        t.hitsVisible = false;
        changed(CurTile);
        return;
    }
    if (!t.hitsText)
        throw Fault("Target " + std::to_string(CurTile) + " has no hit score on this range view.");
    const std::string& score = m_state.ReplyHex[static_cast<std::size_t>(CurTile)];
    t.hitsText = "Hits: " + (score.empty() && zeroForEmpty ? std::string("0") : score);
    t.hitsVisible = true;
    changed(CurTile);
}

void RangeView::changed(int target) const {
    if (m_observer && !m_building) m_observer(target);
}

}  // namespace halvane
