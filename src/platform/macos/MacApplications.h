// The Mac's running and installed applications. NSWorkspace lists the running ones, and updates its list only while the
// main run loop runs. No function waits for an application.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "support/Mutex.h"
#include "windowing/AccessibilityServicing.h"
#include "windowing/ApplicationServicing.h"
#include "windowing/RequestedHiding.h"

#include <map>
#include <set>

namespace kova::macos {

class MacApplications final : public ApplicationServicing {
  public:
    /// The queue must live as long as the process, since the system may report the result of a launch after this object
    /// was destroyed. `accessibility` outlives this.
    MacApplications(MainQueue& queue, AccessibilityServicing& accessibility) :
        queue_(queue), accessibility_(accessibility) {}
    /// Unhides the applications that KOVA has hidden.
    ~MacApplications() override;
    MacApplications(const MacApplications&) = delete;
    MacApplications& operator=(const MacApplications&) = delete;

    pid_t ownProcessIdentifier() const override;
    std::vector<RunningApplication> runningApplications() const override;
    std::optional<RunningApplication> runningApplication(pid_t processIdentifier) const override;
    /// Returns the application whose menu is in the menu bar. KOVA has no such menu. So while KOVA is active, this is
    /// the application that was active before.
    std::optional<pid_t> frontmostApplication() const override;
    /// Returns the wall-clock time at which the process began, as seconds and microseconds.
    std::optional<std::string> processStartIdentity(pid_t processIdentifier) const override;
    ApplicationIcon iconForFile(const std::string& path) const override;
    ApplicationIcon systemSymbolIcon(const std::string& name) const override;
    void hide(pid_t processIdentifier) override;
    void unhide(pid_t processIdentifier) override;
    void activate(pid_t processIdentifier) override;
    void resolveLeftoverHiddenWindows(LeftoverWindows leftoverWindows) override;
    std::vector<LaunchableApplication> launchableApplications() const override;
    std::optional<LaunchableApplication> launchableApplication(const BundleID& bundleIdentifier) const override;
    void launch(const LaunchableApplication& application, LaunchActivation activation,
                LaunchCompletion completion) override;
    bool terminate(pid_t processIdentifier) override;
    std::optional<std::string> forceTerminate(pid_t processIdentifier) override;

  private:
    MainQueue& queue_;
    AccessibilityServicing& accessibility_;
    mutable Mutex mutex_;
    // One icon per application, since the system creates a new image whenever an icon is requested.
    mutable std::map<pid_t, ApplicationIcon> icons_ KOVA_GUARDED_BY(mutex_);
    RequestedHiding requestedHiding_ KOVA_GUARDED_BY(mutex_);
    std::set<pid_t> hiddenByKova_; // main thread
    Lifetime lifetime_;

    bool isHidden(const void* application) const;
    ApplicationIcon iconOf(const void* application) const;
    RunningApplication describe(const void* application) const;
    /// Stores `hiddenByKova_`, so that the next agent can show these applications if this agent is killed.
    void storeHidden() const;
};

} // namespace kova::macos
