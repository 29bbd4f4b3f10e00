// Follows _NET_ACTIVE_WINDOW under a window manager, on the input connection: shortcuts and commands use the window
// that is active at that moment, and the desktop's own connection may be paused. Main thread; never waits.
#pragma once

#include "platform/x11/PendingReplies.h"

#include <deque>
#include <optional>
#include <utility>

namespace kova::x11 {

class ActiveWindowWatch {
  public:
    /// `asked` gets the requests whose replies the main thread does not wait for.
    ActiveWindowWatch(const XConnection& connection, std::deque<PendingReplies>& asked);

    /// True when the event is about the active window; then `act` has something to do.
    bool take(const xcb_generic_event_t& event);
    void ask() { isDue_ = true; }
    /// True when requests wait to be sent.
    bool act();
    /// The newest reply that was not taken yet; kNoWindow if no window is active.
    std::optional<xcb_window_t> takeNews() { return std::exchange(news_, {}); }

  private:
    const XConnection& connection_;
    std::deque<PendingReplies>& asked_;
    bool isDue_ = true;
    std::optional<xcb_window_t> news_;
};

} // namespace kova::x11
