// Launches applications by the Exec line of their desktop entry, never through a shell.
#pragma once

#include "platform/linux/ApplicationScopes.h"
#include "platform/linux/ChildProcesses.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/x11/ApplicationLauncher.h"

namespace kova {

class DesktopLauncher final : public ApplicationLauncher {
  public:
    /// `entries`, `loop` and `scopes` must outlive the launcher. Started applications continue to run after its end.
    /// Without `scopes` an application remains in the control group of this process.
    DesktopLauncher(DesktopEntries& entries, EventLoop& loop, ApplicationScopes* scopes = nullptr);

    std::vector<LaunchableApplication> launchableApplications() override;
    std::optional<LaunchableApplication> launchableApplication(const BundleID& bundleIdentifier) override;
    /// Reads the entry again, since it may have been edited after it was listed.
    void launch(const LaunchableApplication& application, LaunchActivation activation,
                LaunchCompletion completion) override;
    bool hasLaunchedProcessSucceeded(pid_t process) const override { return processes_.hasSucceeded(process); }

  private:
    DesktopEntries& entries_;
    EventLoop& loop_;
    ApplicationScopes* scopes_;
    ChildProcesses processes_;
    int backgroundLaunches_ = 0;
    Lifetime lifetime_;
};

} // namespace kova
