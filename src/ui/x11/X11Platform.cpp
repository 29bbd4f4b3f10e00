#include "ui/x11/X11Platform.h"

#include "ui/x11/X11Requests.h"

#include <QCoreApplication>
#include <QImage>

#include <xcb/randr.h>
#include <xcb/shape.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

namespace kova::ui {

namespace {

/// How long the order is left to a window manager that does not accept it. Metacity never does.
constexpr std::chrono::minutes kContestPause{1};
/// Applications stay cut out until the order was kept for this time.
constexpr std::chrono::seconds kContestCheck{1};

WindowNumber numberOf(const OverlayWindow& window) {
    return static_cast<WindowNumber>(window.winId());
}

} // namespace

std::unique_ptr<X11Platform> X11Platform::create(xcb_connection_t* connection) {
    int screen = 0;
    xcb_connection_t* const watch = xcb_connect(nullptr, &screen);
    if (xcb_connection_has_error(watch) != 0) {
        xcb_disconnect(watch);
        return nullptr;
    }
    return std::unique_ptr<X11Platform>(new X11Platform(connection, watch, screen));
}

X11Platform::X11Platform(xcb_connection_t* connection, xcb_connection_t* watch, int screen) :
    connection_(connection), watch_(watch), windowType_(atom("_NET_WM_WINDOW_TYPE")),
    typeDesktop_(atom("_NET_WM_WINDOW_TYPE_DESKTOP")), typeNotification_(atom("_NET_WM_WINDOW_TYPE_NOTIFICATION")),
    wmState_(atom("WM_STATE")), frameExtents_(atom("_NET_FRAME_EXTENTS")), shadowExtents_(atom("_GTK_FRAME_EXTENTS")),
    compositorSelection_(atom("_NET_WM_CM_S" + std::to_string(screen))),
    traySelection_(atom("_NET_SYSTEM_TRAY_S" + std::to_string(screen))) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(watch_));
    for (int i = 0; i < screen; ++i) xcb_screen_next(&screens);
    screen_ = screens.data;
    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(watch_, screen_->root, XCB_CW_EVENT_MASK, &mask);
    watchSelections();
    watchMonitors();
    readOrder();
    for (QTimer* timer : {&contestPause_, &contestCheck_}) timer->setSingleShot(true);
    QObject::connect(&contestPause_, &QTimer::timeout, &contestPause_, [this] {
        contestCheck_.start(kContestCheck);
        keepOrder();
    });
    QObject::connect(&contestCheck_, &QTimer::timeout, &contestCheck_, [this] { endContestIfOrderIsKept(); });
    readable_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(watch_), QSocketNotifier::Read);
    QObject::connect(readable_.get(), &QSocketNotifier::activated, readable_.get(), [this] { readEvents(); });
    // While replies were read, events may have been queued, for which the socket does not become readable again.
    readEvents();
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11Platform::~X11Platform() {
    QCoreApplication::instance()->removeNativeEventFilter(this);
    readable_.reset();
    xcb_disconnect(watch_);
}

/// Hides moves of the overlay's windows from the toolkit, which would query the new position and wait for a server that
/// is busy with moving applications. Only kova-ui moves these windows, so the position is known.
bool X11Platform::nativeEventFilter(const QByteArray& kind, void* event, qintptr*) {
    if (kind != "xcb_generic_event_t") return false;
    const auto* notify = static_cast<const xcb_configure_notify_event_t*>(event);
    return (notify->response_type & 0x7f) == XCB_CONFIGURE_NOTIFY && order_.kindOf(notify->window) == RootChild::ours;
}

