#pragma once
// The "Face Time" dialog (Face_time): writes one action, and optionally a second, into every
// highlighted cell of the Program, closing the gap above each so that a column reads as a record.

#include <cstdint>
#include <string>

#include "authoring/cell_words.h"
#include "authoring/window.h"

namespace halvane {

class ProgramGrid;
struct SharedState;

class Face_time : public Window {
  public:
    Face_time(SharedState& state, ProgramGrid& grid);

    static constexpr const char* Caption = "Face Time";

    // The option buttons of the two "Action" groups, in the order Friend, Foe, Edge, Down; each
    // group holds at most one set button.
    enum Option { OptFriend, OptFoe, OptEdge, OptDown, kOptions };
    static constexpr const char* kOptionCaptions[kOptions] = {"Friend", "Foe", "Edge", "Down"};
    void setFirst(Option option) { m_first = option; }
    void setSecond(Option option) { m_second = option; }
    int first() const { return m_first; }  // -1 for none
    int second() const { return m_second; }

    std::string Text1 = "1";  // the length in seconds, free text

    void CmdPlus();
    void CmdMinus();
    void OKButton();
    void CancelButton() { m_closed = true; }
    bool closed() const { return m_closed; }

    // Members the dialog keeps while it works.
    std::string Face1;
    std::string Face2;
    std::int16_t FaceSeconds = 0;

  private:
    void applyToColumn(int col, Color c1, Color c2, bool& stopped);

    SharedState& m_state;
    ProgramGrid& m_grid;
    int m_first = -1;
    int m_second = -1;
    bool m_closed = false;
};

}  // namespace halvane
