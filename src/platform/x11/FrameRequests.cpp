#include "platform/x11/FrameRequests.h"

#include <memory>

namespace kova::x11 {

void requestFrame(PendingReplies& batch, const XConnection& connection, WindowModel& model,
                  const ClientWindow& client) {
    const xcb_window_t window = client.window, frame = client.topLevel;
    const auto clientRect = std::make_shared<PixelRect>();
    const auto size = xcb_get_geometry(connection.get(), window);
    batch.add(size, [clientRect](const void* reply) {
        const auto* geometry = static_cast<const xcb_get_geometry_reply_t*>(reply);
        if (geometry) *clientRect = {0, 0, geometry->width, geometry->height};
    });
    batch.add(xcb_translate_coordinates(connection.get(), window, frame, 0, 0), [clientRect](const void* reply) {
        const auto* translated = static_cast<const xcb_translate_coordinates_reply_t*>(reply);
        if (!translated) return;
        clientRect->x = translated->dst_x;
        clientRect->y = translated->dst_y;
    });
    const auto take = [&model, window, frame, clientRect, request = size.sequence](const void* reply) {
        const auto* geometry = static_cast<const xcb_get_geometry_reply_t*>(reply);
        ClientWindow* known = model.client(window);
        if (!geometry || !known || known->topLevel != frame || clientRect->width == 0) return;
        const int border = geometry->border_width;
        const PixelRect inner = {clientRect->x + border, clientRect->y + border, clientRect->width, clientRect->height};
        const PixelRect outer = {0, 0, geometry->width + 2 * border, geometry->height + 2 * border};
        model.takeMeasuredFrame(*known, {inner.x, outer.width - inner.right(), inner.y, outer.height - inner.bottom()},
                                request);
    };
    batch.add(xcb_get_geometry(connection.get(), frame), take);
}

} // namespace kova::x11
