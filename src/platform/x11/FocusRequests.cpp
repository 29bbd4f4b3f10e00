#include "platform/x11/FocusRequests.h"

#include <memory>

namespace kova::x11 {

void queryFocus(PendingReplies& pending, const XConnection& connection, WindowModel& model) {
    const auto focus = std::make_shared<xcb_window_t>(kNoWindow);
    const auto cookie = xcb_get_input_focus(connection.get());
    pending.add(cookie, [focus](const void* reply) {
        const auto* input = static_cast<const xcb_get_input_focus_reply_t*>(reply);
        if (input) *focus = input->focus;
    });
    pending.add(xcb_query_pointer(connection.get(), connection.root()),
                [&model, focus, request = cookie.sequence](const void* reply) {
                    const auto* pointer = static_cast<const xcb_query_pointer_reply_t*>(reply);
                    if (pointer) model.takeFocus(*focus, pointer->child, request);
                });
}

} // namespace kova::x11
