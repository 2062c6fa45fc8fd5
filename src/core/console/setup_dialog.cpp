#include "console/setup_dialog.h"

#include <initializer_list>
#include <string>

#include "authoring/about_box.h"
#include "authoring/profile_file.h"
#include "console/main_window.h"
#include "text/conversions.h"

namespace halvane {

namespace {
constexpr int kMaxTargets = 200;
constexpr int kMaxCols = 30;
}  // namespace

frmDisplay::frmDisplay(Form1& form) : m_form(form) {
    const SharedState& s = form.state();
    OldUseGroups = s.UseGroups;
    Txt_NumCols = std::to_string(s.NumCols);
    if (Txt_NumCols.empty()) Txt_NumCols = "1";
    Txt_NumTargets = std::to_string(s.NumTargets);
    if (Txt_NumTargets == "0") Txt_NumTargets = "1";
    set(s.StartBottom ? optBottom : optTop);
    if (s.IconSize == "Small") set(optSmall);
    if (s.IconSize == "Medium") set(OptMed);
    if (s.IconSize == "Large") set(optLarge);
    set(s.UseGroups ? optGroups : optNumbers);
    set(OptNX_Box, s.TypeNXBox);
    set(OptLM_Series, s.TypeLMSeries);
    set(OptVMR, s.TypeVMR4000);
    cb_USB = s.RadioUSB ? 1 : 0;
    cb_LMC = s.RadioLMC ? 1 : 0;
    cb_Wifi = s.RadioWiFi ? 1 : 0;
    set(s.LeftClickIF ? optLeftClick : optRightClick);
}

void frmDisplay::set(bool& option, bool value) {
    const std::initializer_list<std::initializer_list<bool*>> groups = {
        {&optBottom, &optTop},           {&optSmall, &OptMed, &optLarge},
        {&optNumbers, &optGroups},       {&OptLM_Series, &OptVMR, &OptNX_Box},
        {&optLeftClick, &optRightClick},
    };
    if (value)
        for (const auto& group : groups)
            for (bool* member : group)
                if (member == &option)
                    for (bool* other : group) *other = false;
    option = value;
}

// A box must hold a whole 16-bit number; otherwise the operator is told which box.
bool frmDisplay::readBox(const std::string& text, const char* label, int& value) {
    const auto number = text::strictNumber(text);
    const auto whole = number ? text::toInt16(*number) : std::nullopt;
    if (!whole) {
        m_form.tell(std::string(label) + ": \"" + text + "\" is not a number from -32768 to 32767.");
        return false;
    }
    value = *whole;
    return true;
}

void frmDisplay::step(std::string& box, const char* label, int delta, int limit) {
    int value = 0;
    if (!readBox(box, label, value)) return;
    if (delta > 0 && value < limit) box = std::to_string(value + 1);
    if (delta < 0 && value > 1) box = std::to_string(value - 1);
}

void frmDisplay::Command7() {
    step(Txt_NumCols, kColsLabel, -1, 1);
}
void frmDisplay::Command8() {
    step(Txt_NumCols, kColsLabel, +1, kMaxCols);
}
void frmDisplay::Command9() {
    step(Txt_NumTargets, kTargetsLabel, -1, 1);
}
void frmDisplay::Command10() {
    step(Txt_NumTargets, kTargetsLabel, +1, kMaxTargets);
}

// The question when the Program's columns change meaning under a changed Program. False leaves OK
// with the dialog open.
bool frmDisplay::answerModeSwitch() {
    SharedState& s = m_form.state();
    if (!s.FileChanged || s.UseGroups == OldUseGroups) return true;
    const Answer answer = m_form.ask(
        "Switching between Groups and Targets will close file. File is Changed do you want to save?",
        Buttons::YesNoCancel);
    if (answer == Answer::Cancel) return false;
    if (answer == Answer::Yes && m_form.saveFromPrompt() != Form1::SaveOutcome::Saved) return false;
    m_form.destroyGrid();
    s.FileChanged = false;
    return true;
}

void frmDisplay::OKButton() {
    int targets = 0;
    int cols = 0;
    if (!readBox(Txt_NumTargets, kTargetsLabel, targets) || !readBox(Txt_NumCols, kColsLabel, cols)) return;
    if (targets < 0 || targets > kMaxTargets) {
        m_form.tell(std::string(kTargetsLabel) + ": the range has at most 200 targets.");
        return;
    }
    SharedState& s = m_form.state();
    s.UseGroups = optGroups;
    if (!answerModeSwitch()) return;
    s.NumTargets = static_cast<std::int16_t>(targets == 0 ? 1 : targets);
    s.NumCols = static_cast<std::int16_t>(cols == 0 ? 1 : cols);
    writeSettings();
    m_form.Tag = "True";
    m_closed = true;
}

void frmDisplay::writeSettings() {
    SharedState& s = m_form.state();
    const std::string& file = s.ConfigFile;
    bool written = true;
    auto write = [&](const char* key, const std::string& value) {
        written = WriteIni(file, "Settings", key, value) && written;
    };
    auto flag = [&](const char* key, bool value, bool& setting) {
        setting = value;
        write(key, text::boolText(value));
    };
    write("Targets", Txt_NumTargets);
    write("Cols", Txt_NumCols);
    s.StartBottom = !optTop;
    write("Start Location", optTop ? "Top" : "Bottom");
    const char* icon = optSmall ? "Small" : OptMed ? "Medium" : optLarge ? "Large" : nullptr;
    if (icon) {
        s.IconSize = icon;
        write("Icon", icon);
    }
    write("Groups", text::boolText(optGroups));
    flag("NX-Box", OptNX_Box, s.TypeNXBox);
    flag("LM-Series", OptLM_Series, s.TypeLMSeries);
    flag("VMR4000", OptVMR, s.TypeVMR4000);
    flag("LMC-Radio", cb_LMC == 1, s.RadioLMC);
    flag("USB-Radio", cb_USB == 1, s.RadioUSB);
    flag("WiFi-Radio", cb_Wifi == 1, s.RadioWiFi);
    flag("LeftClickIF", optLeftClick, s.LeftClickIF);
    if (!written)
        m_form.tell("The settings could not be written to " + file + "; they hold until the program ends.");
}

void frmDisplay::CancelButton() {
    m_form.Tag = "False";
    m_closed = true;
}

}  // namespace halvane
