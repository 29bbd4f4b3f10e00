// Holds the applications that were launched and have no window yet. They are called expected. An expected application
// may not be listed as running yet, so a scene does not launch it a second time.
#pragma once

#include "support/Identifiers.h"
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
    /// Whether the launched process, given by its id and its start identity, cannot show a window any more.
    using HasFailed = std::function<bool(pid_t, const std::string&)>;

    /// Call when a launch is requested. `now` is an uptime.
    void expect(const BundleID& bundleID, Seconds now);
    /// Call when the launch has worked. Without a start identity, the end of the process cannot be noticed. Then the
    /// application stays expected until its window appears or `kLifetime` is over.
    void noteStarted(const BundleID& bundleID, pid_t process, std::optional<std::string> startIdentity);
    void forget(const BundleID& bundleID) { launches_.erase(bundleID); }
    /// Forgets applications that have a window now.
    void forgetApplicationsWithWindows(const std::vector<ManagedWindow>& windows);
    /// Whether the application may still show a window. False after the lifetime, and once the launched process has
    /// failed.
    bool isExpected(const BundleID& bundleID, Seconds now, const HasFailed& hasFailed) const;
    /// Call after a suspension with its duration: extends the lifetime of every expected application.
    void postpone(Seconds duration);

  private:
    struct Launch {
        Seconds expiresAt{0}; // uptime
        std::optional<pid_t> process{};
        std::string startIdentity{};
    };
    std::map<BundleID, Launch> launches_;
};

} // namespace kova
