#include "workspace/PendingApplicationPlacement.h"

#include "layout/TileTarget.h"

#include <utility>

namespace kova {

std::map<TileTarget, LaunchableApplication>
applicationsOf(const std::map<TileTarget, PendingApplicationPlacement>& placements) {
    std::map<TileTarget, LaunchableApplication> out;
    for (const auto& [tile, placement] : placements) out.emplace(tile, placement.application);
    return out;
}

void renameDisplay(std::map<TileTarget, PendingApplicationPlacement>& placements, const DisplayID& formerID,
                   const DisplayID& newID) {
    std::map<TileTarget, PendingApplicationPlacement> renamed;
    for (auto& [tile, placement] : placements) {
        if (placement.displayID == formerID) placement.displayID = newID;
        renamed.insert_or_assign(TileTarget{placement.displayID, placement.slotID}, std::move(placement));
    }
    placements = std::move(renamed);
}

} // namespace kova
