#pragma once
// What a window shows of one of its controls: caption, enabled and visible flags, and its place in
// twips. Window models keep their controls as these, and views draw them.

#include <string>

namespace halvane {

struct Control {
    std::string Caption;
    bool Enabled = true;
    bool Visible = true;
    float Left = 0;
    float Top = 0;
    float Width = 0;
    float Height = 0;
};

}  // namespace halvane
