// Applications that were launched and have shown no window yet. Until its first window an application may count as not
// running; while it is expected here, no scene launches it a second time.
#pragma once

#include "support/MainQueue.h"
#include "windowing/ManagedWindow.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kova {

class ExpectedApplications {
  public:
    static constexpr Seconds kLifetime{25};
    /// Whether no window can come of the launched process any more, given its number and its start identity.
    using HasFailed = std::function<bool(pid_t, const std::string&)>;

    /// A launch was requested at the uptime `now`.
    void expect(const std::string& bundleID, Seconds now);
    /// The launch worked. Without an identity nothing is known of the process, and only time ends the expectation.
    void noteStarted(const std::string& bundleID, pid_t process, std::optional<std::string> startIdentity);
    void forget(const std::string& bundleID) { launches_.erase(bundleID); }
    /// Applications that have a window now are expected no longer.
    void forgetThoseWithWindows(const std::vector<ManagedWindow>& windows);
    /// Whether a window may still come by itself: not after the lifetime, nor once the launched process has failed.
    bool isExpected(const std::string& bundleID, Seconds now, const HasFailed& hasFailed) const;
    /// Lets every expectation last longer, by the time in which the screen could not be seen.
    void postpone(Seconds duration);

  private:
    struct Launch {
        Seconds expiresAt{0}; // uptime
        std::optional<pid_t> process{};
        std::string startIdentity{};
    };
    std::map<std::string, Launch> launches_; // by bundle identifier
};

} // namespace kova
