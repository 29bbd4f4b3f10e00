// Keeps the focus while windows are restored: most window managers focus a window that is mapped, and some restore a
// window only by focusing it.
#pragma once

#include "platform/x11/XConnection.h"
#include "support/MainQueue.h"

#include <map>
#include <optional>
#include <set>

namespace kova::x11 {

/// A window that KOVA focuses is reported as focused within this time, or was refused the focus.
inline constexpr Seconds kTimeToFocus{0.5};

class KeyboardKeeper {
  public:
    /// `window` is being restored while `active` has the focus (kNoWindow: none has). Times are uptimes.
    void noteReturning(xcb_window_t window, xcb_window_t active, Seconds now);
    /// KOVA itself focuses the window, which is to keep the focus.
    void noteGiven(xcb_window_t window, Seconds now);
    /// The window to count as focused when the window manager reports `reported`: the window that KOVA has just
    /// focused, while none is reported (some managers do that while the focus goes from one window to another) or a
    /// window that it takes the focus from.
    xcb_window_t focused(xcb_window_t reported, Seconds now);
    /// What the window manager reported last; kNoWindow for none.
    xcb_window_t reported() const { return reported_; }
    /// The window manager reports `active` as focused, a dialog of `owner` or kNoWindow. Returns the window to focus
    /// again if a window took the focus that was only to be restored.
    std::optional<xcb_window_t> toGiveBack(xcb_window_t active, xcb_window_t owner, Seconds now);
    /// `window` is about to be focused in place of `active`, which was only to be restored.
    void noteGivenBack(xcb_window_t window, xcb_window_t active, Seconds now);
    /// The window whose focus is kept while others are restored; absent when none are.
    std::optional<xcb_window_t> kept(Seconds now) const;

  private:
    void expect(xcb_window_t window, Seconds until, Seconds now);
    void forgetGiven();
    bool isKeeping(Seconds now) const { return !returning_.empty() && now < until_; }

    xcb_window_t kept_ = kNoWindow;
    xcb_window_t reported_ = kNoWindow; // by the window manager
    xcb_window_t given_ = kNoWindow;    // not reported as focused yet
    std::set<xcb_window_t> former_;     // windows that `given_` takes the focus from
    bool isReportOld_ = false; // `given_` was reported before another window was focused that is not reported yet
    Seconds givenUntil_{-1};
    std::map<xcb_window_t, int> returning_; // and how often the focus was taken from it
    Seconds until_{-1};
};

} // namespace kova::x11
