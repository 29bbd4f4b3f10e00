// Leaves the keyboard where it is while windows come back to the screen: most window managers give it to a window that
// is mapped, and some can be asked to bring a window back only by giving it the keyboard.
#pragma once

#include "platform/x11/XConnection.h"
#include "support/MainQueue.h"

#include <optional>
#include <set>

namespace kova::x11 {

class KeyboardKeeper {
  public:
    /// `window` is asked to come back while `active` has the keyboard (kNoWindow: none has). Times are uptimes.
    void noteReturning(xcb_window_t window, xcb_window_t active, Seconds now);
    /// KOVA itself gives the keyboard to the window, which is to keep it.
    void noteGiven(xcb_window_t window);
    /// The window manager tells that `active` has the keyboard, a dialog of `owner` or kNoWindow. The window to give it
    /// back to, when a window that was only to come back has taken it.
    std::optional<xcb_window_t> toGiveBack(xcb_window_t active, xcb_window_t owner, Seconds now);
    /// The window that has or is to have the keyboard while others come back; absent when none do.
    std::optional<xcb_window_t> kept(Seconds now) const;

  private:
    bool isKeeping(Seconds now) const { return !returning_.empty() && now < until_; }

    xcb_window_t kept_ = kNoWindow;
    std::set<xcb_window_t> returning_;
    Seconds until_{-1};
    int timesGivenBack_ = 0;
};

} // namespace kova::x11
