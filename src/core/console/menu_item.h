#pragma once
// One item of a window's menu, as the operator sees it.

#include <string>

namespace halvane {

struct MenuItem {
    std::string name;      // M_New
    std::string parent;    // M_File; "" for a menu or a command on the menu bar
    std::string caption;   // "&New": '&' marks the access key; "-" is a separator
    std::string shortcut;  // "Ctrl+N"
    bool enabled = true;
    bool visible = true;
};

}  // namespace halvane
