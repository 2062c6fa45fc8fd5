#include "scores/target_setup.h"

#include "authoring/operator.h"
#include "scores/target_transfer.h"
#include "text/conversions.h"

namespace halvane {

namespace {
constexpr int kTargetNumber = 6;
constexpr std::size_t kTargetNumbersAfterFailedLoad = 21;  // "0" to "20"
}  // namespace

frmLM_Setup::frmLM_Setup(SharedState& state, SerialPort& port, const PortNames& names, WifiLink* wifi,
                         Operator& op, std::function<TimePoint()> clock)
    : m_state(state), m_radio(state, port, names, wifi, op), m_operator(op), m_clock(std::move(clock)) {}

void frmLM_Setup::Load() {
    m_loadFailed = !m_radio.open(m_clock());
}

std::vector<std::string> frmLM_Setup::list(const target::Parameter& p) const {
    std::vector<std::string> items = p.list;
    if (p.index == kTargetNumber && m_loadFailed) items.resize(kTargetNumbersAfterFailedLoad);
    return items;
}

void frmLM_Setup::Command1_Click() {
    frmSerialTarget entry(*this);
    m_operator.show(entry);
    std::optional<std::string> lookup;
    if (Tag.rfind("SN", 0) == 0) {
        // Seven digits or more: nothing at all happens.
        const auto serial = target::splitSerialTag(Tag);
        if (!serial) return;
        SnHigh = (*serial)[0];
        SnMiddle = (*serial)[1];
        SnLow = (*serial)[2];
    } else if (Tag.rfind("TN", 0) == 0) {
        lookup = Tag.substr(2);
    } else {
        return;
    }
    frmRetrieving reading(*this, lookup);
    reading.Load(m_clock());
    m_operator.show(reading);
    reading.Unload();
    // A read that stopped on a fault, or found no target, names none.
    if (reading.stopped()) return;
    LBL_SN.Caption = "SN " + SnHigh + SnMiddle + SnLow;
}

void frmLM_Setup::Command2_Click() {
    if (!Command2.Enabled) return;
    frmLM_Send sending(*this);
    sending.Load(m_clock());
    m_operator.show(sending);
    sending.Unload();
}

void frmLM_Setup::Unload() {
    m_radio.stopListening();
    m_radio.close();
}

void frmSerialTarget::OKButton_Click() {
    if (!txtSerialNum.empty())
        m_setup.Tag = "SN" + text::CStr(text::Val(txtSerialNum));
    else if (!txtTargetNum.empty())
        m_setup.Tag = "TN" + text::CStr(text::Val(txtTargetNum));
    else
        m_setup.Tag.clear();
    m_closed = true;
}

void frmSerialTarget::CancelButton_Click() {
    m_setup.Tag.clear();
    m_closed = true;
}

}  // namespace halvane
