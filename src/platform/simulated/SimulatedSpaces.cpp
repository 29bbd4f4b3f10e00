// Spaces (virtual desktops), full-screen Spaces and native tabs of the simulated desktop.
#include "platform/simulated/SimulatedDesktop.h"

#include <algorithm>

namespace kova {

bool SimulatedDesktop::isOnShownSpace(const SimulatedWindow& window) const {
    return window.virtualDesktop == virtualDesktop_ || window.virtualDesktop == kEveryVirtualDesktop;
}

bool SimulatedDesktop::isListed(const SimulatedWindow& window) const {
    if (window.isLost || window.isBackgroundTab) return false;
    return spaceStyle_ == SpaceStyle::listsAll || isOnShownSpace(window) || window.isMinimized;
}

void SimulatedDesktop::sendToVirtualDesktop(std::string_view label, int virtualDesktop) {
    auto& sent = mutableWindow(label);
    // A window in full screen stays on its own Space; only the desktop to which it will return changes.
    const bool hasOwnSpace = sent.isFullScreen && spaceStyle_ == SpaceStyle::listsShown;
    (hasOwnSpace ? sent.virtualDesktopBeforeFullScreen : sent.virtualDesktop) = virtualDesktop;
    changed();
}

void SimulatedDesktop::showVirtualDesktop(int virtualDesktop) {
    if (virtualDesktop == virtualDesktop_) return;
    virtualDesktop_ = virtualDesktop;
    if (spaceNotificationDelay_ > Seconds(0)) {
        queue_.after(spaceNotificationDelay_, lifetime_.guard([this] { ++spaceChanges_; }));
    } else {
        ++spaceChanges_;
    }
    const auto* front = frontmost_ ? findApplication(*frontmost_) : nullptr;
    if (!front || !focusedWindow(*front)) focusNextApplication();
    changed();
}

void SimulatedDesktop::setFullScreen(std::string_view label, bool fullScreen) {
    auto& chosen = mutableWindow(label);
    if (chosen.isFullScreen == fullScreen || displays_.empty() || chosen.isBackgroundTab) return;
    if (fullScreen) chosen.frameBeforeFullScreen = chosen.frame;
    chosen.isFullScreen = fullScreen;
    chosen.frame = fullScreen ? displayFrameUnder(chosen.frame) : chosen.frameBeforeFullScreen;
    if (!isOnSomeDisplay(chosen)) chosen.frame.origin = firstDisplayOrigin();
    if (spaceStyle_ == SpaceStyle::listsShown) fullScreen ? enterOwnSpace(chosen) : leaveOwnSpace(chosen);
    changed(*findApplication(chosen.processIdentifier()));
}

void SimulatedDesktop::setMaximized(std::string_view label, bool maximized) {
    auto& chosen = mutableWindow(label);
    if (chosen.isMaximized == maximized || displays_.empty()) return;
    if (maximized) chosen.frameBeforeFullScreen = chosen.frame;
    chosen.isMaximized = maximized;
    chosen.frame = maximized ? displayFrameUnder(chosen.frame) : chosen.frameBeforeFullScreen;
    changed(*findApplication(chosen.processIdentifier()));
}

void SimulatedDesktop::enterOwnSpace(SimulatedWindow& window) {
    window.virtualDesktopBeforeFullScreen = window.virtualDesktop;
    window.virtualDesktop = ++lastOwnSpace_;
    showVirtualDesktop(window.virtualDesktop);
}

/// Other windows that are on the ending Space leave it together with the window.
void SimulatedDesktop::leaveOwnSpace(SimulatedWindow& window) {
    const int ending = window.virtualDesktop;
    for (auto& [number, other] : windows_) {
        if (other.virtualDesktop == ending) other.virtualDesktop = window.virtualDesktopBeforeFullScreen;
    }
    if (virtualDesktop_ == ending) showVirtualDesktop(std::max(window.virtualDesktopBeforeFullScreen, 0));
}

void SimulatedDesktop::closeAndRetain(std::string_view label, RetainedFrame frame) {
    SimulatedWindow closed = window(label);
    if (frame == RetainedFrame::empty) closed.frame.size = {};
    remove(window(label));
    retained_.insert_or_assign(closed.number(), closed);
}

bool SimulatedDesktop::isRetained(const WindowID& windowID) const {
    return std::any_of(retained_.begin(), retained_.end(), [&](const auto& entry) {
        return std::to_string(entry.second.processIdentifier()) + ":" + std::to_string(entry.first) == windowID.text();
    });
}

std::string SimulatedDesktop::openTab(std::string_view label, WindowTraits traits) {
    auto& first = mutableWindow(label);
    if (first.tabGroup == 0) first.tabGroup = first.number();
    const std::uint64_t group = first.tabGroup;
    traits.frame = first.frame;
    traits.virtualDesktop = first.virtualDesktop;
    const std::string opened = open(findApplication(first.processIdentifier())->name, std::move(traits));
    auto& tab = mutableWindow(opened);
    tab.tabGroup = group;
    tab.isBackgroundTab = true;
    showTab(opened);
    return opened;
}

void SimulatedDesktop::showTab(std::string_view label) {
    auto& shown = mutableWindow(label);
    if (!shown.isBackgroundTab) return;
    for (auto& [number, other] : windows_) {
        if (other.tabGroup != shown.tabGroup || other.isBackgroundTab) continue;
        shown.frame = other.frame;
        shown.virtualDesktop = other.virtualDesktop;
        shown.isMinimized = other.isMinimized;
        other.isBackgroundTab = true;
    }
    shown.isBackgroundTab = false;
    renumber(shown);
    raise(shown);
    if (isOnScreen(shown)) findApplication(shown.processIdentifier())->focusedWindow = shown.number();
    changed(*findApplication(shown.processIdentifier()));
}

void SimulatedDesktop::showNextTabOf(const SimulatedWindow& closing) {
    if (closing.tabGroup == 0 || closing.isBackgroundTab) return;
    for (auto& [number, other] : windows_) {
        if (other.tabGroup == closing.tabGroup && other.isBackgroundTab) return showTab(std::string(other.label()));
    }
}

// The platform interfaces

WindowPresence SimulatedDesktop::presenceOf(const AccessibilityElement& window) const {
    ++readCount_;
    const auto* owner = findApplication(window.processIdentifier);
    if (!owner) return WindowPresence::closed;
    if (!isTrusted_ || isPermissionStale_ || !waitForResponse(*owner)) return WindowPresence::noResponse;
    const auto* found = windowOf(window);
    return found && !found->isLost ? WindowPresence::present : WindowPresence::closed;
}

std::optional<std::uint64_t> SimulatedDesktop::spaceOf(const AccessibilityElement& element) const {
    const auto* window = windowOf(element);
    const bool isReported =
        window && spaceStyle_ == SpaceStyle::listsAll && window->virtualDesktop != kEveryVirtualDesktop;
    return isReported ? std::optional(static_cast<std::uint64_t>(window->virtualDesktop)) : std::nullopt;
}

std::uint64_t SimulatedDesktop::shownSpace() const {
    return spaceStyle_ == SpaceStyle::listsAll ? static_cast<std::uint64_t>(virtualDesktop_) : spaceChanges_;
}

} // namespace kova
