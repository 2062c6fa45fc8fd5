#pragma once
// The views of the console's windows, registered by the type of their models.

namespace halvane {
class Operator;
}

namespace halvane::app {

class WindowRegistry;

void addConsoleWindows(WindowRegistry& registry, Operator& op);

}  // namespace halvane::app
