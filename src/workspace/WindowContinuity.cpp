#include "workspace/WindowContinuity.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kova {

namespace {

using WindowsByID = std::unordered_map<WindowID, const ManagedWindow*>;

WindowsByID byID(const std::vector<ManagedWindow>& windows) {
    WindowsByID index;
    for (const auto& window : windows) index.emplace(window.id, &window);
    return index;
}

ManagedWindow keptWindow(const ManagedWindow& before, const UnlistedWindow& unlisted) {
    ManagedWindow kept = before;
    kept.isResponding = unlisted.isResponding;
    if (!unlisted.isResponding) return kept;
    kept.isElsewhere = true;
    kept.isVisible = false;
    if (!unlisted.now) return kept;
    kept.title = unlisted.now->title;
    kept.isMinimized = unlisted.now->isMinimized;
    kept.isFullScreen = unlisted.now->isFullScreen;
    kept.isMaximized = unlisted.now->isMaximized;
    if (unlisted.now->frame) kept.frame = unlisted.now->frame;
    if (unlisted.now->minimumSize) kept.minimumSize = unlisted.now->minimumSize;
    return kept;
}

} // namespace

std::vector<KnownWindow> knownWindows(const std::vector<ManagedWindow>& windows) {
    std::vector<KnownWindow> known;
    known.reserve(windows.size());
    for (const auto& window : windows) known.push_back({window.id, window.element});
    return known;
}

std::vector<WindowSuccessor> takeTabSuccessors(WindowEnumeration& found, const std::vector<ManagedWindow>& before,
                                               ShownSpace shownSpace) {
    const bool isSameList = std::ranges::equal(found.listed, before, {}, &ManagedWindow::id, &ManagedWindow::id);
    if (isSameList) return {}; // the most frequent case
    const WindowsByID known = byID(before);
    std::vector<const ManagedWindow*> newWindows;
    std::unordered_set<WindowID> present; // listed, or unlisted because the application does not respond
    for (const auto& window : found.listed) {
        present.insert(window.id);
        if (window.isVisible && !window.parentID && !known.contains(window.id)) newWindows.push_back(&window);
    }
    if (newWindows.empty()) return {};
    std::unordered_set<WindowID> existing; // windows that still exist but are not listed any more
    for (const auto& window : found.unlisted) (window.isResponding ? existing : present).insert(window.id);
    std::vector<ManagedWindowRecoveryIdentity> missing;
    for (const auto& window : before) {
        const bool wasShown = !window.isElsewhere && !window.isMinimized;
        if (wasShown && !present.contains(window.id)) missing.push_back(recoveryIdentity(window));
    }
    const auto exists = [&](const auto& window) { return existing.contains(window.id); };
    auto successors = recognizeTabs(missing, newWindows);
    const auto hasSuccessor = [&](const auto& window) {
        return std::ranges::find(successors, window.id, &WindowSuccessor::formerID) != successors.end();
    };
    const bool hasOneLeftWithoutSuccessor =
        std::ranges::any_of(missing, [&](const auto& window) { return exists(window) && !hasSuccessor(window); });
    if (shownSpace == ShownSpace::another || hasOneLeftWithoutSuccessor) {
        std::erase_if(missing, exists);
        successors = recognizeTabs(missing, newWindows);
    }
    std::erase_if(found.unlisted, [&](const auto& window) {
        return std::ranges::find(successors, window.id, &WindowSuccessor::formerID) != successors.end();
    });
    return successors;
}

std::vector<ManagedWindow> withUnlisted(WindowEnumeration found, const std::vector<ManagedWindow>& before) {
    auto windows = std::move(found.listed);
    if (found.unlisted.empty()) return windows;
    std::unordered_map<WindowID, const UnlistedWindow*> unlisted;
    for (const auto& window : found.unlisted) unlisted.emplace(window.id, &window);
    // Inserts each window after its predecessor in the former list, so that the order does not change.
    const auto placeAfter = [&windows](const std::optional<WindowID>& id) {
        const auto place = id ? std::ranges::find(windows, *id, &ManagedWindow::id) : windows.end();
        return place == windows.end() ? windows.begin() : place + 1;
    };
    std::unordered_set<WindowID> listed;
    for (const auto& window : windows) listed.insert(window.id);
    std::optional<WindowID> previous;
    for (const auto& window : before) {
        if (const auto entry = unlisted.find(window.id); entry != unlisted.end()) {
            windows.insert(placeAfter(previous), keptWindow(window, *entry->second));
            previous = window.id;
        } else if (listed.contains(window.id)) {
            previous = window.id;
        }
    }
    return windows;
}

} // namespace kova
