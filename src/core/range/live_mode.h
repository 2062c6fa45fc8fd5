#pragma once
// frmLiveMode: drives targets by hand, all at once with four buttons or the marked ones through a
// popup on the range view. The port opens with the window; there is no connect step and no clock.

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "authoring/control.h"
#include "authoring/shared_state.h"
#include "range/range_window.h"

namespace halvane {

class Operator;

class frmLiveMode : public RangeWindow {
  public:
    static constexpr const char* kPositionTag = "Live Mode";
    static constexpr const char* kPopupMenu = "Target_Popup";
    struct PopupCommand {
        const char* name;
        const char* caption;
        wire::Action action;
    };
    static constexpr std::array<PopupCommand, 4> kPopupItems{{{"M_Friend", "Friend", wire::Action::Friend},
                                                              {"M_Edge", "Edge", wire::Action::Edge},
                                                              {"M_Foe", "Foe", wire::Action::Foe},
                                                              {"M_Down", "Down", wire::Action::Down}}};
    // MouseDown arguments.
    static constexpr int kLeftButton = 1, kRightButton = 2, kCtrl = 2;

    // `port` is the window's own serial port (MSComm1), opened by Load when the settings need it.
    frmLiveMode(SharedState& state, SerialPort& port, const PortNames& names, WifiSend wifi, Operator& op,
                PositionStore& positions);

    static constexpr const char* Caption = "Live Mode";
    Control Label1{"Right Click on Target to Operate", true, true, 1680, 120, 3615, 375};
    Control Label2{"All Targets", true, true, 3000, 480, 1335, 375};
    Control BtnFriend{"Friend", true, true, 1440, 840, 975, 495};
    Control BtnEdge{"Edge", true, true, 3000, 840, 975, 495};
    Control BtnFoe{"Foe", true, true, 4200, 840, 975, 495};
    Control BtnDown{"Down", true, true, 5640, 840, 975, 495};
    Control BtnExit{"Exit", true, true, 3600, 1440, 975, 495};

    // Events of the window. A port that will not open ends the load before the range is built.
    void Load();
    void Resize(float widthTwips, float heightTwips);
    void BtnFriend_Click(TimePoint now) { allTargets(wire::Action::Friend, now); }
    void BtnEdge_Click(TimePoint now) { allTargets(wire::Action::Edge, now); }
    void BtnFoe_Click(TimePoint now) { allTargets(wire::Action::Foe, now); }
    void BtnDown_Click(TimePoint now) { allTargets(wire::Action::Down, now); }
    void PicTarget_MouseDown(int index, int button, int shift, TimePoint now);
    void LblRow_MouseDown(int index, int button, int shift, TimePoint now);
    // A popup item by its name (kPopupItems); "" or another name does nothing and keeps the marks.
    void popupItem_Click(std::string_view item, TimePoint now);
    // A tile counts as marked only with the text "True"; an empty Tag is no mark.
    bool marked(int target) const;

  private:
    // Told once; Wi-Fi and the tiles go on.
    void lineLost() override;
    void allTargets(wire::Action action, TimePoint now);
    void openPopup(TimePoint now);
    void clearMarks();
    int tileCount() const { return static_cast<int>(m_view.tiles().size()); }

    bool m_lineLostTold = false;
};

}  // namespace halvane
