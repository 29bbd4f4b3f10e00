#include "workspace/RememberedLayouts.h"

#include "workspace/Renaming.h"

#include <algorithm>
#include <utility>

namespace kova {

void RememberedLayouts::leave(const DisplayID& displayID, const ShownLayout& layout,
                              const TileAssignments& assignments) {
    auto& layouts = layoutsByDisplay_[displayID];
    if (!layouts.empty() && layouts.back().shown.layoutID == layout.layoutID) layouts.clear();
    RememberedLayout remembered{layout, assignments.onDisplay(displayID)};
    for (const auto& other : layouts) {
        for (const auto& window : other.assignments.windows()) remembered.assignments.remove(window);
    }
    if (remembered.assignments != TileAssignments{}) layouts.insert(layouts.begin(), std::move(remembered));
    if (layouts.empty()) layoutsByDisplay_.erase(displayID);
}

std::vector<RememberedLayout> RememberedLayouts::of(const DisplayID& displayID,
                                                    const TileAssignments& assignments) const {
    const auto found = layoutsByDisplay_.find(displayID);
    if (found == layoutsByDisplay_.end()) return {};
    const auto present = assignments.windowsOn(displayID);
    std::vector<RememberedLayout> layouts = found->second;
    for (auto& remembered : layouts) remembered.assignments.keepOnly(present);
    return layouts;
}

void RememberedLayouts::keepIf(const std::function<bool(const WindowID&)>& isKept) {
    for (auto& [display, layouts] : layoutsByDisplay_) {
        for (auto& remembered : layouts) {
            for (const auto& window : remembered.assignments.windows()) {
                if (!isKept(window)) remembered.assignments.remove(window);
            }
        }
        std::erase_if(layouts,
                      [](const RememberedLayout& remembered) { return remembered.assignments == TileAssignments{}; });
    }
    std::erase_if(layoutsByDisplay_, [](const auto& entry) { return entry.second.empty(); });
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
    if (layoutsByDisplay_.empty()) return;
    keepIf([&](const WindowID& window) { return windowIDs.contains(window); });
}

void RememberedLayouts::rename(const WindowID& windowID, const WindowID& newID) {
    for (auto& [display, layouts] : layoutsByDisplay_) {
        for (auto& remembered : layouts) remembered.assignments.rename(windowID, newID);
    }
}

void RememberedLayouts::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    const auto layouts = layoutsByDisplay_.find(displayID);
    if (layouts == layoutsByDisplay_.end()) return;
    for (auto& remembered : layouts->second) remembered.assignments.renameDisplay(displayID, newID);
    renameKey(layoutsByDisplay_, displayID, newID);
}

} // namespace kova
