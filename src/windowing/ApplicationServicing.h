// The seam to running applications.
#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kova {

enum class ApplicationActivationPolicy { regular = 0, accessory = 1, prohibited = 2 };

/// An image that stands for an application: a name that the desktop's icon theme knows, a file, or the platform's own
/// object. Empty when all are.
struct ApplicationIcon {
    std::string name;
    std::shared_ptr<const void> image;
    bool isEmpty() const { return name.empty() && !image; }
    bool operator==(const ApplicationIcon&) const = default;
};

struct RunningApplication {
    pid_t processIdentifier = 0;
    std::optional<std::string> localizedName;
    std::optional<std::string> bundleIdentifier;
    std::string bundlePath; // empty when unknown
    ApplicationIcon icon;
    ApplicationActivationPolicy activationPolicy = ApplicationActivationPolicy::regular;
    bool isHidden = false;
    bool isTerminated = false;
    bool operator==(const RunningApplication&) const = default;
};

class ApplicationServicing {
  public:
    virtual ~ApplicationServicing() = default;

    virtual pid_t ownProcessIdentifier() const = 0;
    /// In the desktop's own, stable order. The first question of every poll: there a desktop may bring what it knows up to
    /// date. Any thread; may wait on the polling queue only.
    virtual std::vector<RunningApplication> runningApplications() const = 0;
    /// Absent when there is no such process among the applications. Any thread; never waits.
    virtual std::optional<RunningApplication> runningApplication(pid_t processIdentifier) const = 0;
    /// The application that has the keyboard. Main thread; never waits.
    virtual std::optional<pid_t> frontmostApplication() const = 0;

    /// The icon of a file; empty when there is none. Any thread.
    virtual ApplicationIcon iconForFile(const std::string& path) const = 0;
    /// The desktop's own symbol of that name; empty when there is none. Any thread.
    virtual ApplicationIcon systemSymbolIcon(const std::string& name) const = 0;

    /// Wishes; an application that is gone is ignored. Hiding remembers which windows it took away, unhiding brings
    /// back exactly those. Main thread.
    virtual void hide(pid_t processIdentifier) = 0;
    virtual void unhide(pid_t processIdentifier) = 0;
    virtual void activate(pid_t processIdentifier) = 0;
};

} // namespace kova
