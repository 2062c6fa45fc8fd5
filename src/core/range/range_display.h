#pragma once
// RangeDisplay: the range view with one job, telling the console which physical target stands on
// which tile. A click on a tile takes the target's serial number or its group, which go at once to
// the shared state and to hvn.cfg.

#include <cstdint>
#include <string>
#include <vector>

#include "authoring/control.h"
#include "authoring/operator.h"
#include "authoring/shared_state.h"
#include "authoring/window.h"
#include "range/range_view.h"

namespace halvane {

class RangeDisplay : public Window {
  public:
    static constexpr const char* Caption = "Range";
    static constexpr const char* kPopupMenu = "Target_Popup";
    // MouseDown arguments.
    static constexpr int kLeftButton = 1, kRightButton = 2;
    // A serial number is taken only when 0 < v < kSerialLimit, as start-up reads it.
    static constexpr double kSerialLimit = 999999;

    RangeDisplay(SharedState& state, Operator& op);

    Control Label1{"Click on Target to Enter Serial Number", true, true, 1200, 240, 4095, 375};
    Control OKButton{"OK", true, true, 2880, 720, 975, 495};
    Control picScrollBox{"", true, true, 0, 1440, 0, 0};
    // The popup's items in their order; Load sets who may see them.
    PopupItem M_SN{"M_SN", "Change Serial #", true, true};
    PopupItem M_Group{"M_Group", "Add to Group", true, false};

    RangeView& view() { return m_view; }
    const RangeView& view() const { return m_view; }

    // Events of the window.
    void Load();
    void Resize(float widthTwips, float heightTwips);
    void PicTarget_MouseDown(int index, int button);
    void M_SN_Click();
    void M_Group_Click();
    void OKButton_Click() { m_closed = true; }
    void Unload();

    // The keys of CurTile into hvn.cfg.
    void SaveSerialNum();
    void SaveGroupNum();

    bool closed() const { return m_closed; }

  private:
    void write(const std::string& section, const std::string& key, const std::string& value);
    int tileCount() const { return static_cast<int>(m_view.tiles().size()); }

    SharedState& m_state;
    Operator& m_operator;
    RangeView m_view;
    bool m_closed = false;
    bool m_writeFailTold = false;
};

}  // namespace halvane
