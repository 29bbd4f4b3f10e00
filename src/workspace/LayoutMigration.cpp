#include "workspace/LayoutMigration.h"

#include "layout/AutoArrangeLearning.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <set>

namespace kova {

namespace {

/// A tile of the old layout that has windows. For a span this is the anchor.
struct FormerTile {
    SlotID slotID;
    std::optional<WindowID> front;
    std::vector<WindowID> stack;
    CGPoint middle{};                // of the cell; not set if the old layout lacks the slot
    std::vector<SlotID> spanSlotIDs; // the tiles that the front window covers, the anchor first
    std::optional<SlotID> newSlotID; // the slot of the new layout that the front window gets
};

/// The tiles of the display that have windows, in the order of the old layout. Slots that the old layout lacks come
/// last.
std::vector<FormerTile> tilesWithWindows(const TileAssignments& before, const DisplayID& displayID,
                                         const DisplayTiles& tiles) {
    std::set<SlotID> slotIDs;
    const auto collect = [&](const TileTarget& target) {
        if (target.display == displayID) slotIDs.insert(target.slot);
    };
    for (const auto& [target, window] : before.assignedWindowIDs) {
        if (before.isAnchor(target, window)) collect(target);
    }
    for (const auto& [target, stack] : before.stackWindowIDsByTarget) collect(target);

    std::vector<SlotID> ordered;
    for (const auto& slot : tiles.slotIDs) {
        if (slotIDs.erase(slot) > 0) ordered.push_back(slot);
    }
    ordered.insert(ordered.end(), slotIDs.begin(), slotIDs.end());

    std::vector<FormerTile> out;
    for (const auto& slot : ordered) {
        FormerTile tile{slot, {}, {}, {}, {}, {}};
        const TileTarget target{displayID, slot};
        const auto front = before.assignedWindowIDs.find(target);
        if (front != before.assignedWindowIDs.end() && before.isAnchor(target, front->second)) {
            tile.front = front->second;
            for (const auto& covered : before.targetsAnchorFirst(front->second))
                tile.spanSlotIDs.push_back(covered.slot);
        }
        if (const auto stack = before.stackWindowIDsByTarget.find(target);
            stack != before.stackWindowIDsByTarget.end()) {
            tile.stack = stack->second;
        }
        const auto at = std::find(tiles.slotIDs.begin(), tiles.slotIDs.end(), slot);
        if (at != tiles.slotIDs.end()) {
            tile.middle = center(tiles.frames[static_cast<std::size_t>(at - tiles.slotIDs.begin())]);
        }
        out.push_back(std::move(tile));
    }
    return out;
}

SlotID nearestSlot(CGPoint point, const DisplayTiles& tiles) {
    double best = std::numeric_limits<double>::infinity();
    std::size_t index = 0;
    for (std::size_t i = 0; i < tiles.frames.size(); ++i) {
        const CGPoint other = center(tiles.frames[i]);
        const double distance = std::hypot(other.x - point.x, other.y - point.y);
        if (distance < best) {
            best = distance;
            index = i;
        }
    }
    return tiles.slotIDs[index];
}

/// Gives each front window that has no new slot yet the first free slot that `fits` accepts.
template <class Fits>
void assignFreeSlots(std::vector<FormerTile>& all, std::vector<SlotID>& free, Fits fits) {
    for (FormerTile& tile : all) {
        if (tile.newSlotID || !tile.front) continue;
        const auto slot = std::find_if(free.begin(), free.end(), [&](const auto& id) { return fits(tile, id); });
        if (slot == free.end()) continue;
        tile.newSlotID = *slot;
        free.erase(slot);
    }
}

} // namespace

DisplayTiles tilesOf(const SolvedLayout& solved) {
    DisplayTiles tiles;
    for (const auto& slot : solved.slots) tiles.slotIDs.push_back(slot.id);
    tiles.frames = solved.frames;
    return tiles;
}

namespace {

/// Restores each span of which all tiles are free. Other windows lose their spans.
void restoreSpans(std::vector<FormerTile>& all, std::vector<SlotID>& free) {
    const auto isFree = [&](const SlotID& id) { return std::find(free.begin(), free.end(), id) != free.end(); };
    for (FormerTile& tile : all) {
        const auto& span = tile.spanSlotIDs;
        if (span.size() < 2 || !std::all_of(span.begin(), span.end(), isFree)) {
            tile.spanSlotIDs.clear();
            continue;
        }
        tile.newSlotID = tile.spanSlotIDs.front();
        for (const auto& slot : tile.spanSlotIDs) std::erase(free, slot);
    }
}

LayoutMigration migrate(const TileAssignments& before, const DisplayID& displayID, std::vector<FormerTile> all,
                        const DisplayTiles& newTiles) {
    LayoutMigration result{before.onOtherDisplays(displayID), {}, {}};
    if (newTiles.slotIDs.empty()) return result;

    std::vector<SlotID> free = newTiles.slotIDs;
    restoreSpans(all, free);
    assignFreeSlots(all, free, [](const FormerTile& tile, const SlotID& id) { return id == tile.slotID; });
    assignFreeSlots(all, free, [](const FormerTile& tile, const SlotID& id) {
        return canonicalSlotID(id) == canonicalSlotID(tile.slotID);
    });
    assignFreeSlots(all, free, [](const FormerTile&, const SlotID&) { return true; });

    for (const FormerTile& tile : all) {
        if (!tile.newSlotID) continue;
        const TileTarget target{displayID, *tile.newSlotID};
        std::vector<TileTarget> targets{target};
        for (std::size_t i = 1; i < tile.spanSlotIDs.size(); ++i) targets.push_back({displayID, tile.spanSlotIDs[i]});
        (void)result.assignments.assign(*tile.front, targets); // the tiles were free: no window is displaced
        if (!tile.stack.empty()) result.assignments.stackWindowIDsByTarget[target] = tile.stack;
    }
    for (const FormerTile& tile : all) {
        if (tile.newSlotID) continue;
        TileTarget target{displayID, nearestSlot(tile.middle, newTiles)};
        if (const auto front = result.assignments.assignedWindowIDs.find(target);
            front != result.assignments.assignedWindowIDs.end()) {
            target = *result.assignments.targetOf(front->second); // the tiles of a span share the stack of its anchor
        }
        std::vector<WindowID> members = tile.stack;
        if (tile.front && std::find(members.begin(), members.end(), *tile.front) == members.end()) {
            members.insert(members.begin(), *tile.front);
        }
        for (const auto& member : members) {
            result.assignments.insertIntoStack(target, member, TileAssignments::StackPosition::behind);
        }
    }
    for (const auto& [target, window] : before.assignedWindowIDs) {
        if (target.display != displayID) continue;
        const auto& displaced = result.displacedWindowIDs;
        const bool isListed = std::find(displaced.begin(), displaced.end(), window) != displaced.end();
        if (!isListed && !result.assignments.isAssigned(window)) result.displacedWindowIDs.push_back(window);
    }
    for (const auto& [target, window] : result.assignments.assignedWindowIDs) {
        if (target.display != displayID) continue;
        const auto& returned = result.returnedWindowIDs;
        const bool isListed = std::find(returned.begin(), returned.end(), window) != returned.end();
        if (!isListed && !before.isAssigned(window)) result.returnedWindowIDs.push_back(window);
    }
    return result;
}

/// Changes the front windows of remembered tiles, so that a window that is a front window now stays one. If a
/// remembered front window is not in front now, a window of its stack that is in front now replaces it. A remembered
/// stack without a front window gets its first window as front window.
void preferPresentFronts(std::vector<FormerTile>& all, const TileAssignments& now) {
    for (FormerTile& tile : all) {
        if (tile.front && now.isAssigned(*tile.front)) continue;
        const auto present = std::find_if(tile.stack.begin(), tile.stack.end(),
                                          [&](const WindowID& member) { return now.isAssigned(member); });
        if (present != tile.stack.end()) {
            tile.front = *present;
            std::rotate(tile.stack.begin(), present, present + 1);
        } else if (!tile.front && !tile.stack.empty()) {
            tile.front = tile.stack.front();
        }
    }
}

} // namespace

LayoutMigration migrateAssignments(const TileAssignments& before, const DisplayID& displayID,
                                   const DisplayTiles& oldTiles, const DisplayTiles& newTiles) {
    std::vector<FormerTile> all = tilesWithWindows(before, displayID, oldTiles);
    for (FormerTile& tile : all) tile.spanSlotIDs.clear(); // a span belongs to one layout only
    return migrate(before, displayID, std::move(all), newTiles);
}

LayoutMigration migrateRemembered(const TileAssignments& before, const DisplayID& displayID,
                                  const std::vector<RememberedLayout>& remembered, const ShownLayout& next) {
    std::vector<FormerTile> all;
    for (const RememberedLayout& layout : remembered) {
        auto some = tilesWithWindows(layout.assignments, displayID, layout.shown.tiles);
        for (FormerTile& tile : some) {
            if (layout.shown.layoutID != next.layoutID) tile.spanSlotIDs.clear();
            all.push_back(std::move(tile));
        }
    }
    preferPresentFronts(all, before);
    return migrate(before, displayID, std::move(all), next.tiles);
}

void keepInFront(LayoutMigration& migration, const WindowID& windowID) {
    TileAssignments& assignments = migration.assignments;
    auto& displaced = migration.displacedWindowIDs;
    const auto lost = std::find(displaced.begin(), displaced.end(), windowID);
    const auto target = assignments.stackTargetOf(windowID);
    const auto front = target ? assignments.assignedWindowIDs.find(*target) : assignments.assignedWindowIDs.end();
    if (lost == displaced.end() || front == assignments.assignedWindowIDs.end()) return;
    const WindowID former = front->second;
    if (assignments.targetsOf(former).size() > 1) return;
    displaced.erase(lost);
    assignments.insertIntoStack(*target, windowID, TileAssignments::StackPosition::front);
    (void)assignments.assign(windowID, {*target}); // displaces the former front, which stays in the stack
    if (std::erase(migration.returnedWindowIDs, former) == 0) displaced.push_back(former);
}

} // namespace kova
