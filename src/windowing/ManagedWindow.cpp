#include "windowing/ManagedWindow.h"

namespace kova {

std::string_view describe(AccessibilityPermissionState state) {
    switch (state) {
    case AccessibilityPermissionState::unknown:
        return "unknown";
    case AccessibilityPermissionState::denied:
        return "denied";
    case AccessibilityPermissionState::granted:
        return "granted";
    }
    return {};
}

bool samePresentation(const ManagedWindow& a, const ManagedWindow& b) {
    return a.id == b.id && a.processIdentifier == b.processIdentifier && a.applicationName == b.applicationName &&
           a.bundleIdentifier == b.bundleIdentifier && a.isMinimized == b.isMinimized && a.isVisible == b.isVisible &&
           a.isElsewhere == b.isElsewhere && a.isFullScreen == b.isFullScreen && a.isMaximized == b.isMaximized &&
           a.minimumSize == b.minimumSize;
}

} // namespace kova
