#include "workspace/TransitionRecovery.h"

#include "workspace/Renaming.h"

#include <algorithm>

namespace kova {

void TransitionRecovery::remember(const std::vector<ManagedWindow>& liveWindows, const TileAssignments& assignments) {
    const auto awaited = awaitedWindowIDs();
    std::vector<ManagedWindowRecoveryIdentity> stillAwaited;
    for (const auto& identity : identities_) {
        if (awaited.contains(identity.id) && assignments.isInAnyTile(identity.id)) {
            stillAwaited.push_back(identity);
        }
    }
    clear();
    for (const auto& window : liveWindows) {
        knownWindowIDs_.insert(window.id);
        if (assignments.isAssigned(window.id)) identities_.push_back(recoveryIdentity(window));
    }
    for (const auto& window : liveWindows) {
        const bool isStacked = !assignments.isAssigned(window.id) && assignments.isInAnyTile(window.id);
        if (isStacked) identities_.push_back(recoveryIdentity(window));
    }
    std::erase_if(stillAwaited, [this](const auto& identity) { return knownWindowIDs_.contains(identity.id); });
    identities_.insert(identities_.end(), stillAwaited.begin(), stillAwaited.end());
}

void TransitionRecovery::begin(Seconds uptime) {
    deadline_ = uptime + kDuration;
    recoveredWindowIDs_.clear();
    returnedWindowIDs_.clear();
}

void TransitionRecovery::clear() {
    deadline_.reset();
    recoveredWindowIDs_.clear();
    identities_.clear();
    returnedWindowIDs_.clear();
    knownWindowIDs_.clear();
}

std::vector<WindowSuccessor> TransitionRecovery::takeSuccessors(const std::vector<ManagedWindow>& liveWindows,
                                                                const TileAssignments& assignments) {
    noteReturned(liveWindows);
    const auto awaited = awaitedWindowIDs();
    if (awaited.empty()) return {};
    std::vector<ManagedWindowRecoveryIdentity> missing;
    for (const auto& identity : identities_) {
        if (awaited.contains(identity.id)) missing.push_back(identity);
    }
    std::vector<const ManagedWindow*> newWindows;
    for (const auto& window : liveWindows) {
        const bool isNew = !knownWindowIDs_.contains(window.id) && !assignments.isInAnyTile(window.id);
        if (isNew) newWindows.push_back(&window);
    }
    const auto successors = recognizeWindows(missing, newWindows);
    for (const auto& successor : successors) rename(successor.formerID, successor.id);
    noteReturned(liveWindows);
    return successors;
}

/// A window that was listed once is no longer awaited, whether it is a front window or a stacked window.
void TransitionRecovery::noteReturned(const std::vector<ManagedWindow>& liveWindows) {
    for (const auto& window : liveWindows) returnedWindowIDs_.insert(window.id);
}

std::vector<WindowID> TransitionRecovery::takeRecovered(const std::vector<ManagedWindow>& liveWindows,
                                                        const TileAssignments& assignments) {
    std::vector<WindowID> recovered;
    for (const auto& window : liveWindows) {
        if (!assignments.isAssigned(window.id)) continue;
        if (recoveredWindowIDs_.insert(window.id).second) recovered.push_back(window.id);
    }
    return recovered;
}

bool TransitionRecovery::isComplete(const TileAssignments& assignments) const {
    const auto awaited = awaitedWindowIDs();
    return std::ranges::all_of(assignments.assignedWindowIDs,
                               [&](const auto& entry) { return recoveredWindowIDs_.contains(entry.second); }) &&
           std::ranges::none_of(awaited, [&](const auto& id) { return assignments.isInAnyTile(id); });
}

std::set<WindowID> TransitionRecovery::awaitedWindowIDs() const {
    std::set<WindowID> awaited;
    for (const auto& identity : identities_) {
        if (!returnedWindowIDs_.contains(identity.id)) awaited.insert(identity.id);
    }
    return awaited;
}

void TransitionRecovery::rename(const WindowID& windowID, const WindowID& newID) {
    for (auto& identity : identities_) {
        if (identity.id == windowID) identity.id = newID;
    }
    renameIn(recoveredWindowIDs_, windowID, newID);
    renameIn(returnedWindowIDs_, windowID, newID);
    knownWindowIDs_.insert(newID);
}

} // namespace kova
