// One invisible override-redirect window for each divider, its handle, with which the user drags the divider. A handle
// is directly below the lowest application window, so that it lies above the desktop window and never covers an
// application. It reacts to the main button only; other buttons reach the desktop.
//
// During a drag the server sends all pointer events to KOVA (passive grab), and KOVA grabs the keyboard to receive
// Escape. Requests are buffered, not sent.
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

/// A handle's position, in root coordinates.
struct HandlePlace {
    std::string id;
    PixelRect rect;
    LayoutAxis axis = LayoutAxis::horizontal;
    int doubleClickTolerancePixels = 3; // how far the pointer may move between the presses of a double click
    bool operator==(const HandlePlace&) const = default;
};

/// The place of the handle for a divider: the gap of the divider, widened to a thickness of at least 8 points. The
/// gap is in screen space.
HandlePlace placeOfHandle(const std::string& id, const CGRect& gapOnScreen, LayoutAxis axis, const PointSpace& space);

/// An event of a handle. The point is in root coordinates.
struct RootHandleEvent {
    DividerHandleEvent::Kind kind;
    std::string id;
    int x = 0;
    int y = 0;
};

class DividerHandleWindows {
  public:
    /// Requests are added to `pendingReplies`, since the main thread does not wait for replies.
    DividerHandleWindows(const XConnection& connection, const WindowModel& model,
                         std::deque<PendingReplies>& pendingReplies) :
        connection_(connection),
        model_(model), pendingReplies_(pendingReplies) {}

    /// Shows exactly these handles. The drag of any other handle ends.
    void show(const std::vector<HandlePlace>& places);

    /// True if the event is about the handles; then call `act`.
    bool take(const xcb_generic_event_t& event);
    /// Handles the events. True if requests must be sent. Main thread.
    bool act();
    /// True if a handle has a wrong position in the model's stacking order.
    bool isMisplaced() const;
    /// Restacks the handles if they are misplaced; call `act` afterwards.
    void keepInOrder();
    std::vector<RootHandleEvent> takeEvents() { return std::exchange(events_, {}); }

  private:
    struct Shown {
        HandlePlace place;
        xcb_window_t window;
        std::optional<std::uint32_t>
            since; // sequence number of the request that moved the window here from another divider
    };
    struct Drag {
        std::string id;
        xcb_window_t window = kNoWindow;
        xcb_timestamp_t since = 0;
        int doubleClickTolerancePixels = 0;
        int startX = 0, startY = 0;
        int x = 0, y = 0;
        bool isOver = false; // after the second press of a double click, or Escape
    };
    struct Click {
        std::string id;
        xcb_timestamp_t when = 0;
    };
    /// Creates a handle's window. The window is not mapped yet, and lies above all other windows.
    xcb_window_t create(const HandlePlace& place);
    /// Returns the sequence number of the request.
    std::uint32_t move(Shown& shown, const HandlePlace& place);
    /// Uses the window of a former handle for `place` from now on.
    void reuse(Shown shown, const HandlePlace& place);
    bool isDragged(const Shown& shown) const { return drag_ && drag_->window == shown.window; }
    xcb_cursor_t cursorFor(LayoutAxis axis);
    const Shown* find(xcb_window_t window) const;
    void pressed(const xcb_button_press_event_t& event, std::uint32_t sequence);
    void crossed(const xcb_enter_notify_event_t& event, DividerHandleEvent::Kind kind);
    void moved(int x, int y);
    void released(const xcb_button_release_event_t& event);
    void cancelDrag();
    void grabKeyboard();
    void ungrabKeyboard();
    void restack();
    struct Neighbors {
        xcb_window_t below = kNoWindow; // the highest window of the desktop
        xcb_window_t above = kNoWindow; // the lowest application window
    };
    /// The windows between which the handles belong.
    Neighbors neighbors() const;

    const XConnection& connection_;
    const WindowModel& model_;
    std::deque<PendingReplies>& pendingReplies_;
    std::vector<Shown> shown_;
    std::vector<RootHandleEvent> events_;
    std::optional<Drag> drag_;
    std::optional<Click> lastClick_;
    std::vector<xcb_keycode_t> keysPressed_; // not handled yet
    std::optional<std::vector<xcb_keycode_t>> escapeKeys_;
    bool mustGrabKeyboard_ = false;
    bool hasKeyboard_ = false;
    bool isRestacking_ = false; // restacking was requested and is not confirmed yet
    xcb_font_t cursorFont_ = XCB_NONE;
    xcb_cursor_t sidewaysCursor_ = XCB_NONE, upDownCursor_ = XCB_NONE;
    bool mustSend_ = false;
};

} // namespace kova::x11
