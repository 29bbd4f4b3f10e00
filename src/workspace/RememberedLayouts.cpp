#include "workspace/RememberedLayouts.h"

#include <algorithm>
#include <utility>

namespace kova {

void RememberedLayouts::leave(const DisplayID& displayID, const ShownLayout& layout,
                              const TileAssignments& assignments) {
    auto& homes = homes_[displayID];
    if (!homes.empty() && homes.back().shown.layoutID == layout.layoutID) homes.clear();
    RememberedLayout home{layout, assignments.onDisplay(displayID)};
    for (const auto& other : homes) {
        for (const auto& window : other.assignments.windows()) home.assignments.remove(window);
    }
    if (home.assignments != TileAssignments{}) homes.insert(homes.begin(), std::move(home));
    if (homes.empty()) homes_.erase(displayID);
}

std::vector<RememberedLayout> RememberedLayouts::of(const DisplayID& displayID,
                                                    const TileAssignments& assignments) const {
    const auto found = homes_.find(displayID);
    if (found == homes_.end()) return {};
    const auto present = assignments.windowsOn(displayID);
    std::vector<RememberedLayout> homes = found->second;
    for (auto& home : homes) home.assignments.keepOnly(present);
    return homes;
}

void RememberedLayouts::keepIf(const std::function<bool(const WindowID&)>& isKept) {
    for (auto& [display, homes] : homes_) {
        for (auto& home : homes) {
            for (const auto& window : home.assignments.windows()) {
                if (!isKept(window)) home.assignments.remove(window);
            }
        }
        std::erase_if(homes, [](const RememberedLayout& home) { return home.assignments == TileAssignments{}; });
    }
    std::erase_if(homes_, [](const auto& entry) { return entry.second.empty(); });
}

void RememberedLayouts::forget(const WindowID& windowID) {
    keepIf([&](const WindowID& window) { return window != windowID; });
}

void RememberedLayouts::keepOnlyWaiting(const TileAssignments& assignments) {
    keepIf([&](const WindowID& window) {
        return !assignments.isAssigned(window) && assignments.stackTargetOf(window).has_value();
    });
}

void RememberedLayouts::keepOnly(const std::set<WindowID>& windowIDs) {
    if (homes_.empty()) return;
    keepIf([&](const WindowID& window) { return windowIDs.contains(window); });
}

void RememberedLayouts::rename(const WindowID& windowID, const WindowID& newID) {
    for (auto& [display, homes] : homes_) {
        for (auto& home : homes) home.assignments.rename(windowID, newID);
    }
}

void RememberedLayouts::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    auto homes = homes_.extract(displayID);
    if (homes.empty()) return;
    homes.key() = newID;
    for (auto& home : homes.mapped()) home.assignments.renameDisplay(displayID, newID);
    homes_.insert(std::move(homes));
}

} // namespace kova
