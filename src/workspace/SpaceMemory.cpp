#include "workspace/SpaceMemory.h"

#include "workspace/DisplayAbsence.h"
#include "workspace/Renaming.h"

#include <algorithm>

namespace kova {

void SpaceMemory::store(const std::vector<ManagedWindow>& windows, TileAssignments& assignments) {
    std::map<std::optional<std::uint64_t>, std::set<WindowID>> leaving;
    for (const auto& window : windows) {
        if (window.isElsewhere && assignments.isInAnyTile(window.id)) leaving[window.space].insert(window.id);
    }
    for (const auto& [space, ids] : leaving) {
        TileAssignments held = assignments;
        held.keepOnly(ids);
        for (const auto& id : ids) {
            assignments.remove(id);
            for (auto& places : places_) places.tiles.remove(id);
        }
        add(space, std::move(held));
    }
}

void SpaceMemory::storeFrom(const std::vector<TileTarget>& targets, const std::vector<ManagedWindow>& windows,
                            TileAssignments& assignments) {
    const auto isIn = [&](const TileTarget& target) { return std::ranges::find(targets, target) != targets.end(); };
    std::vector<ManagedWindow> leaving;
    for (const auto& window : windows) {
        if (!window.isElsewhere) continue;
        const auto fronted = assignments.targetsOf(window.id);
        const auto stack = assignments.stackTargetOf(window.id);
        if (std::ranges::any_of(fronted, isIn) || (stack && isIn(*stack))) leaving.push_back(window);
    }
    store(leaving, assignments);
}

void SpaceMemory::add(const std::optional<std::uint64_t>& space, TileAssignments held) {
    const auto same = space ? std::ranges::find(places_, space, &Places::space) : places_.end();
    if (same == places_.end()) {
        places_.push_back({space, std::move(held)});
    } else {
        same->tiles = withRememberedWindows(held, std::move(same->tiles)).assignments;
    }
}

bool SpaceMemory::restore(const std::vector<ManagedWindow>& windows, std::uint64_t shownSpace, SpaceChange change,
                          TileAssignments& assignments) {
    if (places_.empty()) return false;
    std::vector<TileAssignments> returning;
    for (auto& [space, tiles] : places_) {
        std::set<WindowID> back;
        for (const auto& window : windows) {
            if (!tiles.isInAnyTile(window.id)) continue;
            const bool belongsHere = space ? *space == shownSpace : change == SpaceChange::possible;
            // While the window manager is being replaced, the Spaces of windows are unknown.
            const bool wasSentHere = !window.isElsewhere && !belongsHere && (window.space || !space);
            if (wasSentHere || assignments.isInAnyTile(window.id)) {
                tiles.remove(window.id);
            } else if (!window.isElsewhere && belongsHere) {
                back.insert(window.id);
            }
        }
        if (back.empty()) continue;
        returning.push_back(tiles);
        returning.back().keepOnly(back);
        for (const auto& id : back) tiles.remove(id);
    }
    std::erase_if(places_, [](const Places& places) { return places.tiles == TileAssignments{}; });
    if (returning.empty()) return false;
    store(windows, assignments);
    for (const auto& held : returning) assignments = withRememberedWindows(held, std::move(assignments)).assignments;
    return true;
}

std::map<WindowID, CGRect> SpaceMemory::takeAppliableFrames(const std::vector<ManagedWindow>& windows) {
    std::map<WindowID, CGRect> due;
    if (pendingFrames_.empty()) return due;
    for (const auto& window : windows) {
        if (window.isElsewhere || !window.isResponding) continue;
        if (auto pending = pendingFrames_.extract(window.id)) due.insert(std::move(pending));
    }
    return due;
}

bool SpaceMemory::holds(const WindowID& windowID) const {
    return std::ranges::any_of(places_, [&](const Places& places) { return places.tiles.isInAnyTile(windowID); });
}

void SpaceMemory::keepOnly(const std::set<WindowID>& windowIDs) {
    for (auto& places : places_) places.tiles.keepOnly(windowIDs);
    std::erase_if(places_, [](const Places& places) { return places.tiles == TileAssignments{}; });
    std::erase_if(pendingFrames_, [&](const auto& pending) { return !windowIDs.contains(pending.first); });
}

void SpaceMemory::rename(const WindowID& windowID, const WindowID& newID) {
    for (auto& places : places_) places.tiles.rename(windowID, newID);
    renameKey(pendingFrames_, windowID, newID);
}

void SpaceMemory::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    for (auto& places : places_) places.tiles.renameDisplay(displayID, newID);
}

} // namespace kova
