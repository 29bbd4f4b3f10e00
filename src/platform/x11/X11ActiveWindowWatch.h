// Follows _NET_ACTIVE_WINDOW under a window manager. Uses the input connection, since the desktop's own connection may
// be paused, and shortcuts and commands need the window that is active at that moment. Main thread; never waits.
#pragma once

#include "platform/x11/PendingReplies.h"

#include <deque>
#include <optional>
#include <utility>

namespace kova::x11 {

class ActiveWindowWatch {
  public:
    /// Requests are added to `pendingReplies`, since the main thread does not wait for replies.
    ActiveWindowWatch(const XConnection& connection, std::deque<PendingReplies>& pendingReplies);

    /// True if the event is about the active window; then call `act`.
    bool take(const xcb_generic_event_t& event);
    /// Makes the next `act` query the active window.
    void scheduleQuery() { isDue_ = true; }
    /// Buffers the query if it is due. True if requests must be sent.
    bool act();
    /// The newest reply, unless it was taken already; kNoWindow if no window is active.
    std::optional<xcb_window_t> takeNewest() { return std::exchange(newest_, {}); }

  private:
    const XConnection& connection_;
    std::deque<PendingReplies>& pendingReplies_;
    bool isDue_ = true;
    std::optional<xcb_window_t> newest_; // not taken yet
};

} // namespace kova::x11
