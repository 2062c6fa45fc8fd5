#include "authoring/about_box.h"

namespace halvane {

AboutBox::AboutBox()
    : Caption(std::string("About ") + kAppTitle),
      lblTitle(kAppTitle),
      lblVersion("Version " + std::to_string(HALVANE_VERSION_MAJOR) + "." +
                 std::to_string(HALVANE_VERSION_MINOR) + "." + std::to_string(HALVANE_VERSION_PATCH)),
      lblDescription(
          "A console for ranges of radio-controlled targets: Programs, runs, live control and scores."),
      lblDisclaimer("Check the range is clear before any target is moved from this console.") {}

}  // namespace halvane