std::uint32_t X11Platform::atom(std::string_view name) const {
    const auto reply = owned(xcb_intern_atom_reply(
        watch_, xcb_intern_atom(watch_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    return reply ? reply->atom : static_cast<std::uint32_t>(XCB_NONE);
}

void X11Platform::watchSelections() {
    if (const auto* fixes = xcb_get_extension_data(watch_, &xcb_xfixes_id); fixes && fixes->present) {
        firstXFixesEvent_ = fixes->first_event;
        const auto version =
            owned(xcb_xfixes_query_version_reply(watch_, xcb_xfixes_query_version(watch_, 5, 0), nullptr));
        for (const auto selection : {compositorSelection_, traySelection_}) {
            xcb_xfixes_select_selection_input(watch_, screen_->root, selection,
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                                  XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                                  XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
        }
    }
    readSelections();
}

void X11Platform::readSelections() {
    const bool wasComposited = std::exchange(isComposited_, hasOwner(compositorSelection_));
    updateCutOut();
    const bool hadTray = std::exchange(hasTray_, hasOwner(traySelection_));
    if (wasComposited != isComposited_ && compositingChanged_) compositingChanged_();
    if (hadTray != hasTray_ && trayChanged_) trayChanged_(hasTray_);
}

void X11Platform::endContestIfOrderIsKept() {
    if (!order_.placeFor(windowsBelowApplications()).isKept) return contestCheck_.start(kContestCheck);
    isContested_ = false;
    updateCutOut();
}

void X11Platform::updateCutOut() {
    const bool isCutOut = isContested_ || (isComposited_ && drawsUnmanagedWindowsOnTop());
    if (std::exchange(isCutOut_, isCutOut) == isCutOut) return;
    areas_.clear();
    for (const WindowNumber window : order_.bottomFirst()) readArea(window);
    covered_ = isCutOut_ ? areas_.covered(order_) : QRegion();
    for (auto& [window, picture] : pictures_) applyShape(*window, picture);
    xcb_flush(connection_);
}

bool X11Platform::hasOwner(std::uint32_t selection) const {
    const auto reply =
        owned(xcb_get_selection_owner_reply(watch_, xcb_get_selection_owner(watch_, selection), nullptr));
    return reply && reply->owner != XCB_NONE;
}

void X11Platform::watchMonitors() {
    const auto* randr = xcb_get_extension_data(watch_, &xcb_randr_id);
    if (!randr || !randr->present) return;
    const auto version = owned(xcb_randr_query_version_reply(watch_, xcb_randr_query_version(watch_, 1, 5), nullptr));
    // The server supports monitors since RandR 1.5.
    if (!version || std::pair(version->major_version, version->minor_version) < std::pair(1U, 5U)) return;
    firstRandrEvent_ = randr->first_event;
    xcb_randr_select_input(watch_, screen_->root,
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    readMonitors();
}

/// Finds the first display by the agent's rule: the primary monitor, else the first monitor with an area. While no
/// monitor has an area, the last position is kept.
void X11Platform::readMonitors() {
    const auto monitors =
        owned(xcb_randr_get_monitors_reply(watch_, xcb_randr_get_monitors(watch_, screen_->root, 1), nullptr));
    if (!monitors) return;
    std::optional<QPoint> first;
    bool isPrimary = false;
    auto each = xcb_randr_get_monitors_monitors_iterator(monitors.get());
    for (; each.rem > 0; xcb_randr_monitor_info_next(&each)) {
        const xcb_randr_monitor_info_t& monitor = *each.data;
        if (monitor.width == 0 || monitor.height == 0) continue;
        if (first && (isPrimary || monitor.primary == 0)) continue;
        first = QPoint(monitor.x, monitor.y);
        isPrimary = monitor.primary != 0;
    }
    if (first && std::exchange(firstDisplay_, *first) != *first && firstDisplayMoved_) firstDisplayMoved_();
}

void X11Platform::readOrder() {
    const auto tree = owned(xcb_query_tree_reply(watch_, xcb_query_tree(watch_, screen_->root), nullptr));
    if (!tree) return;
    const auto* children = xcb_query_tree_children(tree.get());
    order_.reset({children, children + xcb_query_tree_children_length(tree.get())});
    for (const WindowNumber window : std::vector(order_.bottomFirst())) classify(window);
    cutOutApplications();
}

/// The client that the window manager manages: the window itself, or a window within this frame; 0 if there is none.
WindowNumber X11Platform::clientOf(WindowNumber window, int depth) const {
    const auto state = owned(xcb_get_property_reply(
        watch_, xcb_get_property(watch_, 0, window, wmState_, XCB_GET_PROPERTY_TYPE_ANY, 0, 0), nullptr));
    if (state && state->type != XCB_NONE) return window;
    if (depth == 0) return 0;
    const auto tree = owned(xcb_query_tree_reply(watch_, xcb_query_tree(watch_, window), nullptr));
    if (!tree) return 0;
    const auto* children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        if (const WindowNumber client = clientOf(children[i], depth - 1); client != 0) return client;
    }
    return 0;
}

bool X11Platform::isDesktopType(WindowNumber window) const {
    const auto type = owned(
        xcb_get_property_reply(watch_, xcb_get_property(watch_, 0, window, windowType_, XCB_ATOM_ATOM, 0, 8), nullptr));
    if (!type || type->format != 32) return false;
    const auto* atoms = static_cast<const xcb_atom_t*>(xcb_get_property_value(type.get()));
    const int count = xcb_get_property_value_length(type.get()) / 4;
    return std::find(atoms, atoms + count, typeDesktop_) != atoms + count;
}

/// Whether this is Mutter's guard window. Mutter keeps minimized windows mapped below that window.
bool X11Platform::isGuard(WindowNumber window) const {
    constexpr std::string_view kName = "mutter guard window";
    const auto name = owned(xcb_get_property_reply(
        watch_, xcb_get_property(watch_, 0, window, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 16), nullptr));
    if (!name) return false;
    return kName == std::string_view(static_cast<const char*>(xcb_get_property_value(name.get())),
                                     static_cast<std::size_t>(xcb_get_property_value_length(name.get())));
}

RootChild X11Platform::kindOf(WindowNumber window) const {
    const auto attributes =
        owned(xcb_get_window_attributes_reply(watch_, xcb_get_window_attributes(watch_, window), nullptr));
    if (!attributes || attributes->map_state == XCB_MAP_STATE_UNMAPPED) return RootChild::other;
    if (attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY) return isGuard(window) ? RootChild::guard : RootChild::other;
    // A window manager's frame has override-redirect set, as a menu has, but it contains a client. A new client may not
    // have WM_STATE yet.
    const auto known = clients_.find(window);
    WindowNumber client = known != clients_.end() ? known->second : clientOf(window, 2);
    if (client == 0 && !attributes->override_redirect) client = window;
    if (client == 0) return RootChild::other;
    return isDesktopType(client) ? RootChild::desktop : RootChild::application;
}

void X11Platform::classify(WindowNumber window) {
    if (order_.kindOf(window) == RootChild::ours) return;
    order_.classify(window, kindOf(window));
    readArea(window);
}

void X11Platform::readEvents() {
    bool mayOrderBeWrong = false, haveSelectionsChanged = false, haveMonitorsChanged = false;
    for (Owned<xcb_generic_event_t> event = owned(xcb_poll_for_event(watch_)); event;
         event = owned(xcb_poll_for_event(watch_))) {
        const auto kind = event->response_type & 0x7f;
        const auto* const raw = event.get();
        if (kind == XCB_CREATE_NOTIFY) {
            order_.created(reinterpret_cast<const xcb_create_notify_event_t*>(raw)->window);
        } else if (kind == XCB_DESTROY_NOTIFY) {
            const WindowNumber window = reinterpret_cast<const xcb_destroy_notify_event_t*>(raw)->window;
            order_.removed(window);
            areas_.removed(window);
            clients_.erase(window);
        } else if (kind == XCB_CONFIGURE_NOTIFY) {
            const auto* notify = reinterpret_cast<const xcb_configure_notify_event_t*>(raw);
            if (notify->window == screen_->root) {
                haveMonitorsChanged = true; // a change of user-defined monitors causes no other event
                continue;
            }
            order_.configured(notify->window, notify->above_sibling);
            const QRect frame(notify->x, notify->y, notify->width + 2 * notify->border_width,
                              notify->height + 2 * notify->border_width);
            if (!areas_.moved(notify->window, frame)) readArea(notify->window);
            mayOrderBeWrong = true;
        } else if (kind == XCB_CIRCULATE_NOTIFY) {
            const auto* notify = reinterpret_cast<const xcb_circulate_notify_event_t*>(raw);
            notify->place == XCB_PLACE_ON_TOP ? order_.raised(notify->window) : order_.lowered(notify->window);
            mayOrderBeWrong = true;
        } else if (kind == XCB_MAP_NOTIFY) {
            classify(reinterpret_cast<const xcb_map_notify_event_t*>(raw)->window);
            mayOrderBeWrong = true;
        } else if (kind == XCB_UNMAP_NOTIFY) {
            const WindowNumber window = reinterpret_cast<const xcb_unmap_notify_event_t*>(raw)->window;
            if (order_.kindOf(window) != RootChild::ours) order_.classify(window, RootChild::other);
            areas_.removed(window);
            mayOrderBeWrong = true;
        } else if (kind == XCB_REPARENT_NOTIFY) {
            const auto* notify = reinterpret_cast<const xcb_reparent_notify_event_t*>(raw);
            if (notify->parent == screen_->root) {
                order_.created(notify->window);
                std::erase_if(clients_, [&](const auto& frame) { return frame.second == notify->window; });
                classify(notify->window);
            } else {
                order_.removed(notify->window);
                areas_.removed(notify->window);
                clients_[notify->parent] = notify->window;
                classify(notify->parent);
            }
            mayOrderBeWrong = true;
        } else if (firstXFixesEvent_ != 0 && kind == firstXFixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY) {
            haveSelectionsChanged = true;
        } else if (firstRandrEvent_ != 0 && (kind == firstRandrEvent_ + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
                                             kind == firstRandrEvent_ + XCB_RANDR_NOTIFY)) {
            haveMonitorsChanged = true;
        }
    }
    if (mayOrderBeWrong) {
        keepOrder();
        cutOutApplications();
    }
    if (haveSelectionsChanged) readSelections();
    if (haveMonitorsChanged && firstRandrEvent_ != 0) readMonitors();
    // While replies were read, further events may have been queued.
    if (haveSelectionsChanged || haveMonitorsChanged) readEvents();
}

std::vector<WindowNumber> X11Platform::windowsBelowApplications() const {
    std::vector<WindowNumber> ours;
    for (const auto& [layer, windows] : layers_) ours.insert(ours.end(), windows.begin(), windows.end());
    return ours;
}

void X11Platform::keepOrder() {
    const std::vector<WindowNumber> ours = windowsBelowApplications();
    const StackOrder::Place place = order_.placeFor(ours);
    if (place.isKept || ours.empty() || contestPause_.isActive()) return;
    if (!restackBudget_.take(std::chrono::steady_clock::now())) {
        isContested_ = true;
        contestCheck_.stop();
        contestPause_.start(kContestPause);
        return updateCutOut();
    }
    WindowNumber sibling = place.above;
    for (const WindowNumber window : ours) {
        const std::array<std::uint32_t, 2> above{sibling, XCB_STACK_MODE_ABOVE};
        const std::uint32_t below = XCB_STACK_MODE_BELOW;
        if (sibling == 0) {
            xcb_configure_window(watch_, window, XCB_CONFIG_WINDOW_STACK_MODE, &below);
        } else {
            xcb_configure_window(watch_, window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                                 above.data());
        }
        sibling = window;
    }
    xcb_flush(watch_);
}

void X11Platform::adopt(OverlayWindow& window) {
    const WindowNumber number = numberOf(window);
    // Compositors draw no shadows around windows of these types.
    const std::uint32_t type = isBelowApplications(window.layer()) ? typeDesktop_ : typeNotification_;
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, number, windowType_, XCB_ATOM_ATOM, 32, 1, &type);
    Picture& picture = pictures_[&window];
    const auto geometry = owned(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, number), nullptr));
    picture.depth = geometry ? geometry->depth : 24;
    if (isBelowApplications(window.layer())) layers_[window.layer()].push_back(number);
}

void X11Platform::release(OverlayWindow& window) {
    const WindowNumber number = numberOf(window);
    std::erase(layers_[window.layer()], number);
    const auto found = pictures_.find(&window);
    if (found == pictures_.end()) return;
    dropPixmap(found->second);
    if (found->second.context != 0) xcb_free_gc(connection_, found->second.context);
    pictures_.erase(found);
    reshapeLowerWindows(window.layer());
}

void X11Platform::stack(OverlayWindow& window) {
    const WindowNumber number = numberOf(window);
    order_.classify(number, RootChild::ours);
    if (isBelowApplications(window.layer())) {
        // Moves the window to the bottom, and `keepOrder` moves it up later: the window is never above an application.
        const std::uint32_t below = XCB_STACK_MODE_BELOW;
        xcb_configure_window(connection_, number, XCB_CONFIG_WINDOW_STACK_MODE, &below);
        xcb_flush(connection_);
    } else {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection_, number, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }
}

/// Does not call the toolkit, because the toolkit would wait for the server.
void X11Platform::conceal(OverlayWindow& window) {
    const std::uint32_t none = XCB_BACK_PIXMAP_NONE;
    xcb_unmap_window(connection_, numberOf(window));
    xcb_change_window_attributes(connection_, numberOf(window), XCB_CW_BACK_PIXMAP, &none);
    dropPixmap(pictures_.at(&window));
    pictures_.at(&window).isConcealed = true;
    reshapeLowerWindows(window.layer());
    xcb_flush(connection_);
}

void X11Platform::reveal(OverlayWindow& window) {
    if (!isBelowApplications(window.layer())) stack(window);
    pictures_.at(&window).isConcealed = false;
    reshapeLowerWindows(window.layer());
    xcb_map_window(connection_, numberOf(window));
    xcb_flush(connection_);
}

void X11Platform::dropPixmap(Picture& picture) {
    if (picture.pixmap != 0) xcb_free_pixmap(connection_, picture.pixmap);
    picture.pixmap = 0;
    picture.size = {};
}

void X11Platform::shape(OverlayWindow& window, const QRegion& visible, const QRegion& clickable) {
    Picture& picture = pictures_.at(&window);
    picture.visible = visible;
    applyShape(window, picture);
    reshapeLowerWindows(window.layer());
    shapeWindow(connection_, numberOf(window), XCB_SHAPE_SK_INPUT, clickable);
}

void X11Platform::draw(OverlayWindow& window, const QRegion& dirty) {
    const WindowNumber number = numberOf(window);
    Picture& picture = pictures_.at(&window);
    QRegion region = dirty;
    if (picture.size != window.size()) {
        dropPixmap(picture);
        picture.size = window.size();
        picture.pixmap = xcb_generate_id(connection_);
        xcb_create_pixmap(connection_, picture.depth, picture.pixmap, number,
                          static_cast<std::uint16_t>(picture.size.width()),
                          static_cast<std::uint16_t>(picture.size.height()));
        if (picture.context == 0) {
            picture.context = xcb_generate_id(connection_);
            xcb_create_gc(connection_, picture.context, picture.pixmap, 0, nullptr);
        }
        region = QRect(QPoint(0, 0), picture.size);
    }
    for (const QRect& part : region& QRect(QPoint(0, 0), picture.size)) putPart(picture, window, part);
    xcb_change_window_attributes(connection_, number, XCB_CW_BACK_PIXMAP, &picture.pixmap);
    for (const QRect& part : region) {
        xcb_clear_area(connection_, 0, number, static_cast<std::int16_t>(part.x()), static_cast<std::int16_t>(part.y()),
                       static_cast<std::uint16_t>(part.width()), static_cast<std::uint16_t>(part.height()));
    }
    xcb_flush(connection_);
}

void X11Platform::flush() {
    xcb_flush(connection_);
}

/// Draws and sends the part in strips, so that this process needs no memory for a picture of a whole display.
void X11Platform::putPart(const Picture& picture, OverlayWindow& window, const QRect& part) {
    constexpr int kStripBytes = 128 * 1024;
    const int rows = std::max(1, kStripBytes / (part.width() * 4));
    for (int top = part.top(); top <= part.bottom(); top += rows) {
        const QRect strip(part.left(), top, part.width(), std::min(rows, part.bottom() - top + 1));
        QImage image(strip.size(), picture.depth == 32 ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
        image.fill(picture.depth == 32 ? Qt::transparent : Qt::black);
        {
            QPainter painter(&image);
            painter.translate(-strip.topLeft());
            painter.setClipRect(strip);
            window.paint(painter);
        }
        xcb_put_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, picture.pixmap, picture.context,
                      static_cast<std::uint16_t>(strip.width()), static_cast<std::uint16_t>(strip.height()),
                      static_cast<std::int16_t>(strip.x()), static_cast<std::int16_t>(strip.y()), 0, picture.depth,
                      static_cast<std::uint32_t>(image.sizeInBytes()), image.constBits());
    }
}

} // namespace kova::ui
