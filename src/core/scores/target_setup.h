#pragma once
// frmLM_Setup: reads the settings of one target over the radio into its boxes, lets the operator
// change them, and writes them back. The boxes are the target's parameter block; the window keeps no
// record of its own. frmSerialTarget asks which target is meant.

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "authoring/control.h"
#include "authoring/shared_state.h"
#include "authoring/window.h"
#include "links/port_names.h"
#include "links/serial_port.h"
#include "links/target_parameters.h"
#include "links/wifi_link.h"
#include "scores/target_radio.h"

namespace halvane {

class Operator;

class frmLM_Setup : public Window {
  public:
    static constexpr const char* Caption = "LM Setup";
    static constexpr const char* kTabs[] = {"Utility", "Hit Setting", "Target Control"};

    // `port` is the window's own, open while the window is.
    // `clock` gives the time the progress windows start from.
    frmLM_Setup(
        SharedState& state, SerialPort& port, const PortNames& names, WifiLink* wifi, Operator& op,
        std::function<TimePoint()> clock = [] { return SteadyClock::now(); });

    Control LBL_SN{"SN", true, true, 0, 0, 0, 0};
    Control Command1{"Read From Target", true, true, 0, 0, 0, 0};
    Control Command2{"Save To Target", false, true, 0, 0, 0, 0};
    Control Command3{"Close", true, true, 0, 0, 0, 0};
    bool Check1 = true;  // "Load Defaults": nothing reads it
    std::string SnHigh, SnMiddle, SnLow;
    // The mailbox of frmSerialTarget: "", "SN" and digits, or "TN" and digits.
    std::string Tag;

    // The text of a parameter's box, or the caption of its label, by the parameter's index.
    std::string& box(int index) { return m_boxes.at(static_cast<std::size_t>(index)); }
    const std::string& box(int index) const { return m_boxes.at(static_cast<std::size_t>(index)); }
    // What a box offers: the target numbers stop at "20" when the load failed.
    std::vector<std::string> list(const target::Parameter& p) const;

    void Load();
    // Read From Target: asks which target, looks a target number up, and reads the block.
    void Command1_Click();
    // Save To Target: writes the boxes to the target of LBL_SN.
    void Command2_Click();
    void Command3_Click() { m_closed = true; }
    void Unload();
    bool closed() const { return m_closed; }

    TargetRadio& radio() { return m_radio; }
    SharedState& state() { return m_state; }
    Operator& op() { return m_operator; }

  private:
    SharedState& m_state;
    TargetRadio m_radio;
    Operator& m_operator;
    std::function<TimePoint()> m_clock;
    std::array<std::string, 20> m_boxes;
    bool m_loadFailed = false;
    bool m_closed = false;
};

class frmSerialTarget : public Window {
  public:
    static constexpr const char* Caption = "LM Setup";
    static constexpr const char* Label3 = "Enter Serial or Target number to program";
    explicit frmSerialTarget(frmLM_Setup& setup) : m_setup(setup) {}

    std::string txtSerialNum, txtTargetNum;
    // The serial number wins when both are filled; text that is no number gives 0.
    void OKButton_Click();
    void CancelButton_Click();
    bool closed() const { return m_closed; }

  private:
    frmLM_Setup& m_setup;
    bool m_closed = false;
};

}  // namespace halvane
