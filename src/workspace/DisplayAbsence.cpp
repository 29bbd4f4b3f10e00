#include "workspace/DisplayAbsence.h"

#include <algorithm>
#include <utility>

namespace kova {

ReturnedWindows withRememberedWindows(const TileAssignments& held, TileAssignments assignments) {
    const TileAssignments before = std::move(assignments);
    ReturnedWindows back{before, {}, {}};
    const auto remembered = held.windows();
    for (const auto& window : remembered) back.assignments.remove(window);

    std::set<WindowID> displaced;
    for (const auto& window : remembered) {
        const auto targets = held.targetsAnchorFirst(window);
        if (targets.empty()) {
            if (before.stackTargetOf(window) != held.stackTargetOf(window) || before.isAssigned(window)) {
                back.returnedWaiting.push_back(window);
            }
            continue;
        }
        if (before.targetsAnchorFirst(window) != targets) back.returnedFronts.push_back(window);
        for (auto& displacedWindow : back.assignments.assign(window, targets))
            displaced.insert(std::move(displacedWindow));
    }
    for (const auto& [target, stack] : held.stackWindowIDsByTarget) {
        auto& now = back.assignments.stackWindowIDsByTarget[target];
        const auto meanwhile = std::exchange(now, stack);
        now.insert(now.end(), meanwhile.begin(), meanwhile.end());
    }
    for (const auto& displacedWindow : displaced) {
        const auto lost = before.targetOf(displacedWindow);
        if (lost && !back.assignments.isInAnyTile(displacedWindow))
            back.assignments.insertIntoStack(*lost, displacedWindow, TileAssignments::StackPosition::behind);
        back.returnedWaiting.push_back(displacedWindow);
    }
    for (const auto& [window, anchor] : back.assignments.anchorsByWindowID) { // the tiles of a span share one stack
        back.assignments.mergeStacksInto(anchor, back.assignments.targetsOf(window), {});
    }
    back.assignments.putFrontsFirst();
    return back;
}

void DisplayAbsence::remember(const AbsenceKey& key, const TileAssignments& assignments) {
    TileAssignments held = assignments.onDisplay(key.displayID);
    for (const auto& window : held.windows()) {
        if (belongsToDisconnectedDisplay(window)) held.remove(window);
    }
    if (held != TileAssignments{}) rememberedTiles_[key] = std::move(held);
}

DisplayAbsence::Return DisplayAbsence::returnWindows(const AbsenceKey& key, TileAssignments assignments) {
    const auto entry = rememberedTiles_.extract(key);
    if (entry.empty()) return {std::move(assignments), {}, {}};
    return withRememberedWindows(entry.mapped(), std::move(assignments));
}

bool DisplayAbsence::belongsToDisconnectedDisplay(const WindowID& windowID) const {
    return std::any_of(rememberedTiles_.begin(), rememberedTiles_.end(),
                       [&](const auto& entry) { return entry.second.isInAnyTile(windowID); });
}

void DisplayAbsence::forget(const WindowID& windowID) {
    for (auto& [key, held] : rememberedTiles_) held.remove(windowID);
    dropEmpty();
}

void DisplayAbsence::forgetDisplay(const DisplayID& displayID) {
    std::erase_if(rememberedTiles_, [&](const auto& entry) { return entry.first.displayID == displayID; });
}

void DisplayAbsence::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    std::map<AbsenceKey, TileAssignments> renamed;
    for (auto& [key, held] : rememberedTiles_) {
        held.renameDisplay(displayID, newID);
        const DisplayID& id = key.displayID == displayID ? newID : key.displayID;
        renamed.insert_or_assign(AbsenceKey{id, key.layoutID}, std::move(held));
    }
    rememberedTiles_ = std::move(renamed);
}

void DisplayAbsence::keepOnly(const std::set<WindowID>& windowIDs) {
    for (auto& [key, held] : rememberedTiles_) held.keepOnly(windowIDs);
    dropEmpty();
}

void DisplayAbsence::rename(const WindowID& windowID, const WindowID& newID) {
    for (auto& [key, held] : rememberedTiles_) held.rename(windowID, newID);
}

void DisplayAbsence::replaceRemembered(const TileAssignments& assignments) {
    for (auto& [key, held] : rememberedTiles_) {
        auto stated = assignments.onDisplay(key.displayID);
        if (stated == TileAssignments{}) continue;
        for (auto& [other, others] : rememberedTiles_) {
            if (other == key) continue;
            for (const auto& window : stated.windows()) others.remove(window);
        }
        held = std::move(stated);
    }
    dropEmpty();
}

void DisplayAbsence::dropEmpty() {
    std::erase_if(rememberedTiles_, [](const auto& entry) { return entry.second == TileAssignments{}; });
}

} // namespace kova
