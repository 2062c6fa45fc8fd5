#include "links/radio_setup.h"

#include <cmath>

#include "authoring/about_box.h"
#include "authoring/operator.h"
#include "links/com_port.h"
#include "links/port_names.h"
#include "links/sending_radio.h"
#include "text/conversions.h"

namespace halvane {

namespace {
constexpr double kLowestProgrammable = 1875;
constexpr int kBackspace = 8;
}  // namespace

frmRadioSetup::frmRadioSetup(SharedState& state, ComPortModule& comPort, Operator& op,
                             std::function<TimePoint()> clock)
    : m_state(state), m_comPort(comPort), m_operator(op), m_clock(std::move(clock)) {
    for (int port = kFirstPort; port <= kLastPort; ++port) cmbComPortList.push_back(std::to_string(port));
}

void frmRadioSetup::Load() {
    Label3 = "This is used to change the frequency channel of the Radios.";
    Label4 = "Use with caution.";
    Label5 =
        "Both the transmitter (LMC or USB Radio) and Receiver (LM47, LM35, or KLOP)\r"
        "need to be on the same channel to work.";
    CmbRadio = CmbRadioList.front();
    cmbchannel = cmbchannelList.front();
    cmbComPort = cmbComPortList.front();
    txtLMSN.clear();
    m_closed = false;
    // Choosing the first radio is a click of the list.
    CmbRadio_Click();
}

void frmRadioSetup::CmbRadio_Click() {
    lbllmsn.Visible = lm47();
}

int frmRadioSetup::txtLMSN_KeyPress(int key) {
    return key == kBackspace || (key >= '0' && key <= '9') ? key : 0;
}

std::optional<std::uint8_t> frmRadioSetup::channelByte(const std::string& text) {
    const double v = text::Val(text);
    if (v < 0 || v > 255 || v != std::floor(v)) return std::nullopt;
    return static_cast<std::uint8_t>(v);
}

bool frmRadioSetup::refused(const std::string& text) {
    std::string why;
    if (lm47() && !channelByte(text)) {
        why = "\" cannot be sent to the target: it is not a whole number from 0 to 255.";
    } else if (!lm47()) {
        for (const char c : text)
            if (c < 0x20 || c > 0x7E)
                why = "\" cannot be sent to the radio: it holds a character that is not plain text.";
    }
    if (why.empty()) return false;
    m_result = Result::Refused;
    m_operator.tell("Channel \"" + text + why + " Nothing was sent.", kAppTitle);
    return true;
}

void frmRadioSetup::Command1_Click() {
    if (lm47() && text::Val(txtLMSN) < kLowestProgrammable) {
        m_result = Result::Refused;
        m_operator.tell("Only works on SN 1875 and higher", kAppTitle);
        return;
    }
    if (!refused(cmbchannel)) run("Program");
}

void frmRadioSetup::Command3_Click() {
    if (lm47() && text::Val(txtLMSN) < 1) {
        m_result = Result::Refused;
        m_operator.tell("Must enter a Vailid SN greater than 0", kAppTitle);
        return;
    }
    run("Read");
}

void frmRadioSetup::run(const char* tag) {
    // The operation takes the shared port over, which another window may be using this moment.
    if (sharedPortBusy && sharedPortBusy("setting radio channels")) {
        m_result = Result::Refused;
        return;
    }
    Tag = tag;
    frmSendingRadio window(*this);
    window.Load(m_clock());
    m_operator.show(window);
    window.Unload();
    m_result = window.result();
    // Told once the progress window has gone, not from inside one of its ticks.
    if (window.result() == Result::Stopped)
        m_operator.critical(window.message(), kAppTitle);
    else if (!window.message().empty())
        m_operator.tell(window.message(), kAppTitle);
}

}  // namespace halvane
