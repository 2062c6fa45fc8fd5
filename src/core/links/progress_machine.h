#pragma once
// A progress window that runs on the application's clock: how far it has come, what it is doing, and
// whether it is over. One view serves every such window.

#include <string>
#include <utility>

#include "links/timed_machine.h"

namespace halvane {

class ProgressMachine : public TimedMachine {
  public:
    // The window is done and goes.
    virtual bool closed() const = 0;
    // The bar: its value and its maximum.
    virtual std::pair<int, int> progress() const = 0;
    // The words under the bar ("" for none).
    virtual std::string progressText() const = 0;
};

}  // namespace halvane
