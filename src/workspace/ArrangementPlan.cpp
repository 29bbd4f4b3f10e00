#include "workspace/ArrangementPlan.h"

namespace kova {

void ArrangementPlan::rename(const WindowID& windowID, const WindowID& newID) {
    const auto rename = [&](auto& entries) {
        for (auto& entry : entries) {
            if (entry.window.id == windowID) entry.window.id = newID;
        }
    };
    rename(placements);
    rename(surplus);
    rename(leftAlone);
    for (auto& placement : placements) {
        if (placement.behindID == windowID) placement.behindID = newID;
    }
}

void ArrangementPlan::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    const auto rename = [&](DisplayTileTarget& target) {
        if (target.displayID == displayID) target.displayID = newID;
    };
    for (auto& placement : placements) {
        rename(placement.target);
        for (auto& claimed : placement.claimedTargets) rename(claimed);
    }
}

std::vector<std::string> ArrangementPlan::explanation() const {
    std::vector<std::string> lines;
    for (const auto& placement : placements) lines.push_back(placement.explanation);
    for (const auto& window : surplus) lines.push_back(window.explanation);
    for (const auto& window : leftAlone) lines.push_back(window.explanation);
    if (!surplus.empty()) {
        lines.push_back(std::to_string(surplus.size()) + " surplus windows minimized; none were closed.");
    }
    return lines;
}

} // namespace kova
