#include "workspace/ExpectedApplications.h"

#include <utility>

namespace kova {

void ExpectedApplications::expect(const BundleID& bundleID, Seconds now) {
    launches_[bundleID] = {.expiresAt = now + kLifetime};
}

void ExpectedApplications::noteStarted(const BundleID& bundleID, pid_t process,
                                       std::optional<std::string> startIdentity) {
    const auto launch = launches_.find(bundleID);
    if (launch == launches_.end() || !startIdentity) return;
    launch->second.process = process;
    launch->second.startIdentity = *std::move(startIdentity);
}

void ExpectedApplications::forgetApplicationsWithWindows(const std::vector<ManagedWindow>& windows) {
    if (launches_.empty()) return;
    for (const auto& window : windows) {
        if (window.bundleIdentifier) launches_.erase(*window.bundleIdentifier);
    }
}

bool ExpectedApplications::isExpected(const BundleID& bundleID, Seconds now, const HasFailed& hasFailed) const {
    const auto launch = launches_.find(bundleID);
    if (launch == launches_.end() || launch->second.expiresAt <= now) return false;
    return !launch->second.process || !hasFailed(*launch->second.process, launch->second.startIdentity);
}

void ExpectedApplications::postpone(Seconds duration) {
    for (auto& [bundleID, launch] : launches_) launch.expiresAt += duration;
}

} // namespace kova
