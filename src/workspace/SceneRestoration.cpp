#include "workspace/SceneRestoration.h"

#include "support/Limits.h"

#include <algorithm>
#include <limits>
#include <tuple>
#include <utility>

namespace kova {

namespace {

/// Whether the slots form a rectangle that no other slot overlaps.
bool isCleanSpan(const std::vector<TileSlot>& slots, const std::vector<SlotID>& claimed) {
    const auto isClaimed = [&](const TileSlot& slot) {
        return std::find(claimed.begin(), claimed.end(), slot.id) != claimed.end();
    };
    std::optional<CGRect> covered;
    for (const auto& slot : slots) {
        if (isClaimed(slot)) covered = covered ? unionOf(*covered, slot.normalizedFrame) : slot.normalizedFrame;
    }
    constexpr double kTouching = 1e-6;
    return covered && std::none_of(slots.begin(), slots.end(), [&](const TileSlot& slot) {
               return !isClaimed(slot) && intersectionArea(*covered, slot.normalizedFrame) > kTouching;
           });
}

} // namespace

std::vector<WorkspaceScenePlacement> inRestoringOrder(std::vector<WorkspaceScenePlacement> placements) {
    std::stable_sort(placements.begin(), placements.end(), [](const auto& a, const auto& b) {
        return std::tie(a.displayOrdinal, a.slotID, a.stackIndex) < std::tie(b.displayOrdinal, b.slotID, b.stackIndex);
    });
    return placements;
}

double clampedTileInset(double points) {
    return std::clamp(points, 0.0, kLargestTileInset);
}

std::vector<SlotID> slotsTaken(const std::vector<TileSlot>& slots, const SlotID& slotID,
                               const std::optional<std::vector<SlotID>>& claimedSlotIDs) {
    if (std::ranges::find(slots, slotID, &TileSlot::id) == slots.end()) return {};
    std::vector<SlotID> taken{slotID};
    if (!claimedSlotIDs) return taken;
    std::vector<SlotID> claimed = *claimedSlotIDs;
    claimed.push_back(slotID);
    if (!isCleanSpan(slots, claimed)) return taken;
    for (const auto& slot : slots) {
        if (slot.id != slotID && std::ranges::find(claimed, slot.id) != claimed.end()) taken.push_back(slot.id);
    }
    return taken;
}

std::string_view describe(SceneReport::State state) {
    switch (state) {
    case SceneReport::State::waiting:
        return "waiting";
    case SceneReport::State::finished:
        return "finished";
    case SceneReport::State::abandoned:
        return "abandoned";
    }
    return "";
}

bool frontsItsTile(std::int64_t stackIndex, std::optional<bool> isActive) {
    return isActive.value_or(stackIndex == 0);
}

TileAssignments withRestored(TileAssignments before, const std::vector<RestoredPlacement>& placements,
                             const std::map<WindowID, std::int64_t>& stackIndexByID) {
    TileAssignments after = std::move(before);
    std::set<TileTarget> changedStacks;
    for (const auto& placement : placements) {
        TileTarget target = placement.targets.front();
        const auto holder = after.assignedWindowIDs.find(target);
        const bool isFree = holder == after.assignedWindowIDs.end();
        // A window behind a spanning window belongs to the stack of the span's anchor.
        if (!isFree && !placement.isFront) target = *after.targetOf(holder->second);
        auto& stack = after.stackWindowIDsByTarget[target];
        if (stack.empty() && !isFree && after.targetOf(holder->second) == target) stack.push_back(holder->second);
        changedStacks.insert(target);
        if (placement.isFront || isFree) {
            stack.insert(stack.begin(), placement.windowID);
            const auto targets = placement.isFront ? placement.targets : std::vector<TileTarget>{target};
            const auto displaced = after.assign(placement.windowID, targets);
            after.mergeStacksInto(target, targets, displaced);
        } else {
            stack.push_back(placement.windowID);
        }
    }
    const auto indexOf = [&](const WindowID& windowID) {
        const auto index = stackIndexByID.find(windowID);
        return index == stackIndexByID.end() ? std::numeric_limits<std::int64_t>::max() : index->second;
    };
    for (const auto& target : changedStacks) {
        const auto stack = after.stackWindowIDsByTarget.find(target);
        if (stack == after.stackWindowIDsByTarget.end()) continue; // a span took the stack over
        const auto behindFront = stack->second.begin() + (after.assignedWindowIDs.contains(target) ? 1 : 0);
        std::vector<std::pair<std::int64_t, WindowID>> waiting;
        for (auto id = behindFront; id != stack->second.end(); ++id) waiting.emplace_back(indexOf(*id), std::move(*id));
        std::stable_sort(waiting.begin(), waiting.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        std::transform(waiting.begin(), waiting.end(), behindFront,
                       [](auto& entry) { return std::move(entry.second); });
    }
    return after;
}

} // namespace kova
