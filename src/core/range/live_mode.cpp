#include "range/live_mode.h"

#include <algorithm>
#include <utility>

#include "authoring/about_box.h"
#include "authoring/operator.h"

namespace halvane {

namespace {
const std::string kMarked = "True";
const std::string kUnmarked = "False";
constexpr int kNoBorder = 0, kSingleBorder = 1;
}  // namespace

frmLiveMode::frmLiveMode(SharedState& state, SerialPort& port, const PortNames& names, WifiSend wifi,
                         Operator& op, PositionStore& positions)
    : RangeWindow(state, port, names, std::move(wifi), op, positions, RangeWindowKind::Live, kPositionTag,
                  {"Get Hit Scores", true, true, 840, 1560, 1575, 375},
                  {"Clear Hit Scores", true, true, 5640, 1560, 1575, 375}) {}

void frmLiveMode::Load() {
    m_view.guard();
    placement.Tag = kPositionTag;
    RestoreWindowPos(placement, m_positions);
    listenToPort();
    PortError = false;
    const RangePort::Opening opening = m_port.open();
    if (opening == RangePort::Opening::Failed) {
        // The window stays up without its range: the operator closes it and sees to the port.
        PortError = true;
        return;
    }
    if (opening == RangePort::Opening::Opened && m_state.TypeVMR4000) {
        for (const auto& frame : lineControllerOpening(true)) m_port.queueSerial(frame);
        flush();
    }
    // Unlike the run window, the hit score buttons follow the settings in both layouts.
    showHitScoreButtons(m_state, BtnGetHitScores, BtnClearHitScores);
    m_view.build();
}

void frmLiveMode::Resize(float widthTwips, float heightTwips) {
    const float w = widthTwips;
    if (w > Label1.Width) {
        for (Control* c : {&Label1, &Label2, &BtnExit}) c->Left = w / 2 - c->Width / 2;
        BtnFriend.Left = w / 2 - 2400;
        BtnEdge.Left = w / 2 - 1200;
        BtnFoe.Left = w / 2;
        BtnDown.Left = w / 2 + 1200;
        BtnGetHitScores.Left = w / 4 - BtnGetHitScores.Width / 2;
        BtnClearHitScores.Left = 3 * w / 4 - BtnClearHitScores.Width / 2;
    }
    // As in the run window, the range's box follows the window from the first opening on; after a
    // failed load there is no range to follow.
    fitScrollBox(widthTwips, heightTwips);
}

void frmLiveMode::allTargets(wire::Action action, TimePoint now) {
    // No test of the present face, and the marks stay.
    m_port.queue(allTargetsActionFrames(action, Carriers::from(m_state)), now);
    flush();
    for (int i = 1; i <= tileCount(); ++i) m_view.setFace(i, action);
}

bool frmLiveMode::marked(int target) const {
    return m_view.tiles().at(static_cast<std::size_t>(target - 1)).Tag == kMarked;
}

void frmLiveMode::clearMarks() {
    for (int i = 1; i <= tileCount(); ++i) m_view.setMark(i, kUnmarked, kSingleBorder);
}

void frmLiveMode::PicTarget_MouseDown(int index, int button, int shift, TimePoint now) {
    if (index < 1 || index > tileCount()) return;
    // Ctrl adds to the marks; any other click starts them afresh.
    if (shift != kCtrl) clearMarks();
    m_view.setMark(index, kMarked, kNoBorder);
    const bool popup =
        button == kRightButton || (button == kLeftButton && m_state.LeftClickIF && shift != kCtrl);
    if (!popup) return;
    m_view.CurTile = static_cast<std::int16_t>(index);
    openPopup(now);
}

void frmLiveMode::LblRow_MouseDown(int index, int button, int /*shift*/, TimePoint now) {
    const bool acts =
        (button == kLeftButton && m_state.LeftClickIF) || (button == kRightButton && m_state.RightClickIF);
    if (!acts || index < 1 || tileCount() == 0) return;
    const int cols = m_state.NumCols;
    const int first = index * cols - cols + 1;
    const int last = std::min(index * cols, static_cast<int>(m_state.NumTargets));
    clearMarks();
    // The border stays single, so a marked row does not show.
    for (int i = first; i <= std::min(last, tileCount()); ++i) m_view.setMark(i, kMarked, kSingleBorder);
    m_view.CurTile = 1;
    openPopup(now);
}

void frmLiveMode::openPopup(TimePoint now) {
    std::vector<PopupItem> items;
    for (const auto& item : kPopupItems) items.push_back({item.name, item.caption});
    popupItem_Click(m_operator.showPopup(kPopupMenu, items), now);
}

void frmLiveMode::popupItem_Click(std::string_view item, TimePoint now) {
    const auto chosen = std::find_if(kPopupItems.begin(), kPopupItems.end(),
                                     [item](const PopupCommand& p) { return item == p.name; });
    if (chosen == kPopupItems.end()) return;
    const Carriers carriers = Carriers::from(m_state);
    for (int i = 1; i <= tileCount(); ++i) {
        if (!marked(i)) continue;
        // The frame goes whatever the tile shows: the operator may be putting a target right.
        m_port.queue(targetActionFrames(chosen->action, i, carriers), now);
        m_view.setFace(i, chosen->action);
        m_view.setMark(i, kUnmarked, kSingleBorder);
    }
    flush();
}

void frmLiveMode::lineLost() {
    if (m_lineLostTold) return;
    m_lineLostTold = true;
    m_port.close();
    m_operator.critical(
        m_port.lostMessage(
            "The tiles still follow the commands; open Live Mode again when the line is back."),
        kAppTitle);
    changed();
}

}  // namespace halvane
