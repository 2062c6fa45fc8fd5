#pragma once
// The subcommands of halvane-cli.

#include <iosfwd>

#include "authoring/shared_state.h"

namespace halvane::cli {

// `config`: the shared state as read at start-up, one Name=Value line each.
void printConfig(const SharedState& state, std::ostream& out);

}  // namespace halvane::cli
