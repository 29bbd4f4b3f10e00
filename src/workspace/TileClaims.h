// Claims of windows to tiles, which an arrangement fulfills before it compares any score: first tiles that a rule
// names, then tiles for which the user prefers an application.
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

/// The claims in the order of precedence: those of rules before preferences, then those of visible windows first, then
/// those of the tile's present front window first. A rule claims a tile on the window's display only; a preference
/// claims tiles on other displays, too, but with lower precedence.
std::vector<TileClaim> tileClaims(const ArrangementInput& input);

} // namespace kova
