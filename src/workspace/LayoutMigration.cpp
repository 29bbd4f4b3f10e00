#include "workspace/LayoutMigration.h"

#include "layout/AutoArrangeLearning.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <set>

namespace kova {

namespace {

/// A tile of the old layout that holds something.
struct Occupant {
    std::string slotID;
    std::optional<std::string> front;
    std::vector<std::string> stack;
    CGPoint place{};
    std::optional<std::string> newSlotID;
};

/// The front's old cell if the old layout is known; in the order of the old layout, unknown slots last.
std::vector<Occupant> occupants(const TileAssignments& before, const std::string& prefix, const DisplayTiles& tiles) {
    std::set<std::string> slotIDs;
    const auto collect = [&](const std::string& target) {
        if (target.starts_with(prefix)) slotIDs.insert(target.substr(prefix.size()));
    };
    for (const auto& [target, window] : before.assignedWindowIDs) {
        if (before.targetOf(window) == target) collect(target);
    }
    for (const auto& [target, stack] : before.stackWindowIDsByTarget) collect(target);

    std::vector<std::string> ordered;
    for (const auto& slot : tiles.slotIDs) {
        if (slotIDs.erase(slot) > 0) ordered.push_back(slot);
    }
    ordered.insert(ordered.end(), slotIDs.begin(), slotIDs.end());

    std::vector<Occupant> out;
    for (const auto& slot : ordered) {
        Occupant occupant{slot, {}, {}, {}, {}};
        const auto front = before.assignedWindowIDs.find(prefix + slot);
        if (front != before.assignedWindowIDs.end() && before.targetOf(front->second) == prefix + slot) {
            occupant.front = front->second;
        }
        if (const auto stack = before.stackWindowIDsByTarget.find(prefix + slot);
            stack != before.stackWindowIDsByTarget.end()) {
            occupant.stack = stack->second;
        }
        const auto at = std::find(tiles.slotIDs.begin(), tiles.slotIDs.end(), slot);
        if (at != tiles.slotIDs.end()) {
            occupant.place = centre(tiles.frames[static_cast<std::size_t>(at - tiles.slotIDs.begin())]);
        }
        out.push_back(std::move(occupant));
    }
    return out;
}

std::string nearestSlot(CGPoint place, const DisplayTiles& tiles) {
    double best = std::numeric_limits<double>::infinity();
    std::size_t index = 0;
    for (std::size_t i = 0; i < tiles.frames.size(); ++i) {
        const CGPoint other = centre(tiles.frames[i]);
        const double distance = std::hypot(other.x - place.x, other.y - place.y);
        if (distance < best) {
            best = distance;
            index = i;
        }
    }
    return tiles.slotIDs[index];
}

/// Gives each occupant that is still without a slot the first free new one that `fits` accepts.
template <class Fits>
void giveSlots(std::vector<Occupant>& all, std::vector<std::string>& free, Fits fits) {
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

LayoutMigration migrateAssignments(const TileAssignments& before, const std::string& displayID,
                                   const DisplayTiles& oldTiles, const DisplayTiles& newTiles) {
    const std::string prefix = tileTargetID(displayID, "");
    std::vector<Occupant> all = occupants(before, prefix, oldTiles);

    LayoutMigration result{before, {}};
    const auto isHere = [&](const auto& entry) { return entry.first.starts_with(prefix); };
    std::erase_if(result.assignments.assignedWindowIDs, isHere);
    std::erase_if(result.assignments.stackWindowIDsByTarget, isHere);
    std::erase_if(result.assignments.anchorTargetIDsByWindowID,
                  [&](const auto& entry) { return entry.second.starts_with(prefix); });
    if (newTiles.slotIDs.empty()) return result;

    std::vector<std::string> free = newTiles.slotIDs;
    giveSlots(all, free, [](const Occupant& o, const std::string& id) { return id == o.slotID; });
    giveSlots(all, free, [](const Occupant& o, const std::string& id) {
        return canonicalSlotID(id) == canonicalSlotID(o.slotID);
    });
    giveSlots(all, free, [](const Occupant&, const std::string&) { return true; });

    for (const Occupant& occupant : all) {
        if (!occupant.newSlotID) continue;
        const std::string target = prefix + *occupant.newSlotID;
        (void)result.assignments.assign(*occupant.front, {target}); // the slot was free: nobody is displaced
        if (!occupant.stack.empty()) result.assignments.stackWindowIDsByTarget[target] = occupant.stack;
    }
    for (const Occupant& occupant : all) {
        if (occupant.newSlotID) continue;
        const std::string target = prefix + nearestSlot(occupant.place, newTiles);
        std::vector<std::string> members = occupant.stack;
        if (occupant.front && std::find(members.begin(), members.end(), *occupant.front) == members.end()) {
            members.insert(members.begin(), *occupant.front);
        }
        for (const auto& member : members) {
            result.assignments.insertIntoStack(target, member, TileAssignments::StackPosition::behind);
        }
        if (occupant.front) result.displacedWindowIDs.push_back(*occupant.front);
    }
    return result;
}

} // namespace kova
