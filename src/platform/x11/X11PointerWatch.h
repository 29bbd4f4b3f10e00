// Follows the pointer's main button wherever on the desktop it is pressed, by the raw events of the XInput extension,
// which come whichever program has grabbed the pointer. They tell that something happened but not where: that is asked,
// and the main thread does not wait for the answer. Whether the button is down is taken from the answer, too, so that
// buttons that the user has swapped are the right ones.
//
// A mouse that is moved without a button causes no wake-up: movements are listened to only while the button is held,
// and then at most 60 times a second.
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

/// What the pointer did; the point is in root coordinates.
struct PointerNews {
    PointerEvent::Kind kind;
    int x = 0;
    int y = 0;
    bool isShiftDown = false;
    bool operator==(const PointerNews&) const = default;
};

class PointerWatch {
  public:
    /// Waits for the server. `asked` gets the questions that the main thread does not wait for; `lookAgain` calls
    /// `look` a little later, on the main thread.
    PointerWatch(const XConnection& connection, std::deque<PendingReplies>& asked, std::function<void()> lookAgain);

    /// Begins to listen, or ceases to.
    void follow(bool follows);
    bool isFollowing() const { return isFollowing_; }

    /// True when the event is about the pointer; then `act` has something to do.
    bool take(const xcb_generic_event_t& event);
    /// A window moved: the pointer may have, too. Not every movement is told, some programs move the pointer
    /// themselves. And a window that follows the hand late must be looked at though the hand rests by then.
    void noteMovement() {
        hasMoved_ |= isHeld_;
        hasWindowMoved_ |= isHeld_;
    }
    /// True when requests wait to be sent. Main thread.
    bool act();
    /// Once the time has come to listen to movements again; `act` follows.
    void look();
    std::vector<PointerNews> takeNews() { return std::exchange(news_, {}); }

  private:
    void listen(bool toMovements);
    void ask();
    void answered(const xcb_query_pointer_reply_t& pointer);

    const XConnection& connection_;
    std::deque<PendingReplies>& asked_;
    std::function<void()> lookAgain_;
    std::uint8_t extension_ = 0; // its major opcode; 0: the server has none of use
    bool isFollowing_ = false;
    bool isHeld_ = false;
    bool isLookDue_ = false;
    bool hasButtonChanged_ = false;
    bool hasMoved_ = false;
    bool hasWindowMoved_ = false; // and nothing was told since
    bool mustSend_ = false;
    PointerNews last_{};
    std::vector<PointerNews> news_;
};

} // namespace kova::x11
