#pragma once
// The "Setup" dialog (frmDisplay): the range's size, icons, Program columns, target type, radios
// and click interface, kept in hvn.cfg.

#include <string>

#include "authoring/window.h"

namespace halvane {

class Form1;

class frmDisplay : public Window {
  public:
    // Loads the dialog from the shared state.
    explicit frmDisplay(Form1& form);

    static constexpr const char* Caption = "Setup";
    static constexpr const char* kTargetsLabel = "Number of Targets (1-200)";
    static constexpr const char* kColsLabel = "Number of Target Per Row";

    // Option buttons: within each group, setting one clears the others (see set()).
    bool optBottom = false, optTop = false;
    bool optSmall = false, OptMed = false, optLarge = false;
    bool optNumbers = false, optGroups = false;
    bool OptLM_Series = false, OptVMR = false, OptNX_Box = false;
    bool optLeftClick = false, optRightClick = false;
    // Check boxes: 1 checked, 0 not.
    int cb_USB = 0, cb_LMC = 0, cb_Wifi = 0;
    std::string Txt_NumCols = "1";
    std::string Txt_NumTargets = "1";

    // Sets an option button the way a click does: the others of its group go off.
    void set(bool& option, bool value = true);

    void Command7();   // "-" of Txt_NumCols
    void Command8();   // "+" of Txt_NumCols
    void Command9();   // "-" of Txt_NumTargets
    void Command10();  // "+" of Txt_NumTargets
    void OKButton();
    void CancelButton();
    bool closed() const { return m_closed; }

    bool OldUseGroups = false;

  private:
    bool readBox(const std::string& text, const char* label, int& value);
    void step(std::string& box, const char* label, int delta, int limit);
    bool answerModeSwitch();
    void writeSettings();

    Form1& m_form;
    bool m_closed = false;
};

}  // namespace halvane
