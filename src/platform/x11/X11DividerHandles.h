// One invisible override-redirect window for each divider, with which it is dragged. It is directly below the lowest
// application window, so that it lies above the desktop window and never over an application. It reacts to the main
// button only; other buttons reach the desktop.
//
// During a drag the server sends all pointer events (passive grab), and the keyboard is grabbed for Escape. Requests
// are buffered, not sent.
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
    int restingPixels = 3; // how far the pointer may move between the presses of a double click
    bool operator==(const HandlePlace&) const = default;
};

/// The handle of a gap (screen space): the gap itself, but at least 8 points across the axis.
HandlePlace placeOfHandle(const std::string& id, const CGRect& gapOnScreen, LayoutAxis axis, const PointSpace& space);

/// An event of a handle; the point is in root coordinates.
struct HandleNews {
    DividerHandleEvent::Kind kind;
    std::string id;
    int x = 0;
    int y = 0;
};

class DividerHandleWindows {
  public:
    /// `asked` gets the requests whose replies the main thread does not wait for.
    DividerHandleWindows(const XConnection& connection, const WindowModel& model, std::deque<PendingReplies>& asked) :
        connection_(connection), model_(model), asked_(asked) {}

    /// Shows exactly these. The drag of a handle that is not among them ends.
    void show(const std::vector<HandlePlace>& places);

    /// True when the event is about the handles; then `act` has something to do.
    bool take(const xcb_generic_event_t& event);
    /// True when requests wait to be sent. Main thread.
    bool act();
    /// Whether the handles have a wrong position in the stacking order, by the model.
    bool isMisplaced() const;
    /// Restacks them; call `act` afterwards.
    void keepInOrder();
    std::vector<HandleNews> takeNews() { return std::exchange(news_, {}); }

  private:
    struct Shown {
        HandlePlace place;
        xcb_window_t window;
        std::optional<std::uint32_t> since; // the request that moved the window here from another divider
    };
    struct Held {
        std::string id;
        xcb_window_t window = kNoWindow;
        xcb_timestamp_t since = 0;
        int restingPixels = 0;
        int startX = 0, startY = 0;
        int x = 0, y = 0;
        bool isUsedUp = false; // after the second press of a double click, or Escape
    };
    struct Click {
        std::string id;
        xcb_timestamp_t when = 0;
    };
    /// Not mapped yet, and on top of all windows.
    xcb_window_t create(const HandlePlace& place);
    /// Returns the sequence number of the request.
    std::uint32_t move(Shown& shown, const HandlePlace& place);
    /// Uses the window for this divider from now on.
    void reuse(Shown shown, const HandlePlace& place);
    bool isHeld(const Shown& shown) const { return held_ && held_->window == shown.window; }
    xcb_cursor_t cursorFor(LayoutAxis axis);
    const Shown* find(xcb_window_t window) const;
    void pressed(const xcb_button_press_event_t& event, std::uint32_t sequence);
    void crossed(const xcb_enter_notify_event_t& event, DividerHandleEvent::Kind kind);
    void moved(int x, int y);
    void released(const xcb_button_release_event_t& event);
    void cancelByEscape();
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
    std::deque<PendingReplies>& asked_;
    std::vector<Shown> shown_;
    std::vector<HandleNews> news_;
    std::optional<Held> held_;
    std::optional<Click> lastClick_;
    std::vector<xcb_keycode_t> keysPressed_; // not handled yet
    std::optional<std::vector<xcb_keycode_t>> escapeKeys_;
    bool mustGrabKeyboard_ = false;
    bool hasKeyboard_ = false;
    bool isRestacking_ = false; // requested, not confirmed yet
    xcb_font_t cursorFont_ = XCB_NONE;
    xcb_cursor_t sidewaysCursor_ = XCB_NONE, upDownCursor_ = XCB_NONE;
    bool mustSend_ = false;
};

} // namespace kova::x11
