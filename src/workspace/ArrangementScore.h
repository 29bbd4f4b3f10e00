// Scores how well a window fits a tile, by the learned slots, the application's role, the window's present tile and the
// distance on the screen.
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
    bool isAlone = false; // the display has no other window
    double total() const { return learned + role + present + distance; }
};

/// The score of putting the candidate into slot `slotIndex` of the display.
ArrangementScore scoreOf(const ArrangementCandidate& candidate, const ArrangementDisplay& display,
                         std::size_t slotIndex, const AutoArrangeLearningModel& learning);

/// Why the pair was chosen, as the end of a sentence: "it is there already", "browsers go to the primary tile".
std::string reasonFor(const ArrangementScore& score, const ArrangementCandidate& candidate, const TileSlot& slot);

} // namespace kova
