// One live window of another application, as it was when last enumerated.
#pragma once

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
    std::string id; // process identifier, ":", hash of the element; stable while the window lives
    AccessibilityElement element;
    pid_t processIdentifier = 0;
    std::string applicationName;
    std::optional<std::string> bundleIdentifier;
    std::string title;
    ApplicationIcon icon;
    bool isMinimized = false;
    bool isVisible = false;
    bool isFullScreen = false;
    bool isMaximized = false;            // by the window manager
    bool isFocusedOfApplication = false; // has the keyboard when its application is the front one
    bool isElsewhere = false;            // exists and is not shown: on another Space, or behind another tab
    bool isAnswering = true;             // false: its application is silent, and this is what was known before
    std::optional<std::uint64_t> space;  // its Space (virtual desktop); absent: on every one, or not known
    std::optional<CGRect> frame;         // window-service space
    std::optional<CGSize> minimumSize;   // points
    std::optional<WindowSizeHints> sizeHints;
    /// Of a dialog: the id of the window that it belongs to, itself no dialog of another; absent for every other
    /// window.
    std::optional<std::string> parentID{};
    bool operator==(const ManagedWindow&) const = default;
};

/// What decides whether the presented list of windows must change: a window that merely moved is the same.
bool samePresentation(const ManagedWindow& a, const ManagedWindow& b);

} // namespace kova
