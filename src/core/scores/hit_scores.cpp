#include "scores/hit_scores.h"

#include "authoring/about_box.h"
#include "authoring/operator.h"
#include "links/com_port.h"
#include "text/conversions.h"
#include "text/wire_vocabulary.h"

namespace halvane {

namespace {
using namespace std::chrono_literals;
constexpr std::uint8_t kCentre = 4;
constexpr int kColumnWidth = 1500;
constexpr std::size_t kBlockLength = 201;
constexpr auto kBlockBudget = 1s;
constexpr auto kSettle = 100ms;  // a port just opened is left alone this long
const std::string kBlockRequest = "H\r\n";
const std::string kNoScores = "No Hit Scores in LMC";
const std::string kNoScore = "FF";

std::string frame(std::initializer_list<std::uint8_t> bytes) {
    std::string out;
    for (const std::uint8_t b : bytes) out.push_back(static_cast<char>(b));
    return out;
}
}  // namespace

FrmHitScores::FrmHitScores(SharedState& state, ComPortModule* comPort, WifiLink* wifi, Operator& op,
                           WorkbookWriter* workbooks, ScorePrinter* printer, std::function<TimePoint()> clock)
    : m_state(state),
      m_comPort(comPort),
      m_wifi(wifi),
      m_operator(op),
      m_workbooks(workbooks),
      m_printer(printer),
      m_clock(std::move(clock)),
      m_poll(state.ReplyHex,
             {[this](int target, TimePoint now) { query(target, now); },
              [this] { return m_state.RadioWiFi && !m_state.RadioUSB && m_wifi && m_wifi->framesWaiting(); },
              [this](int) { targetDone(); }, [this] { finishRound(); }}) {}

FrmHitScores::~FrmHitScores() = default;

void FrmHitScores::Load() {
    Grid.setRows(kGridRows);
    Grid.setCols(2);
    for (int c = 0; c < 2; ++c) Grid.setColWidth(c, kColumnWidth);
    Grid.setCellAlignment(0, 0, kCentre);
    Grid.setTextMatrix(0, 0, "Target Num");
    Grid.setCellAlignment(0, 1, kCentre);
    Grid.setTextMatrix(0, 1, "Hit Score");
    for (int i = 1; i < kGridRows; ++i) {
        Grid.setCellAlignment(i, 0, kCentre);
        Grid.setTextMatrix(i, 0, std::to_string(i));
    }
    RowHeight.assign(kGridRows, kDefaultRowHeight);
    RowData.assign(kGridRows, 0);
}

FrmHitScores::Road FrmHitScores::chooseRoad() {
    const bool radio = m_state.RadioUSB || m_state.RadioWiFi;
    if (radio && m_state.RadioLMC) {
        frmHitScore_Option option(*this);
        m_operator.show(option);
        // A dialog closed by its close box leaves the mailbox as it stood.
        if (Tag == "1") return Road::Transmitter;
        if (Tag == "2") return Road::Radio;
        return Road::None;
    }
    if (radio) return Road::Radio;
    if (m_state.RadioLMC) return Road::Transmitter;
    return Road::None;
}

bool FrmHitScores::portNeeded(Road road) const {
    return road == Road::Transmitter || (road == Road::Radio && m_state.RadioUSB);
}

SerialPort* FrmHitScores::port() const {
    return m_comPort ? &m_comPort->port() : nullptr;
}

// Opens the shared port when the settings use it; true when the port is open and must first settle.
bool FrmHitScores::openPort(bool needed, bool& settle) {
    settle = false;
    if (!m_comPort) return !needed;
    if (!m_comPort->PortOpen()) {
        m_comPort->OpenComPort();
        settle = m_comPort->PortOpen();
    }
    return m_comPort->PortOpen() || !needed;
}

void FrmHitScores::CmdDownload_Click(TimePoint now) {
    if (busy()) return;  // a second Download during a round is ignored
    m_outcome = Outcome::None;
    const Road road = chooseRoad();
    if (road == Road::None) return;
    // The road's dialog may have stood for a while: the waits start from now, not from the click.
    if (m_state.RadioLMC && (m_state.RadioUSB || m_state.RadioWiFi)) now = m_clock();
    bool settle = false;
    // Opened for the transmitter or the serial radio whichever road was chosen; a port that will not
    // open stops only a road that needs it, after its message.
    const bool usesPort = m_state.RadioUSB || m_state.RadioLMC;
    if (usesPort && !openPort(portNeeded(road), settle)) {
        m_outcome = Outcome::PortClosed;
        return;
    }
    m_road = road;
    if (settle) {
        m_phase = Phase::Settling;
        m_due = now + kSettle;
    } else {
        startRoad(now);
    }
    changed();
}

void FrmHitScores::listen() {
    if (SerialPort* p = port())
        p->listen({[this](std::string_view bytes) { onSerial(bytes); },
                   [this](const std::string&) {
                       if (busy()) lineLost();
                   }});
    if (m_wifi) m_wifi->setReceiver([this](std::string_view chunk) { onSocket(chunk); });
}

void FrmHitScores::stopListening() {
    if (SerialPort* p = port()) p->stopListening();
    if (m_wifi) m_wifi->setReceiver({});
}

void FrmHitScores::startRoad(TimePoint now) {
    listen();
    if (m_road == Road::Transmitter) {
        SerialPort& p = *port();
        p.dropInput();
        p.dropOutput();
        m_state.ReplyHex[0] = "0";
        m_phase = Phase::Block;
        m_due = now;
        if (!p.write(kBlockRequest)) return lineLost();
        m_block.start(ReplyWait::Road::Serial, kBlockLength, now + kBlockBudget);
        return;
    }
    if (m_state.RadioUSB) {
        port()->dropInput();
        port()->dropOutput();
    }
    m_phase = Phase::Round;
    const auto road = m_state.RadioUSB    ? HitScorePoll::Road::SerialRadio
                      : m_state.RadioWiFi ? HitScorePoll::Road::Socket
                                          : HitScorePoll::Road::NoCarrier;
    m_poll.start(road, m_state.NumTargets, now);
}

void FrmHitScores::query(int target, TimePoint now) {
    const auto t = static_cast<std::uint8_t>(target);
    if (m_state.RadioUSB) {
        // Whatever came after the last target's time is dropped before this one's wait.
        port()->dropInput();
        if (!port()->write(frame({wire::kScoreQuery, t}))) lineLost();
    } else if (m_state.RadioWiFi && m_wifi) {
        m_wifi->EthernetCommand(frame({0, wire::kScoreQuery, t}), now);
    }
}

void FrmHitScores::targetDone() {
    // A Wi-Fi link that could not connect has told the operator once; the round ends there.
    if (!m_state.RadioUSB && m_state.RadioWiFi && m_wifi && m_wifi->state() != TcpSocket::Connected &&
        !m_wifi->framesWaiting()) {
        abandonRound();
        m_outcome = Outcome::LinkDown;
    }
    changed();
}

void FrmHitScores::abandonRound() {
    if (m_phase != Phase::Round) return;
    m_poll.abandon();
    finishRound();
}

void FrmHitScores::finishRound() {
    stopListening();
    m_phase = Phase::Idle;
    m_outcome = Outcome::Done;
    // One row a target; the numbers of column 0 stand as an earlier load or download left them.
    setRows(m_state.NumTargets + 1);
    for (int i = 1; i <= m_state.NumTargets; ++i)
        Grid.setTextMatrix(i, 1, m_state.ReplyHex[static_cast<std::size_t>(i)]);
    changed();
}

void FrmHitScores::finishBlock() {
    stopListening();
    m_phase = Phase::Idle;
    if (m_block.whole()) {
        const std::string& block = m_block.reply();
        for (std::size_t i = 0; i < kBlockLength; ++i)
            m_state.ReplyHex[i] = text::Hex(static_cast<std::uint8_t>(block[i]));
    }
    m_block.stop();
    changed();
    // The count is read as the hexadecimal it is written in: ten scored targets or more work.
    if (text::parseHex(m_state.ReplyHex[0]).value_or(0) == 0) {
        m_outcome = Outcome::NoScores;
        m_operator.tell(kNoScores, kAppTitle);
        return;
    }
    m_outcome = Outcome::Done;
    int scored = 0;
    for (int i = 1; i <= wire::kMaxTargets; ++i)
        scored += m_state.ReplyHex[static_cast<std::size_t>(i)] != kNoScore;
    // One row for each target with a score, packed from row 1 upward.
    setRows(scored + 1);
    int row = 0;
    for (int i = 1; i <= wire::kMaxTargets; ++i) {
        const std::string& score = m_state.ReplyHex[static_cast<std::size_t>(i)];
        if (score == kNoScore) continue;
        ++row;
        Grid.setTextMatrix(row, 0, std::to_string(i));
        Grid.setTextMatrix(row, 1, score);
    }
    changed();
}

void FrmHitScores::setRows(int rows) {
    Grid.setRows(rows);
    RowHeight.resize(static_cast<std::size_t>(rows), kDefaultRowHeight);
    RowData.resize(static_cast<std::size_t>(rows), 0);
}

void FrmHitScores::CmdClear_Click(TimePoint now) {
    if (busy()) return;
    m_outcome = Outcome::None;
    if (m_operator.ask("Clear Scores from Targets?", kAppTitle, Buttons::OkCancel) != Answer::Ok) return;
    now = m_clock();
    if (m_state.RadioUSB) {
        bool settle = false;
        if (!openPort(true, settle)) {
            m_outcome = Outcome::PortClosed;
            return;
        }
        if (settle) {
            m_phase = Phase::ClearSettling;
            m_due = now + kSettle;
            changed();
            return;
        }
        sendClear(now);
    } else if (m_state.RadioWiFi && m_wifi) {
        m_wifi->EthernetCommand(frame({0, wire::kClearScores, wire::kAddressAll}), now);
        m_outcome = Outcome::Done;
    }
}

void FrmHitScores::sendClear(TimePoint) {
    m_phase = Phase::Idle;
    SerialPort& p = *port();
    p.dropInput();
    p.dropOutput();
    if (!p.write(frame({wire::kClearScores, wire::kAddressAll})))
        lineLost();
    else
        m_outcome = Outcome::Done;
    changed();
}

void FrmHitScores::lineLost() {
    const std::string why =
        port() && !port()->lostReason().empty() ? port()->lostReason() : "it would not take the bytes";
    // A round keeps what it read: the grid shows it.
    if (m_phase == Phase::Round) {
        m_poll.abandon();
        finishRound();
    }
    m_block.stop();
    stopListening();
    m_phase = Phase::Idle;
    m_outcome = Outcome::LineLost;
    m_operator.critical("Comm Port " + std::to_string(m_state.ComPort) + ": the line went away (" + why +
                            "). The scores read so far stay.",
                        kAppTitle);
    changed();
}

void FrmHitScores::onSerial(std::string_view bytes) {
    if (m_phase == Phase::Block) m_block.onSerial(bytes);
    if (m_phase == Phase::Round) m_poll.onSerial(bytes);
}

void FrmHitScores::onSocket(std::string_view chunk) {
    if (m_phase == Phase::Round) m_poll.onSocket(chunk);
}

std::optional<TimePoint> FrmHitScores::nextDeadline() const {
    switch (m_phase) {
        case Phase::Idle:
            return std::nullopt;
        case Phase::Settling:
        case Phase::ClearSettling:
            return m_due;
        case Phase::Block:
            return m_block.whole() ? m_due : m_block.deadline();
        case Phase::Round:
            return m_poll.nextDeadline();
    }
    return std::nullopt;
}

void FrmHitScores::onTime(TimePoint now) {
    switch (m_phase) {
        case Phase::Idle:
            return;
        case Phase::Settling:
            if (now >= m_due) startRoad(now);
            return;
        case Phase::ClearSettling:
            if (now >= m_due) sendClear(now);
            return;
        case Phase::Block:
            if (m_block.whole() || m_block.timedOut(now)) finishBlock();
            return;
        case Phase::Round:
            m_poll.onTime(now);
            return;
    }
}

std::string FrmHitScores::progress() const {
    if (m_phase != Phase::Round || !m_poll.running()) return {};
    return "Reading hit scores: target " + std::to_string(m_poll.target()) + " of " +
           std::to_string(m_poll.count()) + " (Esc stops)";
}

void FrmHitScores::Escape() {
    if (m_phase != Phase::Round) return;
    abandonRound();
    m_outcome = Outcome::Stopped;
}

void FrmHitScores::Unload() {
    m_poll.abandon();
    m_block.stop();
    stopListening();
    m_phase = Phase::Idle;
}

void FrmHitScores::changed() const {
    if (m_changeObserver) m_changeObserver();
}

}  // namespace halvane
