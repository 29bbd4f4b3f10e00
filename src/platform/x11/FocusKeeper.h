// Keeps the focus on its window while KOVA restores other windows: most window managers focus a window that is mapped,
// and some restore a window only by focusing it.
#pragma once

#include "platform/x11/XConnection.h"
#include "support/MainQueue.h"

#include <map>
#include <optional>
#include <set>

namespace kova::x11 {

/// If the window manager has not reported a window as focused this long after KOVA's request, it refused the request.
inline constexpr Seconds kTimeToFocus{0.5};

class FocusKeeper {
  public:
    /// KOVA has requested to restore `window` while `active` has the focus (kNoWindow: no window has it). All times are
    /// uptimes.
    void noteRestoreRequested(xcb_window_t window, xcb_window_t active, Seconds now);
    /// KOVA has requested the focus for `window`, which is to keep it from now on.
    void noteFocusRequested(xcb_window_t window, Seconds now);
    /// Another program, not the window's own application, has requested the focus for `window`. That is the user's
    /// choice: `window` may take the focus although it was only to be restored, and keeps it from now on.
    void noteRequestOfAnotherProgram(xcb_window_t window);
    /// The window that counts as focused when the window manager reports `reported`. That is the window for which KOVA
    /// has just requested the focus, as long as `reported` is a window that had the focus before or kNoWindow, which
    /// some window managers report while the focus moves.
    xcb_window_t effectiveFocus(xcb_window_t reported, Seconds now);
    /// The focused window that the window manager reported last; kNoWindow for none.
    xcb_window_t reported() const { return reported_; }
    /// The window manager reports `active` as focused. Returns the window to focus again if `active`, or its parent
    /// `owner` (kNoWindow: it has none), is a window that was only to be restored.
    std::optional<xcb_window_t> windowToRefocus(xcb_window_t active, xcb_window_t owner, Seconds now);
    /// KOVA is about to focus `window` instead of `active`, which was only to be restored.
    void noteRefocused(xcb_window_t window, xcb_window_t active, Seconds now);
    /// The window that keeps the focus while others are restored; absent if no window is being restored.
    std::optional<xcb_window_t> kept(Seconds now) const;

  private:
    void expect(xcb_window_t window, Seconds until, Seconds now);
    void forgetRequest();
    bool isKeeping(Seconds now) const { return !restored_.empty() && now < until_; }

    xcb_window_t kept_ = kNoWindow;
    xcb_window_t reported_ = kNoWindow;  // by the window manager
    xcb_window_t requested_ = kNoWindow; // the focus was requested for it, and not reported yet
    std::set<xcb_window_t> formerFocus_; // windows that had the focus, or a request for it, before `requested_`
    /// The last report of `requested_` is older than a request for another window, which is not reported yet.
    bool isReportOutdated_ = false;
    Seconds requestedUntil_{-1};
    std::map<xcb_window_t, int> restored_; // by window: how often KOVA has taken the focus away from it again
    Seconds until_{-1};
};

} // namespace kova::x11
