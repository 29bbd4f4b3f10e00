// Tiles that belong to a window before any score is compared: first those that a rule names for it, then those for
// which the user prefers its application.
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

/// In the order in which they are granted: of several windows that claim a tile, the one that is in front there comes
/// first, then those that are visible. A rule names a tile of the display that holds the window; a preference also
/// holds on other displays, those after its own.
std::vector<TileClaim> tileClaims(const ArrangementInput& input);

} // namespace kova
