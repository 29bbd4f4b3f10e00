#include "windowing/ApplicationBackoff.h"

#include <algorithm>

namespace kova {

namespace {

/// A failure in less time is no timeout: requests to an application that is just starting fail at once.
constexpr Seconds kHanging = ApplicationBackoff::kDeadline * 0.8;

} // namespace

bool ApplicationBackoff::mayAsk(pid_t process, AskingOccasion occasion, Seconds now) const {
    const auto found = silent_.find(process);
    if (found == silent_.end()) return true;
    return occasion == AskingOccasion::poll && now >= found->second.askAgain;
}

void ApplicationBackoff::note(pid_t process, AccessibilityOutcome outcome, Seconds asked, Seconds now) {
    if (outcome != AccessibilityOutcome::silent || now - asked < kHanging) {
        silent_.erase(process);
        return;
    }
    Silence& silence = silent_[process];
    silence.pause = std::clamp(silence.pause * 2, kShortestPause, kLongestPause);
    silence.askAgain = now + silence.pause;
}

std::vector<pid_t> ApplicationBackoff::silent() const {
    std::vector<pid_t> processes;
    for (const auto& entry : silent_) processes.push_back(entry.first);
    return processes;
}

} // namespace kova
