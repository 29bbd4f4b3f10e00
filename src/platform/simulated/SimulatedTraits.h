// The traits that a scenario sets: of displays, applications and installed programs of the simulated desktop, and the
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
    std::optional<CGPoint> origin{};   // desktop space; absent: to the right of the others, tops aligned
    CGRect panels{};                   // thickness at the edges: origin left and top, size right and bottom
    std::optional<std::string> uuid{}; // absent: made from the name
    bool canTellUUID = true;
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
    std::optional<std::string> fails{}; // launching it gives this error
    Seconds startsAfter{0.5};           // until its process runs and the launch is reported as successful
    Seconds opensAfter{0.5};            // from then until its first window; further windows follow every 0.5 s
    int windowCount = 1;
    bool opensWhenRunning = false; // opens one more window when it is launched while it runs
    /// Its program ends with status 0 at once, and another process runs `opensAfter` later, with windows another
    /// `opensAfter` later.
    bool forks = false;
    WindowTraits window{};
    ApplicationTraits traits{};
};

/// How an application responds to a request to quit.
enum class QuittingHabit { quits, refuses };

/// What hiding an application does to its windows.
enum class HidingStyle {
    hidesApplication, // they leave the screen and keep their state
    iconifiesWindows, // each is minimized; showing the application restores exactly these windows
};

/// How a desktop lists the windows of Spaces (virtual desktops) that are not shown.
enum class SpaceStyle {
    listsAll,   // every window is listed with its Space; a full-screen window stays on its Space
    listsShown, // applications list windows of the shown Space, and minimized ones; full screen is a Space of its own
};

/// Which system the desktop resembles: X11, which responds from its own model, or a Mac, where applications respond.
enum class DesktopStyle { knowsItsWindows, mac };

/// The part of a window by which the pointer drags it.
enum class WindowPart { nothing, titleBar, leftEdge, rightEdge, topEdge, bottomEdge };
enum class ShiftKey { up, down };

} // namespace kova
