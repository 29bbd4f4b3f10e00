// The windows by which dividers can be taken hold of: one for each, without a picture of its own, outside the window
// manager's care, and directly below the lowest window that a user works with, so that it lies above the desktop and
// never over a window. Only the main button is theirs; what other buttons do there is the desktop's affair.
//
// While one is held, the pointer is the server's to follow (a passive grab), and the keyboard is ours for Escape.
// Requests are buffered, not sent.
#pragma once

#include "platform/x11/PendingReplies.h"
#include "platform/x11/PointSpace.h"
#include "platform/x11/WindowModel.h"
#include "windowing/PointerServicing.h"

#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kova::x11 {

/// A handle's place, in root coordinates.
struct HandlePlace {
    std::string id;
    PixelRect rect;
    LayoutAxis axis = LayoutAxis::horizontal;
    int restingPixels = 3; // how far the hand may move from one press to the next of a double click
    bool operator==(const HandlePlace&) const = default;
};

/// The place of a gap's handle: the gap (screen space), but at least 8 points across the axis.
HandlePlace placeOfHandle(const std::string& id, const CGRect& gapOnScreen, LayoutAxis axis, const PointSpace& space);

/// What the hand did with a handle; the point is in root coordinates.
struct HandleNews {
    DividerHandleEvent::Kind kind;
    std::string id;
    int x = 0;
    int y = 0;
};

class DividerHandleWindows {
  public:
    /// `asked` gets the questions that the main thread does not wait for.
    DividerHandleWindows(const XConnection& connection, const WindowModel& model, std::deque<PendingReplies>& asked) :
        connection_(connection), model_(model), asked_(asked) {}

    /// Exactly these are shown. One that is held and not among them is torn out of the hand.
    void show(const std::vector<HandlePlace>& places);

    /// True when the event is about the handles; then `act` has something to do.
    bool take(const xcb_generic_event_t& event);
    /// True when requests wait to be sent. Main thread.
    bool act();
    /// Whether the handles are no longer where they belong in the stack, as far as the model knows it.
    bool isMisplaced() const;
    /// Puts them there; `act` follows.
    void keepInOrder();
    std::vector<HandleNews> takeNews() { return std::exchange(news_, {}); }

  private:
    struct Shown {
        HandlePlace place;
        xcb_window_t window;
        std::optional<std::uint32_t> since; // the request by which it was taken over from another divider
    };
    struct Held {
        std::string id;
        xcb_window_t window = kNoWindow;
        xcb_timestamp_t since = 0;
        int restingPixels = 0;
        int startX = 0, startY = 0;
        int x = 0, y = 0;
        bool isUsedUp = false; // the second press of a double click, or Escape has let go
    };
    struct Click {
        std::string id;
        xcb_timestamp_t when = 0;
    };
    /// Not mapped yet, and on top of all windows.
    xcb_window_t create(const HandlePlace& place);
    /// Gives the number of the request.
    std::uint32_t move(Shown& shown, const HandlePlace& place);
    /// The window is this divider's from now on.
    void reuse(Shown shown, const HandlePlace& place);
    bool isHeld(const Shown& shown) const { return held_ && held_->window == shown.window; }
    xcb_cursor_t cursorFor(LayoutAxis axis);
    const Shown* find(xcb_window_t window) const;
    void pressed(const xcb_button_press_event_t& event, std::uint32_t sequence);
    void crossed(const xcb_enter_notify_event_t& event, DividerHandleEvent::Kind kind);
    void moved(int x, int y);
    void released(const xcb_button_release_event_t& event);
    void letGoByEscape();
    void grabKeyboard();
    void ungrabKeyboard();
    void restack();
    struct Neighbours {
        xcb_window_t below = kNoWindow; // the highest that shows the desktop
        xcb_window_t above = kNoWindow; // the lowest of those that a user works with
    };
    /// Between which windows the handles belong.
    Neighbours neighbours() const;

    const XConnection& connection_;
    const WindowModel& model_;
    std::deque<PendingReplies>& asked_;
    std::vector<Shown> shown_;
    std::vector<HandleNews> news_;
    std::optional<Held> held_;
    std::optional<Click> lastClick_;
    std::vector<xcb_keycode_t> keysPressed_; // not looked at yet
    std::optional<std::vector<xcb_keycode_t>> escapeKeys_;
    bool mustGrabKeyboard_ = false;
    bool hasKeyboard_ = false;
    bool isRestacking_ = false; // asked for, and not done yet
    xcb_font_t cursorFont_ = XCB_NONE;
    xcb_cursor_t sidewaysCursor_ = XCB_NONE, upDownCursor_ = XCB_NONE;
    bool mustSend_ = false;
};

} // namespace kova::x11
