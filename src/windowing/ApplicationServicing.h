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
    bool isPartOfDesktop = false; // file manager, panel, window manager, session: what the desktop itself consists of
    bool operator==(const RunningApplication&) const = default;
};

/// An application that is installed, whether it runs or not.
struct LaunchableApplication {
    std::string identifier;                      // the same for the same application as long as it is installed
    std::string name;                            // in the user's language
    std::optional<std::string> bundleIdentifier; // as that of its running applications
    std::string location;                        // absolute path of the bundle or of the desktop entry
    ApplicationIcon icon;
    bool operator==(const LaunchableApplication&) const = default;
};

/// Whether a launched application comes to the front or leaves the keyboard where it is.
enum class LaunchActivation { activates, inBackground };

struct LaunchResult {
    std::optional<std::string> error;       // a sentence for the user; absent when the application was started
    std::optional<pid_t> processIdentifier; // of what was started; its windows may all the same be another process's
    bool operator==(const LaunchResult&) const = default;
};

using LaunchCompletion = std::function<void(const LaunchResult&)>;

/// What becomes of windows that an agent before this one hid and could not bring back.
enum class LeftWindows { stayHidden, comeBack };

class ApplicationServicing {
  public:
    virtual ~ApplicationServicing() = default;

    virtual pid_t ownProcessIdentifier() const = 0;
    /// In the desktop's own, stable order. The first question of every poll: there a desktop may bring what it knows up
    /// to date. Any thread; may wait on the polling queue only.
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

    /// Tells the process from every other that had or will have its number, also after the machine was started anew;
    /// absent where nothing does. Main thread; may read files.
    virtual std::optional<std::string> processStartIdentity(pid_t) const { return std::nullopt; }
    /// Said once, with the first picture of the desktop: windows that stay hidden count as hidden by this agent.
    /// Without this call, and where hiding ends with the process, they come back by themselves. Main thread.
    virtual void settleHiddenWindows(LeftWindows) {}

    /// What a user would find in a menu of applications, sorted by name. Main thread; may read files, never waits.
    virtual std::vector<LaunchableApplication> launchableApplications() const = 0;
    /// The installed application of that bundle identifier, also one that menus do not show; absent when there is none.
    /// Main thread; may read files, never waits.
    virtual std::optional<LaunchableApplication> launchableApplication(const std::string& bundleIdentifier) const = 0;
    /// Starts the application from its location; one that runs may answer with another window, or just come to the
    /// front. Never waits: the completion is called once, on the main thread and after this has returned, when the
    /// start is known to have worked or not. Not called any more when the desktop is closed first. Main thread.
    virtual void launch(const LaunchableApplication& application, LaunchActivation activation,
                        LaunchCompletion completion) = 0;
    /// Whether the process, which `launch` has started, ended by itself with status 0, as a program does that leaves
    /// its windows to another process. False while it runs, when it failed, and where its status is not known. Main
    /// thread; never waits.
    virtual bool hasLaunchedProcessSucceeded(pid_t) const { return false; }
    /// Asks the application to quit, as if its user had; it may ask back, take its time, or stay. False when the
    /// process has ended. Main thread; never waits.
    virtual bool terminate(pid_t processIdentifier) = 0;
    /// Ends the application's process without asking it; what was not saved is lost. Absent when the process was
    /// signalled, otherwise why it was not, as a sentence without its end. Main thread; never waits.
    [[nodiscard]] virtual std::optional<std::string> forceTerminate(pid_t processIdentifier) = 0;
};

} // namespace kova
