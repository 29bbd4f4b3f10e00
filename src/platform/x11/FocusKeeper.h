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
    /// KOVA has requested the focus for `window`. From now on `window` is to keep the focus.
    void noteFocusRequested(xcb_window_t window, Seconds now);
    /// Another program, not the window's own application, has requested the focus for `window`. That is the user's
    /// choice: `window` may take the focus even if KOVA only restored it, and keeps the focus from now on.
    void noteRequestOfAnotherProgram(xcb_window_t window);
    /// The window that counts as focused when the window manager reports `reported`. This is `reported` itself, unless
    /// KOVA has just requested the focus for another window: that window counts as focused as long as `reported` is a
    /// window that had the focus before, or kNoWindow. Some window managers report kNoWindow while the focus moves.
    xcb_window_t effectiveFocus(xcb_window_t reported, Seconds now);
    /// The focused window that the window manager reported last; kNoWindow for none.
    xcb_window_t reported() const { return reported_; }
    /// The window manager reports `active` as focused. Returns the window to focus again if `active`, or its parent
    /// `owner` (kNoWindow: there is no parent), is a window that KOVA only restores.
    std::optional<xcb_window_t> windowToRefocus(xcb_window_t active, xcb_window_t owner, Seconds now);
    /// KOVA is about to focus `window` instead of `active`, which KOVA only restores.
    void noteRefocused(xcb_window_t window, xcb_window_t active, Seconds now);
    /// The window that keeps the focus while others are restored; absent if no window is being restored.
    std::optional<xcb_window_t> kept(Seconds now) const;

  private:
    void expect(xcb_window_t window, Seconds until, Seconds now);
    void forgetRequest();
    bool isKeeping(Seconds now) const { return !restored_.empty() && now < until_; }

    xcb_window_t kept_ = kNoWindow;      // the window that keeps the focus
    xcb_window_t reported_ = kNoWindow;  // by the window manager
    xcb_window_t requested_ = kNoWindow; // the focus was requested for it, and not reported yet
    std::set<xcb_window_t> formerFocus_; // windows that had the focus, or a request for it, before `requested_`
    /// The last report names `requested_`, but comes from before KOVA's request for another window. That other window
    /// was not reported as focused yet.
    bool isReportOutdated_ = false;
    Seconds requestedUntil_{-1}; // uptime after which `requested_` counts as refused
    /// The windows that KOVA restores. The number says how often KOVA has taken the focus away from the window.
    std::map<xcb_window_t, int> restored_;
    Seconds until_{-1}; // uptime until which `kept_` keeps the focus
};

} // namespace kova::x11
