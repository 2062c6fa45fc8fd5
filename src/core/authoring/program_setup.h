#pragma once
// The "Program Setup" dialog (Settings): the length of the Program, for New and for "Add Time".

#include <cstdint>
#include <optional>
#include <string>

#include "authoring/window.h"

namespace halvane {

class Operator;

class Settings : public Window {
  public:
    // Loads the dialog with the current length.
    Settings(std::int16_t numSeconds, Operator& op);

    static constexpr const char* Caption = "Program Setup";
    static constexpr const char* Label1 = "Length of Program";
    static constexpr const char* Label3 = "Sec.";

    std::string Text1;  // the length, free text

    void CmdPlus_L();
    void CmdMinus_L();
    // Closes the dialog; a length above zero becomes its result. A length that no Program can have
    // is refused with a message and the dialog stays open.
    void OKButton();
    void CancelButton();

    bool closed() const { return m_closed; }
    // The length chosen by OK, or nothing after Cancel or a length of zero or less.
    std::optional<std::int16_t> result() const { return m_result; }

  private:
    Operator& m_operator;
    bool m_closed = false;
    std::optional<std::int16_t> m_result;
};

}  // namespace halvane
