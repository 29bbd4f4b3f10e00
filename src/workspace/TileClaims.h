// Tiles that windows get before any score is compared: first those that a rule names, then those for which the user
// prefers an application.
#pragma once

#include "workspace/ArrangementPlan.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kova {

struct TileClaim {
    enum class Kind { rule, preference };
    Kind kind = Kind::rule;
    std::size_t candidate = 0; // index in the input's candidates
    std::size_t display = 0;   // index in the input's displays
    std::size_t slot = 0;      // index in that display's slots
    std::string reason;        // in plain words
};

/// In the order of precedence: of several windows that claim a tile, its front window comes first, then visible
/// windows. A rule names a tile of the window's display; a preference also applies to other displays, after its own.
std::vector<TileClaim> tileClaims(const ArrangementInput& input);

} // namespace kova
