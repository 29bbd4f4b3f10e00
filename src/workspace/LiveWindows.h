// The windows of the last poll, with the states and frames that were requested since. A window counts as shown, hidden,
// minimized or moved as soon as this is requested, before a poll confirms it. Always true: ids are unique. The list has
// no dialogs. Only this object changes a window of the list.
#pragma once

#include "windowing/ManagedWindow.h"
#include "workspace/AttachedDialogs.h"
#include "workspace/FocusOrder.h"
#include "workspace/MinimizedWindows.h"
#include "workspace/PollContext.h"
#include "workspace/PresentationRequests.h"
#include "workspace/SpaceChange.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kova {

class LiveWindows {
  public:
    /// The list of windows may change this long after a change of Spaces.
    static constexpr Seconds kSpaceChangeTime{2};

    const std::vector<ManagedWindow>& all() const { return windows_; }
    auto begin() const { return windows_.begin(); }
    auto end() const { return windows_.end(); }
    /// Null if no window has the id. The pointer is valid until the next `take` or `clear`.
    const ManagedWindow* find(const WindowID& windowID) const;

    /// Replaces the windows by those of a poll that began at `pollBegan` (uptime). Stores dialogs separately, and keeps
    /// requested states that the poll cannot have seen. True if titles of windows or dialogs have changed.
    bool take(std::vector<ManagedWindow> found, Seconds pollBegan);
    /// Forgets all windows. Call when the permission is missing.
    void clear();

    /// The windows that KOVA does not manage, as of the last poll.
    const std::vector<UnmanagedWindow>& unmanaged() const { return unmanaged_; }
    void noteUnmanaged(std::vector<UnmanagedWindow> windows) { unmanaged_ = std::move(windows); }

    const AttachedDialogs& dialogs() const { return dialogs_; }
    /// See `AttachedDialogs::moveWithWindow`.
    std::vector<AttachedDialogs::Move> moveDialogs(const WindowID& windowID, const CGRect& frame,
                                                   const CGRect& visibleArea) {
        return dialogs_.moveWithWindow(windowID, frame, visibleArea);
    }

    /// Records the Space that is shown as of the last poll, and returns the one recorded before.
    std::uint64_t noteShownSpace(std::uint64_t space) { return std::exchange(shownSpace_, space); }
    std::uint64_t shownSpace() const { return shownSpace_; }
    /// Call if another Space may have been shown since the last poll. `now` is an uptime.
    void noteSpaceChange(Seconds now) { spaceChange_ = now; }
    SpaceChange spaceChange(Seconds now) const {
        const bool isRecent = spaceChange_ && now - *spaceChange_ <= kSpaceChangeTime;
        return isRecent ? SpaceChange::possible : SpaceChange::none;
    }

    // Requested states. `now` is an uptime.
    /// False if no window has the id.
    bool request(const WindowID& windowID, WindowPresentation presentation, Seconds now);
    void requestHidden(pid_t process, Seconds now);
    /// For all windows of the process that are on the shown Space and not minimized.
    void requestShown(pid_t process, Seconds now);
    void requestMaximized(const WindowID& windowID, bool maximized, Seconds now);
    /// Records a frame that was requested or read since the last poll, in window-service space.
    void noteFrame(const WindowID& windowID, const CGRect& frame);
    void noteNotMinimized(const WindowID& windowID);
    /// Whether the window was requested to be shown, and no poll has confirmed that yet.
    bool isShowRequested(const WindowID& windowID) const { return requests_.isShowRequested(windowID); }

    /// Windows that this agent has minimized.
    const MinimizedWindows& minimized() const { return minimized_; }
    void noteMinimized(const WindowID& windowID, Seconds now) { minimized_.note(windowID, now); }
    /// See `MinimizedWindows::takeAll`, `expectBack` and `takeReturned`.
    std::vector<WindowID> takeMinimized() { return minimized_.takeAll(); }
    void expectMinimizedBack(const WindowID& windowID, const std::optional<CGRect>& frame, Seconds deadline) {
        minimized_.expectBack(windowID, frame, deadline);
    }
    std::vector<WindowID> takeMinimizedReturned(const std::optional<WindowID>& focusedWindowID, Seconds now) {
        return minimized_.takeReturned(windows_, focusedWindowID, now);
    }
    void noteFocus(const WindowID& windowID) { focusOrder_.note(windowID); }
    const FocusOrder& focusOrder() const { return focusOrder_; }

    void onPoll(const PollContext& poll) {
        minimized_.onPoll(poll.windows, poll.now);
        focusOrder_.keepOnly(poll.isLive);
    }
    /// Whether a timeout or a confirmation is pending, so that polls must continue.
    bool isWaiting() const { return minimized_.isExpecting() || requests_.isWaiting(); }
    /// Renames the window everywhere except in the list: the list is that of the last poll and has the new id already.
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID&, const DisplayID&) {} // nothing here refers to a display

  private:
    void set(std::vector<ManagedWindow> windows);
    ManagedWindow* entry(const WindowID& windowID);

    std::vector<ManagedWindow> windows_;
    std::unordered_map<WindowID, std::size_t> indexByID_;
    std::vector<UnmanagedWindow> unmanaged_;
    AttachedDialogs dialogs_;
    MinimizedWindows minimized_;
    PresentationRequests requests_;
    FocusOrder focusOrder_;
    std::uint64_t shownSpace_ = 0;
    std::optional<Seconds> spaceChange_; // uptime of the last possible change
};

} // namespace kova
