#pragma once
// frmRadioSetup: reads or programs the radio channel of the USB radio at the PC (AT commands) or of an
// LM47 target out on the range (its channel parameter, addressed by serial number), over a port chosen
// in the window. frmSendingRadio carries each operation out. The window is modeless and the main window
// keeps it for the run: the serial texts of the last target outlive each progress window, as a serial
// number too long to split reuses them.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "authoring/control.h"
#include "authoring/shared_state.h"
#include "authoring/window.h"
#include "links/timed_read.h"

namespace halvane {

class ComPortModule;
class Operator;

class frmRadioSetup : public Window {
  public:
    static constexpr const char* Caption = "Raido Setup";
    static constexpr const char* kLM47 = "LM47 Radio";
    static constexpr const char* kUSB = "USB Radio";
    static constexpr const char* Label1 = "Radio";
    static constexpr const char* Label2 = "Channel ";
    static constexpr const char* Label6 = "Com Port";
    static constexpr const char* Label7 = "Default is  0";
    static constexpr const char* kNoReply = "No reply from the radio";

    frmRadioSetup(
        SharedState& state, ComPortModule& comPort, Operator& op,
        std::function<TimePoint()> clock = [] { return SteadyClock::now(); });

    std::string Label3, Label4, Label5;
    Control lbllmsn{"LM47 SN", true, true, 0, 0, 0, 0};  // txtLMSN shows and hides with it
    Control Command1{"Program", true, true, 0, 0, 0, 0};
    Control Command3{"Read From Radio", true, true, 0, 0, 0, 0};
    Control Command2{"Close", true, true, 0, 0, 0, 0};
    const std::vector<std::string> CmbRadioList{kLM47, kUSB};
    const std::vector<std::string> cmbchannelList{"0", "1", "2", "3", "4", "5", "6"};
    std::vector<std::string> cmbComPortList;
    // The texts of the boxes; the channel and port boxes take typing as well as their lists.
    std::string CmbRadio, cmbchannel, cmbComPort, txtLMSN;
    // "Program" or "Read": what frmSendingRadio does.
    std::string Tag;
    // The target's serial number as three texts of two digits, from the last operation that split one.
    std::string SnHigh, SnMiddle, SnLow;

    // Resets the labels and boxes; the serial texts stay.
    void Load();
    // "LM47 Radio" shows the serial number box, anything else hides it.
    void CmbRadio_Click();
    // A key typed into txtLMSN: the key that reaches the box, 0 when it is swallowed.
    static int txtLMSN_KeyPress(int key);
    // Program: writes the channel.
    void Command1_Click();
    // Read From Radio: reads the channel into cmbchannel.
    void Command3_Click();
    // Close: the window goes until the menu shows it again.
    void Command2_Click() { m_closed = true; }
    // Closed, or not yet loaded.
    bool closed() const { return m_closed; }

    // How the last button ended, for callers that need to know more than the operator was told.
    enum class Result {
        None,     // no operation yet
        Refused,  // the button refused the boxes; nothing was sent
        NoPort,   // the port did not open; nothing was sent
        Done,     // ran its time: sent, and for a read the channel found
        NoReply,  // a read found no channel; cmbchannel stands as it was
        NoFrame,  // LM47: the settings name no serial carrier, so no frame went out
        Stopped,  // the line went away or refused the bytes
    };
    Result result() const { return m_result; }

    SharedState& state() { return m_state; }
    ComPortModule& comPort() { return m_comPort; }
    bool lm47() const { return CmbRadio == kLM47; }
    // Asked before an operation takes the shared port over: true, with the operator told, when another
    // window is using it. `what` names the operation for the message.
    std::function<bool(const std::string& what)> sharedPortBusy;

    // The channel byte of the LM47 write frame: the numeric value of the text, when it is a whole 0..255.
    static std::optional<std::uint8_t> channelByte(const std::string& text);

  private:
    // Refuses, with the operator told, when the box's value cannot go on the wire as it must.
    bool refused(const std::string& text);
    void run(const char* tag);

    SharedState& m_state;
    ComPortModule& m_comPort;
    Operator& m_operator;
    std::function<TimePoint()> m_clock;
    Result m_result = Result::None;
    bool m_closed = true;
};

}  // namespace halvane
