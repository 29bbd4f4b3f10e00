#include "workspace/LayoutMigration.h"

#include "layout/AutoArrangeLearning.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <set>

namespace kova {

namespace {

/// A tile of the old layout with its windows.
struct Occupant {
    SlotID slotID;
    std::optional<WindowID> front;
    std::vector<WindowID> stack;
    CGPoint place{};
    std::vector<SlotID> spanSlotIDs; // the tiles of a window that spans several tiles, anchor first
    std::optional<SlotID> newSlotID;
};

/// In the order of the old layout. Slots that the old layout lacks come last, and their `place` is not set.
std::vector<Occupant> occupants(const TileAssignments& before, const DisplayID& displayID, const DisplayTiles& tiles) {
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

    std::vector<Occupant> out;
    for (const auto& slot : ordered) {
        Occupant occupant{slot, {}, {}, {}, {}, {}};
        const TileTarget tile{displayID, slot};
        const auto front = before.assignedWindowIDs.find(tile);
        if (front != before.assignedWindowIDs.end() && before.isAnchor(tile, front->second)) {
            occupant.front = front->second;
            const auto targets = before.targetsAnchorFirst(front->second);
            for (const auto& target : targets) occupant.spanSlotIDs.push_back(target.slot);
        }
        if (const auto stack = before.stackWindowIDsByTarget.find(tile); stack != before.stackWindowIDsByTarget.end()) {
            occupant.stack = stack->second;
        }
        const auto at = std::find(tiles.slotIDs.begin(), tiles.slotIDs.end(), slot);
        if (at != tiles.slotIDs.end()) {
            occupant.place = center(tiles.frames[static_cast<std::size_t>(at - tiles.slotIDs.begin())]);
        }
        out.push_back(std::move(occupant));
    }
    return out;
}

SlotID nearestSlot(CGPoint place, const DisplayTiles& tiles) {
    double best = std::numeric_limits<double>::infinity();
    std::size_t index = 0;
    for (std::size_t i = 0; i < tiles.frames.size(); ++i) {
        const CGPoint other = center(tiles.frames[i]);
        const double distance = std::hypot(other.x - place.x, other.y - place.y);
        if (distance < best) {
            best = distance;
            index = i;
        }
    }
    return tiles.slotIDs[index];
}

/// Puts each occupant without a slot into the first free new slot that `fits` accepts.
template <class Fits>
void giveSlots(std::vector<Occupant>& all, std::vector<SlotID>& free, Fits fits) {
    for (Occupant& occupant : all) {
        if (occupant.newSlotID || !occupant.front) continue;
        const auto slot = std::find_if(free.begin(), free.end(), [&](const auto& id) { return fits(occupant, id); });
        if (slot == free.end()) continue;
        occupant.newSlotID = *slot;
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

/// Restores each span if all of its tiles are free.
void giveSpans(std::vector<Occupant>& all, std::vector<SlotID>& free) {
    const auto isFree = [&](const SlotID& id) { return std::find(free.begin(), free.end(), id) != free.end(); };
    for (Occupant& occupant : all) {
        const auto& span = occupant.spanSlotIDs;
        if (span.size() < 2 || !std::all_of(span.begin(), span.end(), isFree)) {
            occupant.spanSlotIDs.clear();
            continue;
        }
        occupant.newSlotID = occupant.spanSlotIDs.front();
        for (const auto& slot : occupant.spanSlotIDs) std::erase(free, slot);
    }
}

LayoutMigration migrate(const TileAssignments& before, const DisplayID& displayID, std::vector<Occupant> all,
                        const DisplayTiles& newTiles) {
    LayoutMigration result{before.onOtherDisplays(displayID), {}, {}};
    if (newTiles.slotIDs.empty()) return result;

    std::vector<SlotID> free = newTiles.slotIDs;
    giveSpans(all, free);
    giveSlots(all, free, [](const Occupant& o, const SlotID& id) { return id == o.slotID; });
    giveSlots(all, free,
              [](const Occupant& o, const SlotID& id) { return canonicalSlotID(id) == canonicalSlotID(o.slotID); });
    giveSlots(all, free, [](const Occupant&, const SlotID&) { return true; });

    for (const Occupant& occupant : all) {
        if (!occupant.newSlotID) continue;
        const TileTarget target{displayID, *occupant.newSlotID};
        std::vector<TileTarget> targets{target};
        for (std::size_t i = 1; i < occupant.spanSlotIDs.size(); ++i)
            targets.push_back({displayID, occupant.spanSlotIDs[i]});
        (void)result.assignments.assign(*occupant.front, targets); // the tiles were free: no window is displaced
        if (!occupant.stack.empty()) result.assignments.stackWindowIDsByTarget[target] = occupant.stack;
    }
    for (const Occupant& occupant : all) {
        if (occupant.newSlotID) continue;
        TileTarget target{displayID, nearestSlot(occupant.place, newTiles)};
        if (const auto front = result.assignments.assignedWindowIDs.find(target);
            front != result.assignments.assignedWindowIDs.end()) {
            target = *result.assignments.targetOf(front->second); // the tiles of a span share the stack of its anchor
        }
        std::vector<WindowID> members = occupant.stack;
        if (occupant.front && std::find(members.begin(), members.end(), *occupant.front) == members.end()) {
            members.insert(members.begin(), *occupant.front);
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

/// If the remembered front window is not in front now, but a window of the remembered stack is, that window becomes the
/// front window. A remembered stack without a front window gets its first window as front window.
void putForward(std::vector<Occupant>& all, const TileAssignments& now) {
    for (Occupant& occupant : all) {
        if (occupant.front && now.isAssigned(*occupant.front)) continue;
        const auto forward = std::find_if(occupant.stack.begin(), occupant.stack.end(),
                                          [&](const WindowID& member) { return now.isAssigned(member); });
        if (forward != occupant.stack.end()) {
            occupant.front = *forward;
            std::rotate(occupant.stack.begin(), forward, forward + 1);
        } else if (!occupant.front && !occupant.stack.empty()) {
            occupant.front = occupant.stack.front();
        }
    }
}

} // namespace

LayoutMigration migrateAssignments(const TileAssignments& before, const DisplayID& displayID,
                                   const DisplayTiles& oldTiles, const DisplayTiles& newTiles) {
    std::vector<Occupant> all = occupants(before, displayID, oldTiles);
    for (Occupant& occupant : all) occupant.spanSlotIDs.clear(); // a span belongs to one layout only
    return migrate(before, displayID, std::move(all), newTiles);
}

LayoutMigration migrateRemembered(const TileAssignments& before, const DisplayID& displayID,
                                  const std::vector<RememberedLayout>& remembered, const ShownLayout& next) {
    std::vector<Occupant> all;
    for (const RememberedLayout& layout : remembered) {
        auto some = occupants(layout.assignments, displayID, layout.shown.tiles);
        for (Occupant& occupant : some) {
            if (layout.shown.layoutID != next.layoutID) occupant.spanSlotIDs.clear();
            all.push_back(std::move(occupant));
        }
    }
    putForward(all, before);
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
