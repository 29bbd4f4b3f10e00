#include "workspace/PendingApplicationPlacement.h"

#include "layout/TileSpans.h"

#include <utility>

namespace kova {

std::map<std::string, LaunchableApplication>
applicationsOf(const std::map<std::string, PendingApplicationPlacement>& placements) {
    std::map<std::string, LaunchableApplication> out;
    for (const auto& [tile, placement] : placements) out.emplace(tile, placement.application);
    return out;
}

void renameDisplay(std::map<std::string, PendingApplicationPlacement>& placements, const DisplayID& formerID,
                   const DisplayID& newID) {
    std::map<std::string, PendingApplicationPlacement> renamed;
    for (auto& [tile, placement] : placements) {
        if (placement.displayID == formerID) placement.displayID = newID;
        renamed.insert_or_assign(tileTargetID(placement.displayID, placement.slotID), std::move(placement));
    }
    placements = std::move(renamed);
}

} // namespace kova
