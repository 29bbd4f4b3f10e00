#include "platform/x11/X11ActiveWindowWatch.h"

#include "platform/x11/ClientWindow.h"

namespace kova::x11 {

ActiveWindowWatch::ActiveWindowWatch(const XConnection& connection, std::deque<PendingReplies>& pendingReplies) :
    connection_(connection), pendingReplies_(pendingReplies) {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_EVENT_MASK, &mask);
}

bool ActiveWindowWatch::take(const xcb_generic_event_t& event) {
    if (event.response_type != XCB_PROPERTY_NOTIFY) return false;
    const auto& changed = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    const bool isActiveWindow =
        changed.window == connection_.root() && changed.atom == connection_.atoms()[Atom::netActiveWindow];
    isDue_ |= isActiveWindow;
    return isActiveWindow;
}

bool ActiveWindowWatch::act() {
    if (!std::exchange(isDue_, false)) return false;
    pendingReplies_.emplace_back().add(
        connection_.requestProperty(connection_.root(), connection_.atoms()[Atom::netActiveWindow], 1),
        [this](const void* reply) {
            const auto windows =
                numbersIn(viewOf(static_cast<const xcb_get_property_reply_t*>(reply)), XCB_ATOM_WINDOW);
            newest_ = windows.empty() ? kNoWindow : windows[0];
        });
    return true;
}

} // namespace kova::x11
