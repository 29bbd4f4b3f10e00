#include "workspace/TileAssignments.h"

#include "layout/TileTarget.h"
#include "workspace/Renaming.h"

#include <algorithm>

namespace kova {

namespace {

/// The assignments of the tiles for which `isChosen` returns true.
template <class IsChosen>
TileAssignments partWhere(const TileAssignments& all, IsChosen isChosen) {
    TileAssignments part;
    const auto copy = [](const auto& from, auto& to, auto isCopied) {
        for (const auto& entry : from) {
            if (isCopied(entry)) to.emplace_hint(to.end(), entry);
        }
    };
    const auto isKeyChosen = [&](const auto& entry) { return isChosen(entry.first); };
    copy(all.assignedWindowIDs, part.assignedWindowIDs, isKeyChosen);
    copy(all.stackWindowIDsByTarget, part.stackWindowIDsByTarget, isKeyChosen);
    copy(all.anchorsByWindowID, part.anchorsByWindowID, [&](const auto& entry) { return isChosen(entry.second); });
    return part;
}

} // namespace

std::optional<TileTarget> TileAssignments::targetOf(const WindowID& windowID) const {
    if (const auto anchor = anchorsByWindowID.find(windowID); anchor != anchorsByWindowID.end()) {
        return anchor->second;
    }
    const auto found = std::find_if(assignedWindowIDs.begin(), assignedWindowIDs.end(),
                                    [&](const auto& entry) { return entry.second == windowID; });
    if (found == assignedWindowIDs.end()) return std::nullopt;
    return found->first;
}

std::optional<TileTarget> TileAssignments::stackTargetOf(const WindowID& windowID) const {
    for (const auto& [target, stack] : stackWindowIDsByTarget) {
        if (std::find(stack.begin(), stack.end(), windowID) != stack.end()) return target;
    }
    return std::nullopt;
}

std::vector<TileTarget> TileAssignments::targetsOf(const WindowID& windowID) const {
    std::vector<TileTarget> targets;
    for (const auto& [target, assigned] : assignedWindowIDs) {
        if (assigned == windowID) targets.push_back(target);
    }
    return targets;
}

bool TileAssignments::isInAnyTile(const WindowID& windowID) const {
    return targetOf(windowID).has_value() || stackTargetOf(windowID).has_value();
}

bool TileAssignments::isAnchor(const TileTarget& target, const WindowID& windowID) const {
    const auto anchor = anchorsByWindowID.find(windowID);
    return anchor == anchorsByWindowID.end() || anchor->second == target;
}

std::vector<TileTarget> TileAssignments::targetsAnchorFirst(const WindowID& windowID) const {
    auto targets = targetsOf(windowID);
    if (const auto anchor = targetOf(windowID)) {
        const auto at = std::find(targets.begin(), targets.end(), *anchor);
        if (at != targets.end()) std::rotate(targets.begin(), at, at + 1);
    }
    return targets;
}

std::set<WindowID> TileAssignments::windows() const {
    std::set<WindowID> all;
    for (const auto& [target, window] : assignedWindowIDs) all.insert(window);
    for (const auto& [target, stack] : stackWindowIDsByTarget) all.insert(stack.begin(), stack.end());
    return all;
}

std::set<WindowID> TileAssignments::windowsOn(const DisplayID& displayID) const {
    std::set<WindowID> found;
    for (const auto& [target, window] : assignedWindowIDs) {
        if (target.display == displayID) found.insert(window);
    }
    for (const auto& [target, stack] : stackWindowIDsByTarget) {
        if (target.display == displayID) found.insert(stack.begin(), stack.end());
    }
    return found;
}

TileAssignments TileAssignments::onDisplay(const DisplayID& displayID) const {
    return partWhere(*this, [&](const TileTarget& target) { return target.display == displayID; });
}

TileAssignments TileAssignments::onOtherDisplays(const DisplayID& displayID) const {
    return partWhere(*this, [&](const TileTarget& target) { return target.display != displayID; });
}

bool TileAssignments::isSound() const {
    std::map<WindowID, std::size_t> tileCounts;
    for (const auto& [target, window] : assignedWindowIDs) ++tileCounts[window];
    for (const auto& [window, count] : tileCounts) {
        const auto anchor = anchorsByWindowID.find(window);
        const bool hasAnchor = anchor != anchorsByWindowID.end();
        if (hasAnchor != (count > 1)) return false;
        if (!hasAnchor) continue;
        const auto front = assignedWindowIDs.find(anchor->second);
        if (front == assignedWindowIDs.end() || front->second != window) return false;
    }
    for (const auto& [window, anchor] : anchorsByWindowID) {
        if (!tileCounts.contains(window)) return false;
    }
    std::set<WindowID> stacked;
    for (const auto& [target, stack] : stackWindowIDsByTarget) {
        if (stack.empty()) return false;
        for (const auto& window : stack) {
            if (!stacked.insert(window).second) return false;
        }
        const auto front = assignedWindowIDs.find(target);
        if (front != assignedWindowIDs.end() && stack.front() != front->second) return false;
    }
    return true;
}

void TileAssignments::putFrontsFirst() {
    for (auto& [target, stack] : stackWindowIDsByTarget) {
        const auto front = assignedWindowIDs.find(target);
        if (front == assignedWindowIDs.end() || targetOf(front->second) != target) continue;
        std::erase(stack, front->second);
        stack.insert(stack.begin(), front->second);
    }
}

void TileAssignments::removeFromStacks(const WindowID& windowID) {
    for (auto entry = stackWindowIDsByTarget.begin(); entry != stackWindowIDsByTarget.end();) {
        std::erase(entry->second, windowID);
        entry = entry->second.empty() ? stackWindowIDsByTarget.erase(entry) : std::next(entry);
    }
}

void TileAssignments::remove(const WindowID& windowID) {
    removeFromStacks(windowID);
    std::erase_if(assignedWindowIDs, [&](const auto& entry) { return entry.second == windowID; });
    anchorsByWindowID.erase(windowID);
}

void TileAssignments::insertIntoStack(const TileTarget& target, const WindowID& windowID, StackPosition position) {
    removeFromStacks(windowID);
    auto& stack = stackWindowIDsByTarget[target];
    const auto front = assignedWindowIDs.find(target);
    const bool frontIsUnlisted = front != assignedWindowIDs.end() && front->second != windowID &&
                                 targetOf(front->second) == target &&
                                 std::find(stack.begin(), stack.end(), front->second) == stack.end();
    if (frontIsUnlisted) stack.insert(stack.begin(), front->second);
    stack.insert(position == StackPosition::front ? stack.begin() : stack.end(), windowID);
}

std::vector<WindowID> TileAssignments::assign(const WindowID& windowID, const std::vector<TileTarget>& targets) {
    if (targets.empty()) return {};
    std::vector<WindowID> displaced;
    for (const auto& target : targets) {
        const auto front = assignedWindowIDs.find(target);
        if (front == assignedWindowIDs.end() || front->second == windowID) continue;
        if (std::find(displaced.begin(), displaced.end(), front->second) == displaced.end()) {
            displaced.push_back(front->second);
        }
    }
    std::erase_if(assignedWindowIDs, [&](const auto& entry) {
        return entry.second == windowID ||
               std::find(displaced.begin(), displaced.end(), entry.second) != displaced.end();
    });
    for (const auto& displacedID : displaced) anchorsByWindowID.erase(displacedID);
    for (const auto& target : targets) assignedWindowIDs[target] = windowID;
    if (targets.size() > 1) {
        anchorsByWindowID[windowID] = targets.front();
    } else {
        anchorsByWindowID.erase(windowID);
    }
    return displaced;
}

void TileAssignments::mergeStacksInto(const TileTarget& anchor, const std::vector<TileTarget>& targets,
                                      const std::vector<WindowID>& displacedWindowIDs) {
    std::vector<WindowID> waiting;
    for (const auto& target : targets) {
        const auto stack = stackWindowIDsByTarget.find(target);
        if (target == anchor || stack == stackWindowIDsByTarget.end()) continue;
        waiting.insert(waiting.end(), stack->second.begin(), stack->second.end());
    }
    for (const auto& displacedID : displacedWindowIDs) {
        // A window in a stack without a front window could not be reached by any command.
        const auto stack = stackTargetOf(displacedID);
        if (!stack || !assignedWindowIDs.contains(*stack)) waiting.push_back(displacedID);
    }
    for (const auto& id : waiting) insertIntoStack(anchor, id, StackPosition::behind);
}

void TileAssignments::adopt(const WindowID& windowID, const TileAssignments& other) {
    const auto targets = other.targetsAnchorFirst(windowID);
    if (targets.empty()) return;
    insertIntoStack(targets.front(), windowID, StackPosition::front);
    (void)assign(windowID, targets); // the displaced windows do not have these tiles in `other`
}

void TileAssignments::rename(const WindowID& windowID, const WindowID& newID) {
    for (auto& [target, front] : assignedWindowIDs) {
        if (front == windowID) front = newID;
    }
    for (auto& [target, stack] : stackWindowIDsByTarget) std::replace(stack.begin(), stack.end(), windowID, newID);
    renameKey(anchorsByWindowID, windowID, newID);
}

void TileAssignments::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    const auto renamed = [&](const TileTarget& target) { return withDisplayRenamed(target, displayID, newID); };
    std::map<TileTarget, WindowID> fronts;
    for (auto& [target, window] : assignedWindowIDs) fronts.emplace(renamed(target), std::move(window));
    assignedWindowIDs = std::move(fronts);
    std::map<TileTarget, std::vector<WindowID>> stacks;
    for (auto& [target, stack] : stackWindowIDsByTarget) stacks.emplace(renamed(target), std::move(stack));
    stackWindowIDsByTarget = std::move(stacks);
    for (auto& [window, anchor] : anchorsByWindowID) anchor = renamed(anchor);
}

void TileAssignments::keepOnly(const std::set<WindowID>& liveWindowIDs) {
    std::erase_if(assignedWindowIDs, [&](const auto& entry) { return !liveWindowIDs.contains(entry.second); });
    for (auto entry = stackWindowIDsByTarget.begin(); entry != stackWindowIDsByTarget.end();) {
        std::erase_if(entry->second, [&](const auto& id) { return !liveWindowIDs.contains(id); });
        entry = entry->second.empty() ? stackWindowIDsByTarget.erase(entry) : std::next(entry);
    }
    std::erase_if(anchorsByWindowID, [&](const auto& entry) { return !liveWindowIDs.contains(entry.first); });
}

} // namespace kova
