// Follows the pointer's main button on the whole desktop. Uses the raw events of the XInput extension, which arrive
// even if another program has grabbed the pointer. Raw events contain no position, so KOVA queries the position,
// without waiting for the reply. The state of the button comes from the reply as well, so that swapped buttons are
// handled.
//
// Motion without a button causes no wake-up: motion events are selected only while the button is down, and handled at
// most 60 times a second.
#pragma once

#include "platform/x11/PendingReplies.h"
#include "support/MainQueue.h"
#include "windowing/PointerServicing.h"

#include <deque>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kova::x11 {

/// An event of the pointer. The point is in root coordinates.
struct RootPointerEvent {
    PointerEvent::Kind kind;
    int x = 0;
    int y = 0;
    bool isShiftDown = false;
    bool operator==(const RootPointerEvent&) const = default;
};

class PointerWatch {
  public:
    /// The constructor waits for the server. Later requests are added to `pendingReplies`, since the main thread does
    /// not wait for replies. `scheduleMotionEvents` must call `resumeMotionEvents` after a pause, on the main thread.
    PointerWatch(const XConnection& connection, std::deque<PendingReplies>& pendingReplies,
                 std::function<void()> scheduleMotionEvents);

    /// Selects or deselects the events.
    void follow(bool follows);
    bool isFollowing() const { return isFollowing_; }

    /// True if the event is about the pointer; then call `act`.
    bool take(const xcb_generic_event_t& event);
    /// Call when a window moved. The pointer may have moved as well, since programs can move it without an event. And a
    /// dragged window may still move after the pointer has stopped; that movement must be handled as well.
    void noteMovement() {
        hasMoved_ |= isButtonDown_;
        hasWindowMoved_ |= isButtonDown_;
    }
    /// Handles the events. True if requests must be sent. Main thread.
    bool act();
    /// Selects motion events again after the pause; call `act` afterwards.
    void resumeMotionEvents();
    std::vector<RootPointerEvent> takeEvents() { return std::exchange(events_, {}); }

  private:
    void listen(bool toMotion);
    void queryPosition();
    void useReply(const xcb_query_pointer_reply_t& pointer);

    const XConnection& connection_;
    std::deque<PendingReplies>& pendingReplies_;
    std::function<void()> scheduleMotionEvents_;
    std::uint8_t extension_ = 0; // its major opcode; 0: the extension is not usable
    bool isFollowing_ = false;
    bool isButtonDown_ = false;
    bool isMotionPaused_ = false;
    bool hasButtonChanged_ = false;
    bool hasMoved_ = false;
    bool hasWindowMoved_ = false; // since the last reported event
    bool mustSend_ = false;
    RootPointerEvent last_{};
    std::vector<RootPointerEvent> events_;
};

} // namespace kova::x11
