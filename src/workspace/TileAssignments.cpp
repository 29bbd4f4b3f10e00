#include "workspace/TileAssignments.h"

#include "layout/TileSpans.h"

#include <algorithm>

namespace kova {

std::optional<std::string> TileAssignments::targetOf(const WindowID& windowID) const {
    if (const auto anchor = anchorTargetIDsByWindowID.find(windowID); anchor != anchorTargetIDsByWindowID.end()) {
        return anchor->second;
    }
    const auto found = std::find_if(assignedWindowIDs.begin(), assignedWindowIDs.end(),
                                    [&](const auto& entry) { return entry.second == windowID; });
    if (found == assignedWindowIDs.end()) return std::nullopt;
    return found->first;
}

std::optional<std::string> TileAssignments::stackTargetOf(const WindowID& windowID) const {
    for (const auto& [target, stack] : stackWindowIDsByTarget) {
        if (std::find(stack.begin(), stack.end(), windowID) != stack.end()) return target;
    }
    return std::nullopt;
}

std::vector<std::string> TileAssignments::targetsOf(const WindowID& windowID) const {
    std::vector<std::string> targets;
    for (const auto& [target, assigned] : assignedWindowIDs) {
        if (assigned == windowID) targets.push_back(target);
    }
    return targets;
}

bool TileAssignments::isInAnyTile(const WindowID& windowID) const {
    return targetOf(windowID).has_value() || stackTargetOf(windowID).has_value();
}

std::vector<std::string> TileAssignments::targetsAnchorFirst(const WindowID& windowID) const {
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

TileAssignments TileAssignments::onDisplay(const DisplayID& displayID) const {
    const std::string prefix = tileTargetID(displayID, "");
    TileAssignments here = *this;
    std::erase_if(here.assignedWindowIDs, [&](const auto& entry) { return !entry.first.starts_with(prefix); });
    std::erase_if(here.stackWindowIDsByTarget, [&](const auto& entry) { return !entry.first.starts_with(prefix); });
    std::erase_if(here.anchorTargetIDsByWindowID, [&](const auto& entry) { return !entry.second.starts_with(prefix); });
    return here;
}

bool TileAssignments::isSound() const {
    std::map<WindowID, std::size_t> tileCounts;
    for (const auto& [target, window] : assignedWindowIDs) ++tileCounts[window];
    for (const auto& [window, count] : tileCounts) {
        const auto anchor = anchorTargetIDsByWindowID.find(window);
        const bool hasAnchor = anchor != anchorTargetIDsByWindowID.end();
        if (hasAnchor != (count > 1)) return false;
        if (!hasAnchor) continue;
        const auto front = assignedWindowIDs.find(anchor->second);
        if (front == assignedWindowIDs.end() || front->second != window) return false;
    }
    for (const auto& [window, anchor] : anchorTargetIDsByWindowID) {
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
    anchorTargetIDsByWindowID.erase(windowID);
}

void TileAssignments::insertIntoStack(const std::string& targetID, const WindowID& windowID, StackPosition position) {
    removeFromStacks(windowID);
    auto& stack = stackWindowIDsByTarget[targetID];
    const auto front = assignedWindowIDs.find(targetID);
    const bool frontIsUnlisted = front != assignedWindowIDs.end() && front->second != windowID &&
                                 targetOf(front->second) == targetID &&
                                 std::find(stack.begin(), stack.end(), front->second) == stack.end();
    if (frontIsUnlisted) stack.insert(stack.begin(), front->second);
    stack.insert(position == StackPosition::front ? stack.begin() : stack.end(), windowID);
}

std::vector<WindowID> TileAssignments::assign(const WindowID& windowID, const std::vector<std::string>& targets) {
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
    for (const auto& loser : displaced) anchorTargetIDsByWindowID.erase(loser);
    for (const auto& target : targets) assignedWindowIDs[target] = windowID;
    if (targets.size() > 1) {
        anchorTargetIDsByWindowID[windowID] = targets.front();
    } else {
        anchorTargetIDsByWindowID.erase(windowID);
    }
    return displaced;
}

void TileAssignments::mergeStacksInto(const std::string& anchorTargetID, const std::vector<std::string>& targets,
                                      const std::vector<WindowID>& displacedWindowIDs) {
    std::vector<WindowID> waiting;
    for (const auto& target : targets) {
        const auto stack = stackWindowIDsByTarget.find(target);
        if (target == anchorTargetID || stack == stackWindowIDsByTarget.end()) continue;
        waiting.insert(waiting.end(), stack->second.begin(), stack->second.end());
    }
    for (const auto& loser : displacedWindowIDs) {
        // No command could reach a stack without a front window.
        const auto stack = stackTargetOf(loser);
        if (!stack || !assignedWindowIDs.contains(*stack)) waiting.push_back(loser);
    }
    for (const auto& id : waiting) insertIntoStack(anchorTargetID, id, StackPosition::behind);
}

void TileAssignments::adopt(const WindowID& windowID, const TileAssignments& other) {
    const auto targets = other.targetsAnchorFirst(windowID);
    if (targets.empty()) return;
    insertIntoStack(targets.front(), windowID, StackPosition::front);
    (void)assign(windowID, targets); // windows displaced here were not in `other`
}

void TileAssignments::rename(const WindowID& windowID, const WindowID& newID) {
    for (auto& [target, front] : assignedWindowIDs) {
        if (front == windowID) front = newID;
    }
    for (auto& [target, stack] : stackWindowIDsByTarget) std::replace(stack.begin(), stack.end(), windowID, newID);
    if (auto anchor = anchorTargetIDsByWindowID.extract(windowID)) {
        anchor.key() = newID;
        anchorTargetIDsByWindowID.insert(std::move(anchor));
    }
}

void TileAssignments::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    const auto renamed = [&](const std::string& target) { return withDisplayRenamed(target, displayID, newID); };
    std::map<std::string, WindowID> fronts;
    for (auto& [target, window] : assignedWindowIDs) fronts.emplace(renamed(target), std::move(window));
    assignedWindowIDs = std::move(fronts);
    std::map<std::string, std::vector<WindowID>> stacks;
    for (auto& [target, stack] : stackWindowIDsByTarget) stacks.emplace(renamed(target), std::move(stack));
    stackWindowIDsByTarget = std::move(stacks);
    for (auto& [window, anchor] : anchorTargetIDsByWindowID) anchor = renamed(anchor);
}

void TileAssignments::keepOnly(const std::set<WindowID>& liveWindowIDs) {
    std::erase_if(assignedWindowIDs, [&](const auto& entry) { return !liveWindowIDs.contains(entry.second); });
    for (auto entry = stackWindowIDsByTarget.begin(); entry != stackWindowIDsByTarget.end();) {
        std::erase_if(entry->second, [&](const auto& id) { return !liveWindowIDs.contains(id); });
        entry = entry->second.empty() ? stackWindowIDsByTarget.erase(entry) : std::next(entry);
    }
    std::erase_if(anchorTargetIDsByWindowID, [&](const auto& entry) { return !liveWindowIDs.contains(entry.first); });
}

} // namespace kova
