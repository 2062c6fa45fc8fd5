#include "links/sending_radio.h"

#include <algorithm>

#include "links/com_port.h"
#include "links/target_parameters.h"
#include "text/conversions.h"
#include "text/wire_vocabulary.h"

namespace halvane {

namespace {
using Result = frmRadioSetup::Result;

// The ticks of each step, by the bar's value at the start of the tick.
constexpr int kUsbCommands = 20;   // the AT lines, after ten ticks of guard time behind "+++"
constexpr int kUsbDropAfter = 15;  // the modem's answers to a program are dropped, unread
constexpr int kFrame = 29;         // the LM47 frame
constexpr int kListen = 25;        // the LM47 reply's budget runs from here

constexpr std::size_t kUsbReply = 2;  // the channel digit and one more
}  // namespace

frmSendingRadio::frmSendingRadio(frmRadioSetup& setup) : m_setup(setup), m_program(setup.Tag == "Program") {
    lblSend_Receive = m_program ? "Sending data please wait." : "Receiving data please wait.";
}

frmSendingRadio::~frmSendingRadio() {
    Unload();
}

void frmSendingRadio::Load(TimePoint now) {
    ComPortModule& com = m_setup.comPort();
    SharedState& state = m_setup.state();
    m_loaded = true;
    com.CloseComPort();
    SavedComPort = state.ComPort;
    state.ComPort = text::toInt16(text::Val(m_setup.cmbComPort)).value_or(0);
    com.OpenComPort();
    com.port().listen({[this](std::string_view bytes) { m_wait.onSerial(bytes); },
                       [this](const std::string&) { stop(lineMessage()); }});
    m_settleAt = now + kSettle;
}

void frmSendingRadio::Unload() {
    if (!m_loaded || m_unloaded) return;
    m_unloaded = true;
    ComPortModule& com = m_setup.comPort();
    com.port().stopListening();
    com.CloseComPort();
    m_setup.state().ComPort = SavedComPort;
}

std::optional<TimePoint> frmSendingRadio::nextDeadline() const {
    if (!m_loaded || m_closed) return std::nullopt;
    if (!m_settled) return m_settleAt;
    // A whole reply is taken at once.
    if (m_wait.waiting()) return std::min(m_nextTick, m_wait.whole() ? m_askedAt : m_wait.deadline());
    return m_nextTick;
}

void frmSendingRadio::onTime(TimePoint now) {
    if (!m_loaded || m_closed) return;
    if (!m_settled) {
        if (now < m_settleAt) return;
        settle();
        // The first tick falls on the moment the line has settled.
        m_nextTick = m_settleAt;
    }
    if (m_wait.whole() || m_wait.timedOut(now)) endWait();
    if (!m_closed && now >= m_nextTick) tick(now);
}

void frmSendingRadio::settle() {
    m_settled = true;
    dropBoth();
    if (m_setup.lm47()) {
        // A number of seven digits or more leaves the texts of the last target.
        if (const auto serial = target::splitSerial(m_setup.txtLMSN)) {
            m_setup.SnHigh = (*serial)[0];
            m_setup.SnMiddle = (*serial)[1];
            m_setup.SnLow = (*serial)[2];
        }
    }
    if (!m_setup.comPort().PortOpen()) {
        // The operator has been told; the window goes at the first tick with nothing sent.
        m_noPort = true;
        Value = 1;
    } else if (!m_setup.lm47()) {
        send("+++");
    }
}

void frmSendingRadio::tick(TimePoint now) {
    const int p = Value;
    if (!m_noPort) {
        if (!m_setup.lm47()) {
            if (p == kUsbCommands) m_program ? usbProgram() : usbRead(now);
            if (p == kUsbDropAfter && m_program) dropBoth();
        } else {
            if (p == kFrame) lm47Frame(now);
            if (p == kListen && !m_program) m_wait.extend(now + kReplyBudget);
        }
    }
    if (m_closed) return;
    Value = p - 1;
    if (Value > 0) {
        // Ticks are not queued: a late one moves those after it.
        m_nextTick += kTick;
        if (m_nextTick <= now) m_nextTick = now + kTick;
        return;
    }
    if (m_wait.waiting()) endWait();
    if (m_closed) return;
    if (m_noPort)
        close(Result::NoPort);
    else if (m_setup.lm47() && !m_frameSent)
        close(Result::NoFrame);
    else
        close(m_program || m_gotChannel ? Result::Done : Result::NoReply);
}

void frmSendingRadio::usbProgram() {
    dropBoth();
    // In one burst, with no wait for the answer to each.
    for (const std::string& line : {"ATHP" + m_setup.cmbchannel, std::string("ATWR"), std::string("ATCN")})
        if (!send(line + "\r")) return;
}

void frmSendingRadio::usbRead(TimePoint now) {
    dropBoth();
    if (!send("ATHP\r")) return;
    m_setup.comPort().port().dropInput();
    m_askedAt = now;
    m_wait.start(ReplyWait::Road::Serial, kUsbReply, now + kReplyBudget);
}

void frmSendingRadio::lm47Frame(TimePoint now) {
    const SharedState& state = m_setup.state();
    const auto serial = target::serialBytes({m_setup.SnHigh, m_setup.SnMiddle, m_setup.SnLow});
    if (state.RadioUSB || state.TypeVMR4000) {
        std::string frame;
        if (m_program) {
            const auto channel = frmRadioSetup::channelByte(m_setup.cmbchannel);
            // Checked at the button; the box cannot change while this window is up.
            if (!channel)
                return stop("Channel \"" + m_setup.cmbchannel + "\" is not a whole number from 0 to 255.");
            frame = target::writeFrame(serial, target::kChannelIndex, *channel);
        } else {
            frame = target::readFrame(serial, target::kChannelIndex);
        }
        if (!send(frame)) return;
        m_frameSent = true;
    }
    if (m_program) return;
    // The reply counts from the frame on; its budget is set at the listening tick.
    m_askedAt = now;
    m_wait.start(ReplyWait::Road::Serial, wire::kParameterFrameLength, TimePoint::max());
}

void frmSendingRadio::endWait() {
    const std::string reply = m_wait.reply();
    const bool whole = m_wait.whole();
    m_wait.stop();
    if (m_setup.lm47()) {
        // The sixth byte's hexadecimal text read as a decimal number: 0x0C reads as 0. A short reply
        // leaves the box as it was, and nobody is told.
        if (!whole) return;
        const auto text = text::Hex(static_cast<std::uint8_t>(reply[5]));
        m_setup.cmbchannel = std::to_string(static_cast<int>(text::Val(text)));
        m_gotChannel = true;
        return;
    }
    // The first character's code, its hexadecimal text read as decimal, less 30: "3" (0x33) is 3. A code
    // with a letter in it is no channel, and neither is a reply cut short: the reader gives nothing then.
    const std::string code = whole ? text::Hex(static_cast<std::uint8_t>(reply[0])) : "";
    if (code.empty() || std::any_of(code.begin(), code.end(), [](char c) { return c >= 'A' && c <= 'F'; })) {
        m_message = frmRadioSetup::kNoReply;
    } else {
        m_setup.cmbchannel = std::to_string(static_cast<int>(text::Val(code)) - 30);
        m_gotChannel = true;
    }
    // The radio leaves its command mode also when it said nothing.
    send("ATCN\r");
}

bool frmSendingRadio::send(const std::string& bytes) {
    if (m_setup.comPort().port().write(bytes)) return true;
    stop(lineMessage());
    return false;
}

void frmSendingRadio::dropBoth() {
    SerialPort& port = m_setup.comPort().port();
    if (!port.isOpen()) return;
    port.dropInput();
    port.dropOutput();
}

std::string frmSendingRadio::lineMessage() const {
    const SerialPort& port = m_setup.comPort().port();
    const std::string where = "Comm Port " + std::to_string(m_setup.state().ComPort);
    const std::string what = port.lost() ? where + ": the line went away (" + port.lostReason() + ")."
                                         : where + " would not take the bytes.";
    return what + " The radio setup stopped; the channel may not be set.";
}

void frmSendingRadio::stop(const std::string& why) {
    if (m_closed) return;
    m_message = why;
    close(Result::Stopped);
}

void frmSendingRadio::close(Result result) {
    m_closed = true;
    m_result = result;
    m_wait.stop();
}

}  // namespace halvane
