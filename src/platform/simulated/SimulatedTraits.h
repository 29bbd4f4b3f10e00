// Traits of the simulated desktop that a scenario sets: those of displays, applications and installed programs, and the
// styles of the whole desktop.
#pragma once

#include "platform/simulated/SimulatedWindow.h"
#include "support/Identifiers.h"
#include "windowing/ApplicationServicing.h"

#include <optional>
#include <string>

namespace kova {

struct SimulatedDisplay {
    std::string name;
    CGSize size{2560, 1440};           // points
    std::optional<CGPoint> origin{};   // desktop space; absent: to the right of the other displays, with y = 0
    CGRect panels{};                   // thickness at the left (x), top (y), right (width) and bottom (height) edge
    std::optional<std::string> uuid{}; // absent: made from the name
    bool canTellUUID = true;           // false: the platform does not report the UUID
};

struct ApplicationTraits {
    ApplicationActivationPolicy activationPolicy = ApplicationActivationPolicy::regular;
    std::optional<BundleID> bundleIdentifier{}; // absent: "sim." and the name in lower case
    bool hasName = true;
    ApplicationIcon icon{.name = "application", .image = nullptr};
    std::string bundlePath{};
    bool isPartOfDesktop = false;
    bool isVerified = true; // it is certain that its windows belong to its process
    bool hasBundleIdentifier = true;
    bool listsWindowsTwice = false;
    bool lingersWhenHidden = false; // its windows stay on the screen although it is hidden
};

/// An application that can be launched, and what happens at a launch.
struct InstallationTraits {
    std::optional<BundleID> bundleIdentifier{}; // absent: "sim." and the name in lower case
    bool hasBundleIdentifier = true;
    std::optional<std::string> fails{}; // the error with which each launch fails; absent: launches succeed
    Seconds startsAfter{0.5};           // the time from the launch until the process runs and the result is reported
    Seconds opensAfter{0.5};            // the time from then until the first window; further windows follow every 0.5 s
    int windowCount = 1;
    bool opensWhenRunning = false; // opens one more window when it is launched while it runs
    /// The launched program ends with status 0 at once. After `opensAfter` another process starts, which opens its
    /// first window after another `opensAfter`.
    bool forks = false;
    WindowTraits window{};
    ApplicationTraits traits{};
};

/// How an application responds to a request to quit.
enum class QuittingHabit { quits, refuses };

/// What hiding an application does to its windows.
enum class HidingStyle {
    hidesApplication, // its windows leave the screen and keep their state
    iconifiesWindows, // its windows are minimized; showing the application restores exactly these windows
};

/// How a desktop lists the windows of Spaces (virtual desktops) that are not shown.
enum class SpaceStyle {
    listsAll,   // every window is listed with its Space; a full-screen window stays on its Space
    listsShown, // only windows on the shown Space and minimized windows; a full-screen window has its own Space
};

/// The system that the desktop resembles.
enum class DesktopStyle {
    knowsItsWindows, // X11: the desktop answers reads from its own model
    mac,             // each read is a request to the application
};

/// The part of a window by which the pointer drags it.
enum class WindowPart { nothing, titleBar, leftEdge, rightEdge, topEdge, bottomEdge };
enum class ShiftKey { up, down };

} // namespace kova
