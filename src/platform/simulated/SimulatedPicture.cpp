// Queries and descriptions of the desktop's state, for tests.
#include "platform/simulated/SimulatedDesktop.h"

#include <algorithm>

namespace kova {

CGRect SimulatedDesktop::frameForWindowService(const SimulatedWindow& window) const {
    const CGPoint corner = firstDisplayOrigin();
    return {{minX(window.frame) - corner.x, minY(window.frame) - corner.y}, window.frame.size};
}

bool SimulatedDesktop::isOnScreen(const SimulatedWindow& window) const {
    const auto* owner = findApplication(window.processIdentifier());
    const bool hidden =
        owner->record.isHidden && hidingStyle_ == HidingStyle::hidesApplication && !owner->lingersWhenHidden;
    return !isLocked_ && !hidden && !window.isMinimized && !window.isBackgroundTab && isOnShownSpace(window);
}

bool SimulatedDesktop::isAnswering(const SimulatedWindow& window) const {
    return isInTime(*findApplication(window.processIdentifier()));
}

bool SimulatedDesktop::isSilent(pid_t processIdentifier) const {
    const auto* application = findApplication(processIdentifier);
    return application && !isInTime(*application);
}

bool SimulatedDesktop::isOnSomeDisplay(const SimulatedWindow& window) const {
    return isOnSomeDisplay(window.frame);
}

std::string SimulatedDesktop::describeWindow(const SimulatedWindow& window) const {
    std::string text = window.label() + " " + describeFrame(frameForWindowService(window));
    if (isMinimizedByItself(window)) text += " minimized";
    if (findApplication(window.processIdentifier())->record.isHidden) text += " hidden";
    if (window.isFullScreen) text += " full screen";
    if (window.isMaximized) text += " maximized";
    if (window.isBackgroundTab) text += " behind a tab";
    if (!isOnShownSpace(window)) text += " on desktop " + std::to_string(window.virtualDesktop);
    return text;
}

std::string SimulatedDesktop::picture() const {
    std::string text;
    for (const auto& [number, window] : windows_) text += (text.empty() ? "" : " | ") + describeWindow(window);
    return text;
}

std::string SimulatedDesktop::focusedLabel() const {
    const auto* application = frontmost_ ? findApplication(*frontmost_) : nullptr;
    const auto* window = application ? focusedWindow(*application) : nullptr;
    return window ? window->label() : "";
}

std::string SimulatedDesktop::labelOfID(const WindowID& windowID) const {
    for (const auto& [number, window] : windows_) {
        if (windowIDOf(window.label()) == windowID) return window.label();
    }
    return windowID.text();
}

WindowID SimulatedDesktop::windowIDOf(std::string_view label) const {
    const auto& named = window(label);
    return WindowID(std::to_string(named.processIdentifier()) + ":" + std::to_string(named.number()));
}

std::string SimulatedDesktop::takeJournal() {
    std::string text;
    for (const auto& line : journal_) text += line + "\n";
    journal_.clear();
    return text;
}

std::vector<DiagnosticLine> SimulatedDesktop::diagnose() const {
    requireMainThread("diagnose");
    std::vector<DiagnosticLine> lines;
    const auto displayVerdict = displays_.empty() ? DiagnosticVerdict::wrong : DiagnosticVerdict::fine;
    lines.push_back({"displays", displayVerdict, std::to_string(displays_.size()) + " in memory"});
    for (const auto& application : applications_) {
        if (application.responds) continue;
        lines.push_back({"slow applications", DiagnosticVerdict::note,
                         application.name + " does not respond; its windows are left alone until it responds"});
    }
    return lines;
}

} // namespace kova
