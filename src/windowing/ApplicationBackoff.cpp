#include "windowing/ApplicationBackoff.h"

#include <algorithm>

namespace kova {

namespace {

/// A request that fails in less time has not timed out: requests to an application that is just starting fail at once.
constexpr Seconds kShortestTimeout = ApplicationBackoff::kDeadline * 0.8;

} // namespace

bool ApplicationBackoff::maySendRequest(pid_t process, RequestOccasion occasion, Seconds now) const {
    const auto found = unresponsive_.find(process);
    if (found == unresponsive_.end()) return true;
    return occasion == RequestOccasion::poll && now >= found->second.nextRequest;
}

void ApplicationBackoff::note(pid_t process, AccessibilityOutcome outcome, Seconds begun, Seconds now) {
    if (outcome != AccessibilityOutcome::noResponse || now - begun < kShortestTimeout) {
        unresponsive_.erase(process);
        return;
    }
    Backoff& backoff = unresponsive_[process];
    backoff.pause = std::clamp(backoff.pause * 2, kShortestPause, kLongestPause);
    backoff.nextRequest = now + backoff.pause;
}

std::vector<pid_t> ApplicationBackoff::unresponsive() const {
    std::vector<pid_t> processes;
    for (const auto& entry : unresponsive_) processes.push_back(entry.first);
    return processes;
}

} // namespace kova
