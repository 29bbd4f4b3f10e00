// One window of another application, as of the last poll.
#pragma once

#include "support/Identifiers.h"
#include "windowing/AccessibilityServicing.h"
#include "windowing/ApplicationServicing.h"

#include <optional>
#include <string>

namespace kova {

enum class AccessibilityPermissionState { unknown, denied, granted };

/// "unknown", "denied", "granted".
std::string_view describe(AccessibilityPermissionState state);

/// How a window that lost its tile leaves the screen.
enum class DisplacedWindowPresentationAction { hideApplication, minimizeWindow };

struct ManagedWindow {
    WindowID id;
    AccessibilityElement element;
    pid_t processIdentifier = 0;
    std::string applicationName;
    std::optional<BundleID> bundleIdentifier;
    std::string title;
    ApplicationIcon icon;
    bool isMinimized = false;
    bool isVisible = false;
    bool isFullScreen = false;
    bool isMaximized = false;            // by the window manager
    bool isFocusedOfApplication = false; // has the focus when its application is active
    bool isElsewhere = false;            // the window exists but is not shown: on another Space, or behind another tab
    bool isResponding = true; // false: the application does not respond, and the values are from earlier polls
    std::optional<std::uint64_t> space; // its Space (virtual desktop); absent: on every one, or not known
    std::optional<CGRect> frame;        // window-service space
    std::optional<CGSize> minimumSize;  // points
    std::optional<WindowSizeHints> sizeHints;
    /// For a dialog the id of the ordinary window to which it belongs; absent for other windows.
    std::optional<WindowID> parentID{};

    bool operator==(const ManagedWindow&) const = default;
};

/// A window that KOVA leaves alone, such as a panel.
struct UnmanagedWindow {
    WindowID id;
    std::string applicationName;
    std::string title;
    std::string reason; // “it is smaller than 120 × 80 points”
};

/// Whether `a` and `b` are equal in everything that must be published when it changes. Frame and title are not
/// compared.
bool samePresentation(const ManagedWindow& a, const ManagedWindow& b);

} // namespace kova
