// Launches applications for the X11 desktop; implemented by the Linux platform. Main thread only.
#pragma once

#include "windowing/ApplicationServicing.h"

#include <optional>
#include <string>
#include <vector>

namespace kova {

class ApplicationLauncher {
  public:
    virtual ~ApplicationLauncher() = default;
    /// Documented at the functions of the same names in `ApplicationServicing`.
    virtual std::vector<LaunchableApplication> launchableApplications() = 0;
    virtual std::optional<LaunchableApplication> launchableApplication(const BundleID& bundleIdentifier) = 0;
    virtual void launch(const LaunchableApplication& application, LaunchActivation activation,
                        LaunchCompletion completion) = 0;
    virtual bool hasLaunchedProcessSucceeded(pid_t process) const = 0;
};

} // namespace kova
