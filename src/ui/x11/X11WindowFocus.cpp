#include "ui/x11/X11WindowFocus.h"

#include "ui/x11/X11Requests.h"

#include <QApplication>
#include <QWindow>

#include <algorithm>
#include <cstring>
#include <memory>

namespace kova::ui {

namespace {

constexpr std::uint32_t kSourcePager = 2;

/// The current time of the server's clock; 0 if unknown. Waits for an event on a temporary connection.
std::uint32_t serverTime() {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> server(xcb_connect(nullptr, nullptr),
                                                                              &xcb_disconnect);
    if (xcb_connection_has_error(server.get())) return 0;
    const auto screens = xcb_setup_roots_iterator(xcb_get_setup(server.get()));
    const xcb_window_t window = xcb_generate_id(server.get());
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(server.get(), 0, window, screens.data->root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    xcb_change_property(server.get(), XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_flush(server.get());
    while (const auto event = owned(xcb_wait_for_event(server.get()))) {
        if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY) continue;
        return reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->time;
    }
    return 0;
}

} // namespace

X11WindowFocus::X11WindowFocus(xcb_connection_t* connection) :
    connection_(connection), activeWindow_(atom("_NET_ACTIVE_WINDOW")), userTime_(atom("_NET_WM_USER_TIME")) {
    if (const auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection)); screens.rem > 0)
        root_ = screens.data->root;
}

std::uint32_t X11WindowFocus::atom(const char* name) const {
    const auto reply = owned(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name), nullptr));
    return reply ? reply->atom : static_cast<std::uint32_t>(XCB_NONE);
}

std::uint32_t X11WindowFocus::activeWindow() const {
    const auto reply = owned(xcb_get_property_reply(
        connection_, xcb_get_property(connection_, 0, root_, activeWindow_, XCB_ATOM_WINDOW, 0, 1), nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) < 4) return 0;
    std::uint32_t window = 0;
    std::memcpy(&window, xcb_get_property_value(reply.get()), sizeof window);
    const bool isOurs = std::ranges::any_of(QGuiApplication::topLevelWindows(), [&](const QWindow* each) {
        return each->handle() && each->winId() == window;
    });
    return isOurs ? 0 : window;
}

void X11WindowFocus::prepare(QWidget& window) {
    if (const std::uint32_t active = activeWindow()) formerFocus_ = active;
    // The user has just requested the window, so the time of the user's last action is now. With 0 or without a time a
    // window manager might not focus the window.
    window.winId();
    const std::uint32_t time = serverTime();
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()), userTime_,
                        XCB_ATOM_CARDINAL, 32, 1, &time);
}

void X11WindowFocus::giveFocusTo(QWidget& window) {
    window.raise();
    window.activateWindow(); // for a desktop without a window manager
    activate(static_cast<std::uint32_t>(window.winId()));
}

void X11WindowFocus::restoreFocus() {
    // The window stays remembered, since another window of kova-ui may open next, as after a command of the palette.
    if (formerFocus_ != 0 && activeWindow() == 0) activate(formerFocus_);
}

void X11WindowFocus::activate(std::uint32_t window) {
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = window;
    request.type = activeWindow_;
    request.data.data32[0] = kSourcePager;
    request.data.data32[1] = serverTime();
    xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&request));
    xcb_flush(connection_);
}

} // namespace kova::ui
