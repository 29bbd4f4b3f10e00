// Follows _NET_ACTIVE_WINDOW under a window manager. It is heard on the hand's connection: what a shortcut or a command
// means depends on the window that has the keyboard at that moment, and the desktop's own connection may rest just
// then. Main thread; never waits.
#pragma once

#include "platform/x11/PendingReplies.h"

#include <deque>
#include <optional>
#include <utility>

namespace kova::x11 {

class ActiveWindowWatch {
  public:
    /// `asked` gets the questions that the main thread does not wait for.
    ActiveWindowWatch(const XConnection& connection, std::deque<PendingReplies>& asked);

    /// True when the event is about the active window; then `act` has something to do.
    bool take(const xcb_generic_event_t& event);
    void ask() { isDue_ = true; }
    /// True when requests wait to be sent.
    bool act();
    /// The newest answer that was not taken yet; kNoWindow when no window is active.
    std::optional<xcb_window_t> takeNews() { return std::exchange(news_, {}); }

  private:
    const XConnection& connection_;
    std::deque<PendingReplies>& asked_;
    bool isDue_ = true;
    std::optional<xcb_window_t> news_;
};

} // namespace kova::x11
