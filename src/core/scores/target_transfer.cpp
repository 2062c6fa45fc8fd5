#include "scores/target_transfer.h"

#include "authoring/about_box.h"
#include "authoring/operator.h"
#include "scores/target_setup.h"
#include "text/conversions.h"

namespace halvane {

namespace {
const std::size_t kReads = target::readOrder().size();

target::SerialTexts serialOf(const frmLM_Setup& setup) {
    return {setup.SnHigh, setup.SnMiddle, setup.SnLow};
}
}  // namespace

TargetTransfer::TargetTransfer(frmLM_Setup& setup) : m_setup(setup) {
    setup.radio().listen({[this](std::string_view bytes) { m_wait.onSerial(bytes); },
                          [this](std::string_view chunk) { m_wait.onSocket(chunk); },
                          [this] {
                              if (!m_busy && !m_closed) stop(m_setup.radio().notOpenMessage(), true);
                          }});
}

void TargetTransfer::Unload() {
    m_setup.radio().stopListening();
}

void TargetTransfer::startClock(TimePoint now) {
    m_due = now + kFirstTick;
}

std::optional<TimePoint> TargetTransfer::nextDeadline() const {
    if (m_busy || m_closed || !m_due) return std::nullopt;
    // A whole reply moves the transfer on at once.
    return m_wait.whole() ? m_askedAt : *m_due;
}

void TargetTransfer::onTime(TimePoint now) {
    if (m_busy || m_closed || !m_due || (now < *m_due && !m_wait.whole())) return;
    m_busy = true;
    const auto next = step(now);
    m_busy = false;
    if (m_closed) return;
    m_due = next;
    if (!m_due) finish();
}

void TargetTransfer::stop(const std::string& text, bool critical) {
    m_closed = m_stopped = true;
    m_due.reset();
    m_wait.stop();
    const bool wasBusy = std::exchange(m_busy, true);
    if (critical)
        m_setup.op().critical(text, kAppTitle);
    else
        m_setup.op().tell(text, kAppTitle);
    m_busy = wasBusy;
}

bool TargetTransfer::sendSerial(std::string_view frame) {
    if (m_setup.radio().sendSerial(frame)) return true;
    stop(m_setup.radio().notOpenMessage(), true);
    return false;
}

frmRetrieving::frmRetrieving(frmLM_Setup& setup, std::optional<std::string> lookup)
    : TargetTransfer(setup), m_lookup(std::move(lookup)) {}

void frmRetrieving::Load(TimePoint now) {
    m_lookingUp = m_lookup.has_value();
    if (m_lookingUp)
        m_due = now;  // the lookup goes at once; the reads follow half a second after it
    else
        startClock(now);
}

std::optional<TimePoint> frmRetrieving::step(TimePoint now) {
    if (m_waiting && !m_wait.whole() && m_setup.radio().wifiWaiting()) {
        // The frame still waits for the Wi-Fi connection: its reply's time starts when it goes.
        m_wait.extend(now + kReplyBudget);
        return now + kReplyBudget;
    }
    if (m_lookingUp) return m_waiting ? endLookup(now) : sendLookup(now);
    if (m_waiting) {
        applyReply();
        if (m_setup.radio().replyRoad() == ReplyWait::Road::Socket && m_setup.radio().wifiDown()) {
            stop("The read stopped at " + std::string(target::readOrder()[m_step - 1].caption) +
                     ": the Wi-Fi link is not connected.",
                 true);
            return std::nullopt;
        }
        if (m_step == static_cast<int>(kReads)) {
            m_setup.Command2.Enabled = true;
            return std::nullopt;
        }
    }
    return sendRead(now);
}

TimePoint frmRetrieving::awaitReply(TimePoint now) {
    // Dropped after the frame went: the reply cannot have come yet.
    m_setup.radio().dropInput();
    m_askedAt = now;
    m_waiting = true;
    m_wait.start(m_setup.radio().replyRoad(), wire::kParameterFrameLength, now + kReplyBudget);
    return now + kReplyBudget;
}

std::optional<TimePoint> frmRetrieving::sendLookup(TimePoint now) {
    const SharedState& s = m_setup.state();
    // Both numbers are checked before anything goes out.
    target::Value serial, wifi;
    for (auto [wanted, link, value] :
         {std::tuple{s.RadioUSB, Carrier::Serial, &serial}, std::tuple{s.RadioWiFi, Carrier::WiFi, &wifi}}) {
        if (!wanted) continue;
        *value = target::lookupNumber(*m_lookup, link);
        if (!value->error.empty()) {
            stop("Target Number " + *m_lookup + " cannot be looked up: " + value->error +
                     ". Nothing was sent.",
                 false);
            return std::nullopt;
        }
    }
    if (s.RadioUSB && !sendSerial(target::lookupFrame(*serial.byte))) return std::nullopt;
    if (s.RadioWiFi) m_setup.radio().sendWifi(target::lookupFrame(*wifi.byte), now);
    return awaitReply(now);
}

std::optional<TimePoint> frmRetrieving::endLookup(TimePoint now) {
    target::SerialTexts found;
    if (m_wait.whole())
        for (std::size_t i = 0; i < 3; ++i)
            found[i] = target::replyText(static_cast<std::uint8_t>(m_wait.reply()[2 + i]));
    m_wait.stop();
    m_waiting = false;
    // The serial texts are joined and read as a decimal number: a letter among them ends the number.
    if (text::Val(found[0] + found[1] + found[2]) == 0) {
        m_notFound = true;
        stop("Target Number " + *m_lookup + " Not Found", false);
        return std::nullopt;
    }
    m_setup.SnHigh = found[0];
    m_setup.SnMiddle = found[1];
    m_setup.SnLow = found[2];
    m_lookingUp = false;
    return now + kFirstTick;
}

std::optional<TimePoint> frmRetrieving::sendRead(TimePoint now) {
    const SharedState& s = m_setup.state();
    const target::Parameter& p = target::readOrder()[static_cast<std::size_t>(m_step++)];
    const std::string frame = target::readFrame(target::serialBytes(serialOf(m_setup)), p.index);
    // The frames and the replies do not take the same roads: a line controller gets the frames but
    // is never listened to.
    if (s.RadioUSB || s.TypeVMR4000) {
        if (!sendSerial(frame)) return std::nullopt;
    } else if (s.RadioWiFi) {
        m_setup.radio().sendWifi(frame, now);
    }
    return awaitReply(now);
}

void frmRetrieving::applyReply() {
    if (m_wait.whole()) {
        const std::string& r = m_wait.reply();
        for (std::size_t i = 0; i < 3; ++i)
            m_serialReply[i] = target::replyText(static_cast<std::uint8_t>(r[2 + i]));
        m_valueText = target::replyText(static_cast<std::uint8_t>(r[5]));
        ++m_replies;
    }
    m_wait.stop();
    m_waiting = false;
    // After a silence the value of the last reply is applied again.
    const target::Parameter& p = target::readOrder()[static_cast<std::size_t>(m_step - 1)];
    if (const auto text = target::boxText(p, m_valueText)) m_setup.box(p.index) = *text;
}

std::pair<int, int> frmRetrieving::progress() const {
    return {m_step, static_cast<int>(kReads)};
}

std::string frmRetrieving::progressText() const {
    if (m_lookingUp) return "Looking up target number " + *m_lookup;
    if (m_step == 0) return "Starting";
    return "Reading " + std::string(target::readOrder()[static_cast<std::size_t>(m_step - 1)].caption) +
           " (" + std::to_string(m_step) + " of " + std::to_string(kReads) + ")";
}

std::optional<TimePoint> frmLM_Send::step(TimePoint now) {
    if (m_step == static_cast<int>(target::kWrites)) return std::nullopt;  // the last pause is over
    const SharedState& s = m_setup.state();
    const target::Parameter& p = target::readOrder()[static_cast<std::size_t>(m_step)];
    // The target is the one LBL_SN names, "SN " and six characters, whatever the boxes say.
    const std::string& sn = m_setup.LBL_SN.Caption;
    const target::SerialTexts serial{sn.substr(3, 2), sn.substr(5, 2), sn.substr(7, 2)};
    const auto bytes = target::serialBytes(serial);
    target::Value v;
    if (s.RadioUSB || s.TypeVMR4000) {
        if (!value(p, Carrier::Serial, v) || !sendSerial(target::writeFrame(bytes, p.index, v.byte)))
            return std::nullopt;
    }
    // Apart from the test before: with both set, each frame goes on both links.
    if (s.RadioWiFi) {
        if (!value(p, Carrier::WiFi, v)) return std::nullopt;
        m_setup.radio().sendWifi(target::writeFrame(bytes, p.index, v.byte), now);
    }
    ++m_step;
    return now + kPause;
}

bool frmLM_Send::value(const target::Parameter& p, Carrier link, target::Value& out) {
    const std::string& text = m_setup.box(p.index);
    out = target::valueOf(p, text, link);
    if (out.error.empty()) return true;
    stop(std::string(p.caption) + " \"" + text + "\" cannot be written to the target: " + out.error +
             ". The settings before it were sent; nothing after it was.",
         false);
    return false;
}

std::pair<int, int> frmLM_Send::progress() const {
    return {m_step, static_cast<int>(target::kWrites)};
}

std::string frmLM_Send::progressText() const {
    if (m_step == 0) return "Starting";
    return "Sent " + std::string(target::readOrder()[static_cast<std::size_t>(m_step - 1)].caption) + " (" +
           std::to_string(m_step) + " of " + std::to_string(target::kWrites) + ")";
}

}  // namespace halvane
