// Scores how well a window suits a tile. The score depends on the learned slots, the application's role, the window's
// present tile and the distance from the window to the tile.
#pragma once

#include "workspace/ArrangementPlan.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace kova {

/// The canonical id of the tile that is filled first.
inline constexpr std::string_view kPrimarySlotID = "focus-main";

struct ArrangementScore {
    double learned = 0;
    double role = 0;
    double present = 0;
    double distance = 0;
    bool isAlone = false; // the slot is the primary one, and the display has no other window
    double total() const { return learned + role + present + distance; }
};

/// The score of putting the candidate into slot `slotIndex` of the display.
ArrangementScore scoreOf(const ArrangementCandidate& candidate, const ArrangementDisplay& display,
                         std::size_t slotIndex, const AutoArrangeLearningModel& learning);

/// Why the window gets the tile, as the end of a sentence: "it is there already", "utilities go to the last tiles".
std::string reasonFor(const ArrangementScore& score, const ArrangementCandidate& candidate, const TileSlot& slot);

} // namespace kova
