#include "workspace/LiveWindows.h"

#include <algorithm>

namespace kova {

namespace {

bool sameTitles(const std::vector<ManagedWindow>& a, const std::vector<ManagedWindow>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const ManagedWindow& x, const ManagedWindow& y) { return x.title == y.title; });
}

} // namespace

ManagedWindow* LiveWindows::entry(const WindowID& windowID) {
    const auto found = indexByID_.find(windowID);
    return found == indexByID_.end() ? nullptr : &windows_[found->second];
}

const ManagedWindow* LiveWindows::find(const WindowID& windowID) const {
    const auto found = indexByID_.find(windowID);
    return found == indexByID_.end() ? nullptr : &windows_[found->second];
}

bool LiveWindows::take(std::vector<ManagedWindow> found, Seconds pollBegan) {
    const auto dialogsBefore = dialogs_.all();
    auto windows = dialogs_.takeFrom(std::move(found));
    requests_.overrule(windows, pollBegan);
    const bool hasOtherTitles = !sameTitles(windows_, windows) || !sameTitles(dialogsBefore, dialogs_.all());
    set(std::move(windows));
    return hasOtherTitles;
}

void LiveWindows::clear() {
    set(dialogs_.takeFrom({}));
    unmanaged_.clear();
    requests_.clear();
}

void LiveWindows::set(std::vector<ManagedWindow> windows) {
    windows_ = std::move(windows);
    indexByID_.clear();
    for (std::size_t i = 0; i < windows_.size(); ++i) indexByID_.emplace(windows_[i].id, i);
}

bool LiveWindows::request(const WindowID& windowID, WindowPresentation presentation, Seconds now) {
    ManagedWindow* window = entry(windowID);
    if (window) requests_.request(*window, presentation, now);
    return window != nullptr;
}

void LiveWindows::requestHidden(pid_t process, Seconds now) {
    for (auto& window : windows_) {
        if (window.processIdentifier == process) requests_.request(window, WindowPresentation::hidden, now);
    }
}

void LiveWindows::requestShown(pid_t process, Seconds now) {
    for (auto& window : windows_) {
        if (window.processIdentifier != process || window.isMinimized || window.isElsewhere) continue;
        requests_.request(window, WindowPresentation::shown, now);
    }
}

void LiveWindows::requestMaximized(const WindowID& windowID, bool maximized, Seconds now) {
    if (ManagedWindow* window = entry(windowID)) requests_.requestMaximized(*window, maximized, now);
}

void LiveWindows::noteFrame(const WindowID& windowID, const CGRect& frame) {
    if (ManagedWindow* window = entry(windowID)) window->frame = frame;
}

void LiveWindows::noteNotMinimized(const WindowID& windowID) {
    if (ManagedWindow* window = entry(windowID)) window->isMinimized = false;
}

void LiveWindows::rename(const WindowID& windowID, const WindowID& newID) {
    requests_.rename(windowID, newID);
    minimized_.rename(windowID, newID);
    focusOrder_.rename(windowID, newID);
}

} // namespace kova
