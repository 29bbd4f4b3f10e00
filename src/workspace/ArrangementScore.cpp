#include "workspace/ArrangementScore.h"

#include <algorithm>
#include <cmath>

namespace kova {

namespace {

// Learned slots weigh most, then the present tile, then the role. The present tile outweighs the role so that a
// repeated arrangement moves nothing without a reason. The distance decides between otherwise equal scores.
constexpr double kLearnedWeight = 100;
constexpr double kPresentTile = 25;
constexpr double kDistanceWeight = 15;

constexpr std::string_view kPrimarySlot = kPrimarySlotID;
constexpr std::string_view kUtilitySlot = "focus-utility";

/// The part of the score that does not depend on the tile. If there are fewer tiles than windows of the same rank, it
/// decides which of these windows get tiles.
double precedence(AutoArrangeAppRole role) {
    return 4 * static_cast<double>(role);
}

double primaryAffinity(AutoArrangeAppRole role) {
    switch (role) {
    case AutoArrangeAppRole::codingAgent:
        return 40;
    case AutoArrangeAppRole::browser:
        return 34;
    case AutoArrangeAppRole::productivity:
        return 28;
    case AutoArrangeAppRole::other:
        return 22;
    case AutoArrangeAppRole::utility:
        return 0;
    }
    return 0;
}

/// `position` is the slot's relative position in the layout's order, from 0 for the first to 1 for the last.
double roleAffinity(AutoArrangeAppRole role, const SlotID& slotID, double position) {
    if (canonicalSlotID(slotID) == kPrimarySlot) return primaryAffinity(role);
    if (role != AutoArrangeAppRole::utility) return slotID.text() == kUtilitySlot ? 8 : 18 - 2 * position;
    return slotID.text() == kUtilitySlot ? 36 : 8 + 8 * position;
}

double distancePenalty(const ArrangementCandidate& candidate, const ArrangementDisplay& display,
                       std::size_t slotIndex) {
    const double diagonal = std::hypot(display.visibleFrame.size.width, display.visibleFrame.size.height);
    if (candidate.frameOnScreen.size.width <= 0 || !(diagonal > 0)) return 0;
    const CGPoint from = center(candidate.frameOnScreen);
    const CGPoint to = center(tileFrameOnScreen(display.solved.frames[slotIndex], display.visibleFrame));
    return kDistanceWeight * std::min(1.0, std::hypot(to.x - from.x, to.y - from.y) / diagonal);
}

std::string plural(AutoArrangeAppRole role) {
    switch (role) {
    case AutoArrangeAppRole::codingAgent:
        return "coding agents";
    case AutoArrangeAppRole::browser:
        return "browsers";
    case AutoArrangeAppRole::productivity:
        return "productivity applications";
    case AutoArrangeAppRole::utility:
        return "utilities";
    case AutoArrangeAppRole::other:
        break;
    }
    return "applications";
}

} // namespace

ArrangementScore scoreOf(const ArrangementCandidate& candidate, const ArrangementDisplay& display,
                         std::size_t slotIndex, const AutoArrangeLearningModel& learning) {
    const auto& slots = display.solved.slots;
    const SlotID& slotID = slots[slotIndex].id;
    const double last = static_cast<double>(std::max<std::size_t>(slots.size() - 1, 1));
    ArrangementScore score;
    score.learned = kLearnedWeight * learning.preference(display.layout.id, candidate.applicationKey, slotID);
    score.role =
        precedence(candidate.role) + roleAffinity(candidate.role, slotID, static_cast<double>(slotIndex) / last);
    if (candidate.currentTarget == TileTarget{display.displayID, slotID}) score.present = kPresentTile;
    score.distance = -distancePenalty(candidate, display, slotIndex);
    return score;
}

std::string reasonFor(const ArrangementScore& score, const ArrangementCandidate& candidate, const TileSlot& slot) {
    const bool isPrimary = canonicalSlotID(slot.id) == kPrimarySlot;
    if (score.learned > 0 && score.learned >= std::max(score.present, score.role))
        return "that is where you usually keep it";
    if (score.isAlone) return "a window alone has the primary tile";
    if (score.present > 0) return "it is there already";
    if (isPrimary && candidate.role != AutoArrangeAppRole::utility) {
        return plural(candidate.role) + " are offered the primary tile first";
    }
    if (slot.id.text() == kUtilitySlot && candidate.role == AutoArrangeAppRole::utility)
        return "utilities go to the utility tile";
    if (candidate.role == AutoArrangeAppRole::utility) return "utilities go to the last tiles";
    return "of the tiles that were left it suits best";
}

} // namespace kova
