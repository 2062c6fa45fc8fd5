#include "range/range_display.h"

#include "authoring/about_box.h"
#include "authoring/profile_file.h"
#include "text/conversions.h"
#include "text/fault.h"

namespace halvane {

namespace {
constexpr float kScrollBoxMarginBelow = 2000;
}  // namespace

RangeDisplay::RangeDisplay(SharedState& state, Operator& op)
    : m_state(state), m_operator(op), m_view(state, RangeWindowKind::Layout) {}

void RangeDisplay::Load() {
    m_view.guard();
    if (m_state.UseGroups) M_Group.visible = M_Group.enabled = true;
    M_SN.visible = M_SN.enabled = m_state.TypeLMSeries;
    m_view.build();
}

void RangeDisplay::Resize(float widthTwips, float heightTwips) {
    const float w = widthTwips;
    if (w > Label1.Width) {
        Label1.Left = w / 2 - Label1.Width / 2;
        OKButton.Left = w / 2 - OKButton.Width / 2;
    }
    if (heightTwips > 2000 && widthTwips > 150) {
        picScrollBox.Height = heightTwips - kScrollBoxMarginBelow;
        picScrollBox.Width = widthTwips - 150;
    }
}

void RangeDisplay::PicTarget_MouseDown(int index, int button) {
    if (!m_state.TypeLMSeries && !m_state.UseGroups) return;
    if (button != kLeftButton || index < 1 || index > tileCount()) return;
    m_view.CurTile = static_cast<std::int16_t>(index);
    const std::string chosen = m_operator.showPopup(kPopupMenu, {M_SN, M_Group});
    // Only an item the operator could see and use counts.
    if (chosen == M_SN.name && M_SN.visible && M_SN.enabled) M_SN_Click();
    if (chosen == M_Group.name && M_Group.visible && M_Group.enabled) M_Group_Click();
}

void RangeDisplay::M_SN_Click() {
    // The box offers element 0, not the clicked target's number: it always opens with 0.
    const std::optional<std::string> answer =
        m_operator.inputBox("Enter Serial Number", "Serial Number", std::to_string(m_state.SerialNum[0]));
    const double v = text::Val(answer.value_or(""));
    // Empty, Cancel, 0, negative and too large are all dropped without a word.
    if (!(v > 0 && v < kSerialLimit)) return;
    m_state.SerialNum[static_cast<std::size_t>(m_view.CurTile)] = *text::toInt32(v);
    m_view.DrawSerialCaption();
    SaveSerialNum();
}

void RangeDisplay::M_Group_Click() {
    // The range in the prompt is advice only; Cancel and an empty answer are group 0.
    const std::optional<std::string> answer = m_operator.inputBox("Group Number (1-20)", "0", "");
    const double v = text::Val(answer.value_or(""));
    const std::optional<std::int16_t> group = text::toInt16(v);
    const auto tile = static_cast<std::size_t>(m_view.CurTile);
    if (!group)
        throw Fault("Group number \"" + answer.value_or("") + "\" is beyond what a group can be numbered " +
                    "(-32768 to 32767); target " + std::to_string(tile) + " stays in group " +
                    std::to_string(m_state.GroupNum[tile]) + ".");
    m_state.GroupNum[tile] = *group;
    if (v > m_state.NumGroups) m_state.NumGroups = *group;
    m_view.DrawGroupCaption();
    SaveGroupNum();
}

void RangeDisplay::SaveSerialNum() {
    const auto n = m_view.CurTile;
    write("Serial Num", text::Str(std::int64_t{n}), text::Str(std::int64_t{m_state.SerialNum[n]}));
}

void RangeDisplay::SaveGroupNum() {
    const auto n = m_view.CurTile;
    write("Group Num", text::Str(std::int64_t{n}), text::Str(std::int64_t{m_state.GroupNum[n]}));
    write("Settings", "Num Groups", text::Str(std::int64_t{m_state.NumGroups}));
}

// A file that will not take the numbers is told once per opening; they still hold for this run.
void RangeDisplay::write(const std::string& section, const std::string& key, const std::string& value) {
    if (WriteIni(m_state.ConfigFile, section, key, value) || m_writeFailTold) return;
    m_writeFailTold = true;
    m_operator.tell("The target numbers could not be written to " + m_state.ConfigFile +
                        "; they hold until the program ends.",
                    kAppTitle);
}

void RangeDisplay::Unload() {
    // Everything is stored as it is entered; the main window has no setup button to hide.
    m_closed = true;
}

}  // namespace halvane
