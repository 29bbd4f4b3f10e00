// Follows the pointer's main button on the whole desktop, by the raw events of the XInput extension, which arrive
// whichever program has grabbed the pointer. Raw events have no position, so it is queried, without waiting for the
// reply. The state of the button comes from the reply as well, so that swapped buttons are handled.
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

/// An event of the pointer; the point is in root coordinates.
struct PointerNews {
    PointerEvent::Kind kind;
    int x = 0;
    int y = 0;
    bool isShiftDown = false;
    bool operator==(const PointerNews&) const = default;
};

class PointerWatch {
  public:
    /// Waits for the server. `asked` gets the requests whose replies the main thread does not wait for; `readAgain`
    /// must call `look` after a pause, on the main thread.
    PointerWatch(const XConnection& connection, std::deque<PendingReplies>& asked, std::function<void()> readAgain);

    /// Selects or deselects the events.
    void follow(bool follows);
    bool isFollowing() const { return isFollowing_; }

    /// True when the event is about the pointer; then `act` has something to do.
    bool take(const xcb_generic_event_t& event);
    /// Call when a window moved. The pointer may have moved as well, since programs can move it without an event; and a
    /// window that follows the pointer late must be handled although the pointer has stopped.
    void noteMovement() {
        hasMoved_ |= isHeld_;
        hasWindowMoved_ |= isHeld_;
    }
    /// True when requests wait to be sent. Main thread.
    bool act();
    /// Selects motion events again after the pause; call `act` afterwards.
    void look();
    std::vector<PointerNews> takeNews() { return std::exchange(news_, {}); }

  private:
    void listen(bool toMovements);
    void ask();
    void answered(const xcb_query_pointer_reply_t& pointer);

    const XConnection& connection_;
    std::deque<PendingReplies>& asked_;
    std::function<void()> readAgain_;
    std::uint8_t extension_ = 0; // its major opcode; 0: the extension is not usable
    bool isFollowing_ = false;
    bool isHeld_ = false;
    bool isLookDue_ = false;
    bool hasButtonChanged_ = false;
    bool hasMoved_ = false;
    bool hasWindowMoved_ = false; // and no event was reported since
    bool mustSend_ = false;
    PointerNews last_{};
    std::vector<PointerNews> news_;
};

} // namespace kova::x11
