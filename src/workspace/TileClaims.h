// Claims of windows to tiles, which are settled before any score is compared: first tiles that a rule names, then tiles
// for which the user prefers an application.
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

/// In the order of precedence: first the claims of rules; of these, and of the others, first those of visible windows,
/// then those of windows that front the tile. A rule claims a tile on the window's display only; a preference claims
/// tiles on other displays, too, but with lower precedence.
std::vector<TileClaim> tileClaims(const ArrangementInput& input);

} // namespace kova
