// Tiles that rules and preferences designate for windows. An arrangement assigns these tiles before it compares scores.
#pragma once

#include "workspace/ArrangementPlan.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kova {

struct DesignatedTile {
    enum class Kind { rule, preference };
    Kind kind = Kind::rule;
    std::size_t candidate = 0; // the window: index in the input's candidates
    std::size_t display = 0;   // index in the input's displays
    std::size_t slot = 0;      // index in that display's slots
    std::string reason;        // in plain words
};

/// Sorted by precedence: tiles that rules designate come before those of preferences. Among these, tiles for visible
/// windows come first, then tiles in which the window is in front already, then tiles on the window's own display. A
/// rule designates only a tile on the window's own display; a preference also designates tiles on other displays.
std::vector<DesignatedTile> designatedTiles(const ArrangementInput& input);

} // namespace kova
