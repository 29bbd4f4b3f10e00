#include "workspace/DisplayMemory.h"

#include "layout/WorkspaceProfile.h"
#include "workspace/DisplayRenaming.h"
#include "workspace/Renaming.h"

#include <algorithm>

namespace kova {

namespace {

/// Takes the windows that were front windows in `before`, and that KOVA has minimized and that have no tile now. Puts
/// them into free tiles of `before`, each into its former tile if that tile is free. Returns the windows that got a
/// tile.
std::vector<WindowID> returnToFreeTiles(const TileAssignments& before, TileAssignments& assignments,
                                        const std::function<bool(const WindowID& windowID)>& isMinimizedByKova) {
    std::vector<WindowID> returned;
    const auto& tiles = before.assignedWindowIDs;
    const auto isFree = [&](const auto& tile) { return !assignments.assignedWindowIDs.contains(tile.first); };
    for (const bool mustBeFormerTile : {true, false}) {
        for (auto formerTile = tiles.begin(); formerTile != tiles.end(); ++formerTile) {
            if (!isMinimizedByKova(formerTile->second) || assignments.isInAnyTile(formerTile->second)) continue;
            const auto tile = mustBeFormerTile ? formerTile : std::find_if(tiles.begin(), tiles.end(), isFree);
            if (tile == tiles.end() || !isFree(*tile)) continue;
            assignments.insertIntoStack(tile->first, formerTile->second, TileAssignments::StackPosition::front);
            (void)assignments.assign(formerTile->second, {tile->first}); // the tile is free: no window is displaced
            returned.push_back(formerTile->second);
        }
    }
    return returned;
}

} // namespace

DisplayMemory::DisplayMemory(MainQueue& queue, std::function<void()> settled) :
    queue_(queue), settled_(std::move(settled)) {}

std::vector<DisplayMemory::Renaming> DisplayMemory::noteConnected(const std::set<DisplayID>& before,
                                                                  const std::set<DisplayID>& now,
                                                                  TileAssignments& assignments) {
    for (const auto& id : before) {
        if (now.contains(id)) continue;
        absence_.remember({id}, assignments);
        if (isNamedByFrame(id)) recentlyDisconnected_.insert(id);
    }
    std::set<DisplayID> unknown;
    for (const auto& id : now) {
        if (before.contains(id)) continue;
        const bool isKnown = recentlyDisconnected_.erase(id) > 0 || absence_.remembers({id}) ||
                             assignments.onDisplay(id) != TileAssignments{};
        if (isKnown) {
            returnWindows(absence_, {id}, assignments);
        } else {
            unknown.insert(id);
        }
    }
    std::vector<Renaming> renamings;
    for (const auto& [formerID, newID] : matchRenamedDisplays(recentlyDisconnected_, unknown)) {
        recentlyDisconnected_.erase(formerID);
        returnWindows(absence_, {formerID}, assignments);
        renamings.push_back({formerID, newID});
    }
    return renamings;
}

void DisplayMemory::rememberDisplay(const DisplayID& displayID, const TileAssignments& assignments) {
    absence_.remember({displayID}, assignments);
}

void DisplayMemory::rememberDisconnectedDisplays(const TileAssignments& assignments,
                                                 const std::set<DisplayID>& connected) {
    std::set<DisplayID> absent;
    for (const auto& [target, window] : assignments.assignedWindowIDs) {
        const DisplayID& id = target.display;
        if (!connected.contains(id)) absent.insert(id);
    }
    for (const auto& id : absent) {
        if (!absence_.remembers({id})) absence_.remember({id}, assignments);
    }
}

void DisplayMemory::returnWindowsToDisplay(const DisplayID& displayID, TileAssignments& assignments) {
    returnWindows(absence_, {displayID}, assignments);
}

void DisplayMemory::returnWindows(DisplayAbsence& absence, const AbsenceKey& key, TileAssignments& assignments) {
    if (!absence.remembers(key)) return;
    auto returned = absence.returnWindows(key, std::move(assignments));
    assignments = std::move(returned.assignments);
    noteWindowsToPresent(returned.returnedFronts, returned.returnedStacked);
}

void DisplayMemory::rememberLayout(const DisplayID& displayID, const std::string& layoutID,
                                   const TileAssignments& assignments) {
    formerLayouts_.remember({displayID, layoutID}, assignments);
}

void DisplayMemory::returnWindowsToLayout(const DisplayID& displayID, const std::string& layoutID,
                                          TileAssignments& assignments) {
    returnWindows(formerLayouts_, {displayID, layoutID}, assignments);
}

void DisplayMemory::forgetLayouts(const DisplayID& displayID) {
    formerLayouts_.forgetDisplay(displayID);
    for (const auto& window : beforeArrangement_.onDisplay(displayID).windows()) beforeArrangement_.remove(window);
}

void DisplayMemory::noteArrangement(const TileAssignments& assignments) {
    if (absence_.rememberedTiles().empty() || beforeArrangement_ != TileAssignments{}) return;
    beforeArrangement_ = assignments;
    for (const auto& window : assignments.windows()) {
        if (absence_.belongsToDisconnectedDisplay(window)) beforeArrangement_.remove(window);
    }
}

void DisplayMemory::returnDisplacedByArrangement(
    TileAssignments& assignments, const std::set<DisplayID>& connected,
    const std::function<bool(const WindowID& windowID)>& isMinimizedByKova) {
    if (!absence_.rememberedTiles().empty()) return;
    TileAssignments before = std::exchange(beforeArrangement_, {});
    std::erase_if(before.assignedWindowIDs, [&](const auto& tile) { return !connected.contains(tile.first.display); });
    noteWindowsToPresent(returnToFreeTiles(before, assignments, isMinimizedByKova), {});
}

void DisplayMemory::noteWindowsToPresent(const std::vector<WindowID>& toShow, const std::vector<WindowID>& toHide) {
    windowsToShow_.insert(toShow.begin(), toShow.end());
    windowsToHide_.insert(toHide.begin(), toHide.end());
}

DisplayMemory::WindowsToPresent DisplayMemory::takeWindowsToPresent() {
    return {std::exchange(windowsToShow_, {}), std::exchange(windowsToHide_, {})};
}

const ShownLayout* DisplayMemory::shown(const DisplayID& displayID) const {
    const auto found = shown_.find(displayID);
    return found == shown_.end() ? nullptr : &found->second;
}

bool DisplayMemory::noteShown(const DisplayID& displayID, const std::string& layoutID, const SolvedLayout& solved) {
    ShownLayout& last = shown_[displayID];
    if (last.layoutID == layoutID && last.tiles.frames == solved.frames) return false;
    const bool hasMoved = !last.layoutID.empty();
    last = {layoutID, tilesOf(solved)};
    return hasMoved;
}

void DisplayMemory::carryLayout(WorkspaceProfile& profile, const DisplayID& formerID, const DisplayID& newID) {
    const bool hasOwnLayout = profile.layoutSelectionsByDisplay.contains(newID);
    copyDisplay(profile, formerID, newID);
    if (inheritedLayouts_.erase(formerID) > 0) eraseDisplay(profile, formerID);
    if (!hasOwnLayout) inheritedLayouts_.insert(newID);
}

void DisplayMemory::beginSettling() {
    settledAt_ = queue_.uptime() + kSettleTime;
    queue_.after(kSettleTime, lifetime_.guard([this, due = settledAt_] {
        if (due == settledAt_) settled_();
    }));
}

void DisplayMemory::forget(const WindowID& windowID) {
    absence_.forget(windowID);
    formerLayouts_.forget(windowID);
    beforeArrangement_.remove(windowID);
    strandedFloats_.forget(windowID);
}

void DisplayMemory::forgetAllWindows() {
    absence_.forgetAll();
    formerLayouts_.forgetAll();
    beforeArrangement_ = {};
    strandedFloats_.forgetAll();
}

void DisplayMemory::keepOnly(const std::set<WindowID>& windowIDs) {
    absence_.keepOnly(windowIDs);
    formerLayouts_.keepOnly(windowIDs);
    beforeArrangement_.keepOnly(windowIDs);
    strandedFloats_.keepOnly(windowIDs);
}

void DisplayMemory::rename(const WindowID& windowID, const WindowID& newID) {
    absence_.rename(windowID, newID);
    formerLayouts_.rename(windowID, newID);
    beforeArrangement_.rename(windowID, newID);
    strandedFloats_.rename(windowID, newID);
    renameIn(windowsToShow_, windowID, newID);
    renameIn(windowsToHide_, windowID, newID);
}

void DisplayMemory::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    formerLayouts_.renameDisplay(displayID, newID);
    beforeArrangement_.renameDisplay(displayID, newID);
    strandedFloats_.renameDisplay(displayID, newID);
    renameKey(shown_, displayID, newID);
}

} // namespace kova
