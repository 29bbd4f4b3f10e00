// Cuts applications out of the overlay's shape where the stacking order does not keep the overlay below them.
#include "ui/x11/X11Platform.h"
#include "ui/x11/X11Requests.h"

#include <string_view>
#include <vector>

namespace kova::ui {

void shapeWindow(xcb_connection_t* connection, WindowNumber window, xcb_shape_kind_t kind, const QRegion& region) {
    std::vector<xcb_rectangle_t> rectangles;
    for (const QRect& rect : region) {
        rectangles.push_back({static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                              static_cast<std::uint16_t>(rect.width()), static_cast<std::uint16_t>(rect.height())});
    }
    xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, static_cast<xcb_shape_kind_t>(kind), XCB_CLIP_ORDERING_UNSORTED,
                         window, 0, 0, static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

/// Whether the window manager is one whose compositor draws unmanaged windows in a layer above all others.
bool X11Platform::drawsUnmanagedWindowsOnTop() const {
    const auto check = owned(xcb_get_property_reply(
        watch_, xcb_get_property(watch_, 0, screen_->root, atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW, 0, 1),
        nullptr));
    if (!check || xcb_get_property_value_length(check.get()) < 4) return false;
    const auto manager = *static_cast<const xcb_window_t*>(xcb_get_property_value(check.get()));
    const auto name = owned(xcb_get_property_reply(
        watch_, xcb_get_property(watch_, 0, manager, atom("_NET_WM_NAME"), XCB_GET_PROPERTY_TYPE_ANY, 0, 16), nullptr));
    if (!name) return false;
    const std::string_view text(static_cast<const char*>(xcb_get_property_value(name.get())),
                                static_cast<std::size_t>(xcb_get_property_value_length(name.get())));
    return text == "KWin" || text == "GNOME Shell" || text.starts_with("Mutter");
}

/// The part of the frame that is drawn: the client's area plus the visible borders that the window manager announces,
/// minus the shadow that an application draws itself.
QRect X11Platform::drawnArea(WindowNumber window, const QRect& frame) const {
    const auto known = clients_.find(window);
    const WindowNumber client = known != clients_.end() ? known->second : clientOf(window, 2);
    if (client == 0) return frame;
    const auto extents = [&](xcb_atom_t name) {
        return xcb_get_property(watch_, 0, client, name, XCB_ATOM_CARDINAL, 0, 4);
    };
    const auto marginsOf = [&](xcb_get_property_cookie_t cookie) {
        const auto reply = owned(xcb_get_property_reply(watch_, cookie, nullptr));
        if (!reply || xcb_get_property_value_length(reply.get()) < 16) return QMargins();
        const auto* sides = static_cast<const std::int32_t*>(xcb_get_property_value(reply.get()));
        return QMargins(sides[0], sides[2], sides[1], sides[3]); // the property's order is left, right, top, bottom
    };
    const auto visible = extents(frameExtents_), shadow = extents(shadowExtents_);
    const auto size = xcb_get_geometry(watch_, client);
    const auto origin = owned(xcb_translate_coordinates_reply(
        watch_, xcb_translate_coordinates(watch_, client, screen_->root, 0, 0), nullptr));
    const QMargins outside = marginsOf(visible), drawnShadow = marginsOf(shadow);
    const auto inside = owned(xcb_get_geometry_reply(watch_, size, nullptr));
    if (!origin || !inside) return frame;
    return QRect(origin->dst_x, origin->dst_y, inside->width, inside->height)
        .marginsAdded(outside)
        .marginsRemoved(drawnShadow);
}

void X11Platform::readArea(WindowNumber window) {
    if (!isCutOut_ || order_.kindOf(window) != RootChild::application) return areas_.removed(window);
    const auto at = owned(xcb_get_geometry_reply(watch_, xcb_get_geometry(watch_, window), nullptr));
    if (!at) return areas_.removed(window);
    const QRect frame(at->x, at->y, at->width + 2 * at->border_width, at->height + 2 * at->border_width);
    areas_.shown(window, frame, drawnArea(window, frame));
}

void X11Platform::cutOutApplications() {
    const QRegion covered = isCutOut_ ? areas_.covered(order_) : QRegion();
    if (covered == covered_) return;
    covered_ = covered;
    for (auto& [window, picture] : pictures_) applyShape(*window, picture);
    xcb_flush(connection_);
}

/// Updates the shapes of the windows below a layer after a change in this layer.
void X11Platform::reshapeLowerWindows(Layer layer) {
    if (!isCutOut_ || !isBelowApplications(layer)) return;
    for (auto& [window, picture] : pictures_) {
        if (window->layer() < layer) applyShape(*window, picture);
    }
}

/// Applies the requested shape, minus the applications and the higher windows of the overlay where they must be cut
/// out. Mutter also ignores the order among the overlay's windows: it draws the window on top that was shown last.
void X11Platform::applyShape(OverlayWindow& window, Picture& picture) {
    QRegion region = picture.visible;
    if (isBelowApplications(window.layer())) region -= covered_.translated(-window.position());
    for (const auto& [other, shown] : pictures_) {
        const bool isAbove = isCutOut_ && other->layer() > window.layer() && isBelowApplications(other->layer());
        if (isAbove && !shown.isConcealed) region -= shown.visible.translated(other->position() - window.position());
    }
    if (picture.isShaped && region == picture.shaped) return;
    picture.shaped = region;
    picture.isShaped = true;
    shapeWindow(connection_, static_cast<WindowNumber>(window.winId()), XCB_SHAPE_SK_BOUNDING, region);
}

} // namespace kova::ui
