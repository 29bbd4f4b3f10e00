#include "workspace/StackPromotion.h"

#include "layout/TileTarget.h"
#include "workspace/Renaming.h"

#include <algorithm>

namespace kova {

void StackPromotion::noteDisplaced(const WindowID& windowID, const TileTarget& lostTarget,
                                   const TileTarget& waitingTarget) {
    if (lostTarget == waitingTarget) return forget(windowID);
    lostTargets_[windowID] = lostTarget;
}

void StackPromotion::rename(const WindowID& windowID, const WindowID& newID) {
    renameKey(lostTargets_, windowID, newID);
}

void StackPromotion::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    for (auto& [windowID, lost] : lostTargets_) lost = withDisplayRenamed(lost, displayID, newID);
}

void StackPromotion::keepOnly(const std::set<WindowID>& windowIDs) {
    std::erase_if(lostTargets_, [&](const auto& entry) { return !windowIDs.contains(entry.first); });
}

std::vector<std::vector<Promotion>> StackPromotion::candidates(const TileAssignments& before,
                                                               const TileAssignments& now) const {
    std::vector<std::vector<Promotion>> all;
    for (const auto& [key, former] : before.assignedWindowIDs) {
        const TileTarget& target = key;
        if (now.assignedWindowIDs.contains(target)) continue;
        std::vector<Promotion> here;
        const auto offer = [&](const WindowID& windowID) {
            if (!now.isAssigned(windowID) && !before.isAssigned(windowID)) here.push_back({windowID, target});
        };
        const auto stack = now.stackWindowIDsByTarget.find(target);
        if (stack != now.stackWindowIDsByTarget.end()) std::for_each(stack->second.begin(), stack->second.end(), offer);
        for (const auto& [windowID, lost] : lostTargets_) {
            const auto waits = now.stackTargetOf(windowID);
            if (lost == target && waits && *waits != target) offer(windowID);
        }
        if (!here.empty()) all.push_back(std::move(here));
    }
    return all;
}

} // namespace kova
