#pragma once
// The About box: the application's title and version.

#include <string>

#include "authoring/window.h"

namespace halvane {

inline constexpr const char* kAppTitle = "Halvane";

class AboutBox : public Window {
  public:
    AboutBox();
    std::string Caption;
    std::string lblTitle;
    std::string lblVersion;
    std::string lblDescription;
    std::string lblDisclaimer;
};

}  // namespace halvane
