#include "windowing/ApplicationBackoff.h"

#include <algorithm>

namespace kova {

namespace {

/// A request that fails in less time has not timed out: requests to an application that is just starting fail at once.
constexpr Seconds kShortestTimeout = ApplicationBackoff::kDeadline * 0.8;

} // namespace

bool ApplicationBackoff::maySendRequest(pid_t process, RequestOccasion occasion, Seconds now) const {
    const auto found = silent_.find(process);
    if (found == silent_.end()) return true;
    return occasion == RequestOccasion::poll && now >= found->second.nextRequest;
}

void ApplicationBackoff::note(pid_t process, AccessibilityOutcome outcome, Seconds begun, Seconds now) {
    if (outcome != AccessibilityOutcome::silent || now - begun < kShortestTimeout) {
        silent_.erase(process);
        return;
    }
    Silence& silence = silent_[process];
    silence.pause = std::clamp(silence.pause * 2, kShortestPause, kLongestPause);
    silence.nextRequest = now + silence.pause;
}

std::vector<pid_t> ApplicationBackoff::silent() const {
    std::vector<pid_t> processes;
    for (const auto& entry : silent_) processes.push_back(entry.first);
    return processes;
}

} // namespace kova
