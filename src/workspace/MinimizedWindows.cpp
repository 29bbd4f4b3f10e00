#include "workspace/MinimizedWindows.h"

#include "support/SameFrame.h"
#include "workspace/Renaming.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kova {

namespace {

/// A window that is still not minimized after this time has refused the request. A busy desktop needs long.
constexpr Seconds kTimeToMinimize{60};
/// How long a window may seem to be shown, or may be missing, before it is forgotten: a window manager that replaces
/// another one shows a minimized window for a moment.
constexpr Seconds kTimeToBeForgotten{5};

} // namespace

void MinimizedWindows::note(const WindowID& windowID, Seconds now) {
    minimized_[windowID] = {now, false, std::nullopt};
}

void MinimizedWindows::onPoll(const std::vector<ManagedWindow>& live, Seconds now) {
    for (auto entry = minimized_.begin(); entry != minimized_.end();) {
        auto& [id, request] = *entry;
        const auto window = std::ranges::find(live, id, &ManagedWindow::id);
        const bool isMinimized = window != live.end() && window->isMinimized;
        const bool isForgotten = request.notMinimizedSince && now - *request.notMinimizedSince > kTimeToBeForgotten;
        const bool isPending = !request.isConfirmed && now - request.since <= kTimeToMinimize;
        if (isMinimized && !isForgotten) {
            request.isConfirmed = true;
            request.notMinimizedSince.reset();
        } else if (!isPending && !request.notMinimizedSince) {
            request.notMinimizedSince = now;
        }
        entry = isForgotten ? minimized_.erase(entry) : std::next(entry);
    }
}

void MinimizedWindows::rename(const WindowID& windowID, const WindowID& newID) {
    renameKey(minimized_, windowID, newID);
    renameKey(expected_, windowID, newID);
}

std::vector<WindowID> MinimizedWindows::takeAll() {
    std::vector<WindowID> ids;
    for (const auto& [id, request] : std::exchange(minimized_, {})) ids.push_back(id);
    return ids;
}

void MinimizedWindows::expectBack(const WindowID& windowID, const std::optional<CGRect>& frame, Seconds deadline) {
    expected_[windowID] = {frame, deadline};
}

std::vector<WindowID> MinimizedWindows::takeReturned(const std::vector<ManagedWindow>& live,
                                                     const std::optional<WindowID>& focusedWindowID, Seconds now) {
    std::vector<WindowID> returned;
    std::erase_if(expected_, [&](const auto& entry) {
        const auto& [id, expected] = entry;
        const auto window = std::ranges::find(live, id, &ManagedWindow::id);
        if (window == live.end()) return true;
        const bool isOverdue = now >= expected.deadline;
        if (window->isMinimized) {
            if (!contains(id)) note(id, now);
            return isOverdue;
        }
        const bool isInPlace =
            !expected.frame || !window->frame || nearlyEqual(*window->frame, *expected.frame, kFrameTolerancePoints);
        if (!window->isVisible || !isInPlace || id == focusedWindowID) return isOverdue;
        returned.push_back(id);
        return true;
    });
    return returned;
}

} // namespace kova
