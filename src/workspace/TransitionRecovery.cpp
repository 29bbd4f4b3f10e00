#include "workspace/TransitionRecovery.h"

#include <algorithm>

namespace kova {

void TransitionRecovery::remember(const std::vector<ManagedWindow>& liveWindows, const TileAssignments& assignments) {
    identities_.clear();
    for (const auto& window : liveWindows) {
        if (!assignments.targetOf(window.id)) continue;
        identities_.push_back(
            {window.id, window.processIdentifier, window.bundleIdentifier, window.title, window.frame});
    }
    deadline_.reset();
    recoveredWindowIDs_.clear();
}

void TransitionRecovery::begin(Seconds uptime) {
    deadline_ = uptime + kDuration;
    recoveredWindowIDs_.clear();
}

void TransitionRecovery::clear() {
    deadline_.reset();
    recoveredWindowIDs_.clear();
    identities_.clear();
}

std::vector<std::string> TransitionRecovery::takeRecovered(const std::vector<ManagedWindow>& liveWindows,
                                                           const TileAssignments& assignments) {
    std::vector<std::string> recovered;
    for (const auto& window : liveWindows) {
        if (!assignments.targetOf(window.id)) continue;
        if (recoveredWindowIDs_.insert(window.id).second) recovered.push_back(window.id);
    }
    return recovered;
}

bool TransitionRecovery::isComplete(const TileAssignments& assignments) const {
    return std::all_of(assignments.assignedWindowIDs.begin(), assignments.assignedWindowIDs.end(),
                       [&](const auto& entry) { return recoveredWindowIDs_.contains(entry.second); });
}

std::set<std::string> TransitionRecovery::awaitedWindowIDs() const {
    std::set<std::string> awaited;
    for (const auto& identity : identities_) {
        if (!recoveredWindowIDs_.contains(identity.id)) awaited.insert(identity.id);
    }
    return awaited;
}

} // namespace kova
