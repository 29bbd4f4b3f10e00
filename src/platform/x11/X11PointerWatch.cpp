#include "platform/x11/X11PointerWatch.h"

#include <xcb/xinput.h>

namespace kova::x11 {

namespace {

/// Higher buttons are the wheel and the thumb buttons.
constexpr std::uint32_t kLastPointerButton = 3;

/// Since this version raw events arrive even if another program has grabbed the pointer.
constexpr std::uint16_t kMajorVersion = 2, kMinorVersion = 1;

std::uint8_t extensionIn(const XConnection& connection) {
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_input_id);
    if (!extension || !extension->present) return 0;
    const auto cookie = xcb_input_xi_query_version(connection.get(), kMajorVersion, kMinorVersion);
    const XReply<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(connection.get(), cookie, nullptr));
    const bool isNewEnough =
        version && (version->major_version > kMajorVersion ||
                    (version->major_version == kMajorVersion && version->minor_version >= kMinorVersion));
    return isNewEnough ? extension->major_opcode : 0;
}

} // namespace

PointerWatch::PointerWatch(const XConnection& connection, std::deque<PendingReplies>& pendingReplies,
                           std::function<void()> scheduleMotionEvents) :
    connection_(connection),
    pendingReplies_(pendingReplies), scheduleMotionEvents_(std::move(scheduleMotionEvents)),
    extension_(extensionIn(connection)) {}

void PointerWatch::follow(bool follows) {
    if (extension_ == 0 || follows == isFollowing_) return;
    isFollowing_ = follows;
    isButtonDown_ = hasButtonChanged_ = hasMoved_ = hasWindowMoved_ = false;
    listen(false);
}

void PointerWatch::listen(bool toMotion) {
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, 0};
    if (isFollowing_) {
        selection.mask = XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;
    }
    if (isFollowing_ && toMotion) selection.mask |= XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
    mustSend_ = true;
    xcb_input_xi_select_events(connection_.get(), connection_.root(), 1, &selection.head);
}

bool PointerWatch::take(const xcb_generic_event_t& event) {
    if (extension_ == 0 || event.response_type != XCB_GE_GENERIC) return false;
    const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    if (raw.extension != extension_) return false;
    switch (raw.event_type) {
    case XCB_INPUT_RAW_BUTTON_PRESS:
    case XCB_INPUT_RAW_BUTTON_RELEASE:
        hasButtonChanged_ |= isFollowing_ && raw.detail <= kLastPointerButton;
        return true;
    case XCB_INPUT_RAW_MOTION:
        hasMoved_ |= isFollowing_;
        return true;
    default:
        return false;
    }
}

bool PointerWatch::act() {
    const bool hasMoved = std::exchange(hasMoved_, false) && isButtonDown_ && !isMotionPaused_;
    if (std::exchange(hasButtonChanged_, false) || hasMoved) queryPosition();
    if (hasMoved) {
        // The reply has the present position; motion events are selected again after the pause.
        isMotionPaused_ = true;
        listen(false);
        scheduleMotionEvents_();
    }
    return std::exchange(mustSend_, false);
}

void PointerWatch::resumeMotionEvents() {
    isMotionPaused_ = false;
    if (!isButtonDown_) return;
    listen(true);
    queryPosition();
}

void PointerWatch::queryPosition() {
    mustSend_ = true;
    pendingReplies_.emplace_back().add(xcb_query_pointer(connection_.get(), connection_.root()),
                                       [this](const void* reply) {
                                           if (reply && isFollowing_)
                                               useReply(*static_cast<const xcb_query_pointer_reply_t*>(reply));
                                       });
}

void PointerWatch::useReply(const xcb_query_pointer_reply_t& pointer) {
    const bool isDown = pointer.mask & XCB_KEY_BUT_MASK_BUTTON_1;
    const bool wasDown = std::exchange(isButtonDown_, isDown);
    if (!isDown && !wasDown) return;
    const auto kind = !isDown    ? PointerEvent::Kind::released
                      : !wasDown ? PointerEvent::Kind::pressed
                                 : PointerEvent::Kind::moved;
    const RootPointerEvent now{kind, pointer.root_x, pointer.root_y, (pointer.mask & XCB_KEY_BUT_MASK_SHIFT) != 0};
    // After a press, motion events are selected first, and then the position is queried again. Otherwise a motion
    // between the first query and the selection would be lost.
    if (kind == PointerEvent::Kind::pressed) {
        listen(true);
        queryPosition();
    } else if (kind == PointerEvent::Kind::released) {
        listen(false);
    } else if (now.x == last_.x && now.y == last_.y && !hasWindowMoved_) {
        return;
    }
    hasWindowMoved_ = false;
    last_ = now;
    events_.push_back(now);
}

} // namespace kova::x11
