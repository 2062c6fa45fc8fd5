#pragma once
// A fault inside a command: the command stops where it stands and the operator is told the text.

#include <stdexcept>
#include <string>

namespace halvane {

class Fault : public std::runtime_error {
  public:
    explicit Fault(const std::string& what) : std::runtime_error(what) {}
};

}  // namespace halvane
