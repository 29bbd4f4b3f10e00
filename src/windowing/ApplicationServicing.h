// Platform interface to applications.
#pragma once

#include "support/Identifiers.h"

#include <sys/types.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kova {

enum class ApplicationActivationPolicy { regular = 0, accessory = 1, prohibited = 2 };

/// An application's icon. `name` is a name in the desktop's icon theme or the path of a file; `image` is an object of
/// the platform. If both are empty, there is no icon.
struct ApplicationIcon {
    std::string name;
    std::shared_ptr<const void> image;
    bool isEmpty() const { return name.empty() && !image; }
    bool operator==(const ApplicationIcon&) const = default;
};

struct RunningApplication {
    pid_t processIdentifier = 0;
    std::optional<std::string> localizedName;
    std::optional<BundleID> bundleIdentifier;
    std::string bundlePath; // empty when unknown
    ApplicationIcon icon;
    ApplicationActivationPolicy activationPolicy = ApplicationActivationPolicy::regular;
    bool isHidden = false;
    bool isTerminated = false;
    bool isPartOfDesktop = false; // file manager, panel, window manager or session
    bool operator==(const RunningApplication&) const = default;
};

/// An application that is installed, whether it runs or not.
struct LaunchableApplication {
    std::string identifier;                   // does not change while the application is installed
    std::string name;                         // in the user's language
    std::optional<BundleID> bundleIdentifier; // equals `RunningApplication::bundleIdentifier` while it runs
    std::string location;                     // absolute path of the bundle or of the desktop entry
    ApplicationIcon icon;
    bool operator==(const LaunchableApplication&) const = default;
};

/// Whether a launched application comes to the front with the focus.
enum class LaunchActivation { activates, inBackground };

struct LaunchResult {
    std::optional<std::string> error;       // a sentence for the user; absent when the application was started
    std::optional<pid_t> processIdentifier; // the started process; the windows may belong to another one
    bool operator==(const LaunchResult&) const = default;
};

using LaunchCompletion = std::function<void(const LaunchResult&)>;

/// What happens to windows that a former agent hid and did not show again.
enum class LeftoverWindows { stayHidden, show };

class ApplicationServicing {
  public:
    virtual ~ApplicationServicing() = default;

    virtual pid_t ownProcessIdentifier() const = 0;
    /// In the desktop's own, stable order. Every poll calls this first, so that a desktop can update its model here.
    /// Any thread; may wait on the polling queue only.
    virtual std::vector<RunningApplication> runningApplications() const = 0;
    /// Absent when there is no such process among the applications. Any thread; never waits.
    virtual std::optional<RunningApplication> runningApplication(pid_t processIdentifier) const = 0;
    /// Whether all windows of the application are hidden; false when there is no such application. Any thread; never
    /// waits.
    virtual bool isApplicationHidden(pid_t processIdentifier) const {
        const auto application = runningApplication(processIdentifier);
        return application && application->isHidden;
    }
    /// The application with the keyboard focus. Main thread; never waits.
    virtual std::optional<pid_t> frontmostApplication() const = 0;

    /// The icon of a file; empty when there is none. Any thread.
    virtual ApplicationIcon iconForFile(const std::string& path) const = 0;
    /// The desktop's own symbol of that name; empty when there is none. Any thread.
    virtual ApplicationIcon systemSymbolIcon(const std::string& name) const = 0;

    /// Best effort; no-op if the application has ended. `unhide` shows exactly the windows that `hide` hid. Main
    /// thread.
    virtual void hide(pid_t processIdentifier) = 0;
    virtual void unhide(pid_t processIdentifier) = 0;
    virtual void activate(pid_t processIdentifier) = 0;

    /// A text that distinguishes the process from any other with the same number, also after a restart of the machine;
    /// absent if the platform has none. Main thread; may read files.
    virtual std::optional<std::string> processStartIdentity(pid_t) const { return std::nullopt; }
    /// Decides about the windows that a former agent hid; call once, after the first poll. Windows that stay hidden
    /// count as hidden by this agent. Without this call, and on platforms where hiding ends with the process, the
    /// windows are shown. Main thread.
    virtual void resolveLeftoverHiddenWindows(LeftoverWindows) {}

    /// The applications of a launcher's menu, sorted by name. Main thread; may read files, never waits.
    virtual std::vector<LaunchableApplication> launchableApplications() const = 0;
    /// The installed application with that bundle identifier, also if menus do not show it. Main thread; may read
    /// files, never waits.
    virtual std::optional<LaunchableApplication> launchableApplication(const BundleID& bundleIdentifier) const = 0;
    /// Starts the application; a running one may open another window, or just come to the front. Never waits: the
    /// completion is called once, on the main thread and after `launch` has returned, when the start has succeeded or
    /// failed. The completion is not called if the desktop is closed first. Main thread.
    virtual void launch(const LaunchableApplication& application, LaunchActivation activation,
                        LaunchCompletion completion) = 0;
    /// Whether a process that `launch` started has ended with status 0. A program does so if it only passes its request
    /// to another process. False while it runs, after a failure, and if its status is unknown. Main thread; never
    /// waits.
    virtual bool hasLaunchedProcessSucceeded(pid_t) const { return false; }
    /// Requests the application to quit. It may show a confirmation, quit later, or refuse. False if the process has
    /// ended. Main thread; never waits.
    virtual bool terminate(pid_t processIdentifier) = 0;
    /// Kills the application's process; unsaved data is lost. Absent if the process was signaled, otherwise the reason,
    /// as a sentence without its full stop. Main thread; never waits.
    [[nodiscard]] virtual std::optional<std::string> forceTerminate(pid_t processIdentifier) = 0;
};

} // namespace kova
