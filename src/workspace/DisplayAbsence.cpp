#include "workspace/DisplayAbsence.h"

#include <algorithm>
#include <utility>

namespace kova {

ReturnedWindows withRememberedWindows(const TileAssignments& remembered, TileAssignments assignments) {
    const TileAssignments before = std::move(assignments);
    ReturnedWindows result{before, {}, {}};
    const auto windows = remembered.windows();
    for (const auto& window : windows) result.assignments.remove(window);

    std::set<WindowID> displaced;
    for (const auto& window : windows) {
        const auto targets = remembered.targetsAnchorFirst(window);
        if (targets.empty()) {
            if (before.stackTargetOf(window) != remembered.stackTargetOf(window) || before.isAssigned(window)) {
                result.returnedStacked.push_back(window);
            }
            continue;
        }
        if (before.targetsAnchorFirst(window) != targets) result.returnedFronts.push_back(window);
        for (auto& displacedWindow : result.assignments.assign(window, targets))
            displaced.insert(std::move(displacedWindow));
    }
    for (const auto& [target, stack] : remembered.stackWindowIDsByTarget) {
        auto& now = result.assignments.stackWindowIDsByTarget[target];
        const auto stackedMeanwhile = std::exchange(now, stack);
        now.insert(now.end(), stackedMeanwhile.begin(), stackedMeanwhile.end());
    }
    for (const auto& displacedWindow : displaced) {
        const auto lostTile = before.targetOf(displacedWindow);
        if (lostTile && !result.assignments.isInAnyTile(displacedWindow))
            result.assignments.insertIntoStack(*lostTile, displacedWindow, TileAssignments::StackPosition::behind);
        result.returnedStacked.push_back(displacedWindow);
    }
    for (const auto& [window, anchor] : result.assignments.anchorsByWindowID) { // the tiles of a span share one stack
        result.assignments.mergeStacksInto(anchor, result.assignments.targetsOf(window), {});
    }
    result.assignments.putFrontsFirst();
    return result;
}

void DisplayAbsence::remember(const AbsenceKey& key, const TileAssignments& assignments) {
    TileAssignments remembered = assignments.onDisplay(key.displayID);
    for (const auto& window : remembered.windows()) {
        if (belongsToDisconnectedDisplay(window)) remembered.remove(window);
    }
    if (remembered != TileAssignments{}) rememberedTiles_[key] = std::move(remembered);
}

ReturnedWindows DisplayAbsence::returnWindows(const AbsenceKey& key, TileAssignments assignments) {
    const auto entry = rememberedTiles_.extract(key);
    if (entry.empty()) return {std::move(assignments), {}, {}};
    return withRememberedWindows(entry.mapped(), std::move(assignments));
}

bool DisplayAbsence::belongsToDisconnectedDisplay(const WindowID& windowID) const {
    return std::any_of(rememberedTiles_.begin(), rememberedTiles_.end(),
                       [&](const auto& entry) { return entry.second.isInAnyTile(windowID); });
}

void DisplayAbsence::forget(const WindowID& windowID) {
    for (auto& [key, remembered] : rememberedTiles_) remembered.remove(windowID);
    dropEmpty();
}

void DisplayAbsence::forgetDisplay(const DisplayID& displayID) {
    std::erase_if(rememberedTiles_, [&](const auto& entry) { return entry.first.displayID == displayID; });
}

void DisplayAbsence::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    std::map<AbsenceKey, TileAssignments> renamed;
    for (auto& [key, remembered] : rememberedTiles_) {
        remembered.renameDisplay(displayID, newID);
        const DisplayID& id = key.displayID == displayID ? newID : key.displayID;
        renamed.insert_or_assign(AbsenceKey{id, key.layoutID}, std::move(remembered));
    }
    rememberedTiles_ = std::move(renamed);
}

void DisplayAbsence::keepOnly(const std::set<WindowID>& windowIDs) {
    for (auto& [key, remembered] : rememberedTiles_) remembered.keepOnly(windowIDs);
    dropEmpty();
}

void DisplayAbsence::rename(const WindowID& windowID, const WindowID& newID) {
    for (auto& [key, remembered] : rememberedTiles_) remembered.rename(windowID, newID);
}

void DisplayAbsence::replaceRemembered(const TileAssignments& assignments) {
    for (auto& [key, remembered] : rememberedTiles_) {
        auto restored = assignments.onDisplay(key.displayID);
        if (restored == TileAssignments{}) continue;
        for (auto& [otherKey, otherTiles] : rememberedTiles_) {
            if (otherKey == key) continue;
            for (const auto& window : restored.windows()) otherTiles.remove(window);
        }
        remembered = std::move(restored);
    }
    dropEmpty();
}

void DisplayAbsence::dropEmpty() {
    std::erase_if(rememberedTiles_, [](const auto& entry) { return entry.second == TileAssignments{}; });
}

} // namespace kova
