#pragma once
// The picture of the range shared by the layout, run and live windows: one tile per target with its
// captions, laid out in rows, in twips.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "authoring/shared_state.h"
#include "text/wire_vocabulary.h"

namespace halvane {

enum class RangeWindowKind { Layout, Run, Live };  // RangeDisplay, frmRangeRunning, frmLiveMode

struct TwipsPoint {
    float left = 0, top = 0;
};

struct RangeTile {
    int target = 0;   // the tile's number, 1..NumTargets
    TwipsPoint tile;  // PicTarget(n)
    wire::Action face = wire::Action::Down;
    TwipsPoint numberCaption, serialCaption, hitsCaption;
    std::string numberText;                 // "Target 7" or "Group 2"
    std::optional<std::string> serialText;  // "SN 100007" when TypeLMSeries
    std::optional<std::string> hitsText;    // "Hits: " when built (run/live, TypeLMSeries, !UseGroups)
    bool hitsVisible = true;
    // The live window's mark for its next command: "True" marked, "False" or "" not; BorderStyle 0
    // (no border) shows a clicked mark, 1 a single line.
    std::string Tag;
    int BorderStyle = 1;
};

struct RowLabel {
    int row = 0;
    TwipsPoint place;
    std::string caption;  // "Row 1"
};

// A picture's size in pixels; the tile takes the size of its picture.
struct PixelSize {
    int width = 0, height = 0;
};

class RangeView {
  public:
    // Every caption box is this size; its text is centred across it, from its top.
    static constexpr float kCaptionWidth = 975;
    static constexpr float kCaptionHeight = 255;

    RangeView(SharedState& state, RangeWindowKind kind);

    // The guards on NumTargets/NumCols (writes to the shared state), then BuildTileMap and
    // LayoutBottomLeft when StartBottom, else LayoutTopLeft. Call once, at the window's load.
    void build();
    // The guards alone, for a window whose load can end before its range is built.
    void guard();
    const std::vector<RangeTile>& tiles() const { return m_tiles; }  // index 0 = target 1
    const std::vector<RowLabel>& rowLabels() const { return m_rowLabels; }
    float picMainWidth() const { return m_picMainWidth; }  // twips
    float picMainHeight() const { return m_picMainHeight; }
    std::int16_t CurTile = 0;  // as the layouts leave it

    // The face a tile shows, and painting a face on it (the only record of a target's face).
    wire::Action face(int target) const;
    void setFace(int target, wire::Action face);
    void setMark(int target, const std::string& tag, int borderStyle);

    // The captions of CurTile from the shared state: "Target 7", "Group 2", "SN 100007". The serial
    // caption exists only on a range built with TypeLMSeries.
    void DrawTargetCaption();
    void DrawGroupCaption();
    void DrawSerialCaption();
    // Hit captions of CurTile from ReplyHex: an empty score reads "0", or stays empty.
    void DrawHitsZero();
    void DrawHitsRaw();

    // The picture a face shows at the state's IconSize: "" for an IconSize that names no size.
    std::string pictureName(wire::Action face) const;
    // The size of the pictures of an IconSize; Medium's for a text that names no size.
    static PixelSize pictureSize(const std::string& iconSize);

    // Told after every change of a tile (face or caption), with the target number, so views repaint
    // just that tile; 0 means everything.
    void setObserver(std::function<void(int target)> observer) { m_observer = std::move(observer); }

    const std::vector<std::vector<std::int16_t>>& TileMap() const { return m_tileMap; }
    std::int16_t TileRows() const { return m_tileRows; }
    RangeWindowKind kind() const { return m_kind; }
    const std::string& iconSize() const { return m_state.IconSize; }

  private:
    struct Pitches {
        float column, row, numberAbove, serialBelow, hitsBelow, captionsLeftOf;
    };
    Pitches pitches() const;
    void startLayout();
    void buildTile(int target);
    void LayoutTopLeft();
    void clearTileMap();
    void BuildTileMap();
    void LayoutBottomLeft();
    void drawHits(bool zeroForEmpty);
    RangeTile& tileOf(int target);
    const RangeTile& tileOf(int target) const;
    void changed(int target) const;

    SharedState& m_state;
    RangeWindowKind m_kind;
    Pitches m_pitch{};
    float m_x = 0, m_y = 0;
    float m_picMainWidth = 0, m_picMainHeight = 0;
    std::vector<RangeTile> m_tiles;
    std::vector<RowLabel> m_rowLabels;
    std::vector<std::vector<std::int16_t>> m_tileMap;
    std::int16_t m_tileRows = 0;
    bool m_building = false;
    std::function<void(int)> m_observer;
};

}  // namespace halvane
