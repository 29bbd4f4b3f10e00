#include "platform/x11/XConnection.h"

#include "support/Quoted.h"

#include <cstring>

namespace kova::x11 {

namespace {

constexpr std::array<const char*, static_cast<std::size_t>(Atom::count)> kAtomNames = {
#define X(name, text) text,
    KOVA_X11_ATOMS(X)
#undef X
};

std::string environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string whyNoDisplay() {
    if (!environmentValue("WAYLAND_DISPLAY").empty()) {
        return "This is a Wayland session without an X server, and Wayland does not let a program move other programs' "
               "windows. Log out and choose a session on X11 (often called “Xorg”) in the login screen.";
    }
    return "There is no X display: DISPLAY is not set. Start KOVA inside the graphical session, or set DISPLAY to the "
           "display to manage, for example \":0\".";
}

std::string whyNotConnected(const std::string& displayName, int error) {
    const std::string place = "Cannot connect to the X display " + quoted(displayName) + ": ";
    switch (error) {
    case XCB_CONN_CLOSED_PARSE_ERR:
        return place + "that is not the name of a display (for example \":0\").";
    case XCB_CONN_CLOSED_INVALID_SCREEN:
        return place + "it has no such screen.";
    default:
        return place +
               "no X server answers there, or it refuses this user. Check that the X server runs and that XAUTHORITY "
               "names its key.";
    }
}

} // namespace

PropertyView viewOf(const xcb_get_property_reply_t* reply) {
    if (!reply) return {};
    const auto length = static_cast<std::size_t>(xcb_get_property_value_length(reply));
    return {reply->type, reply->format, {static_cast<const std::uint8_t*>(xcb_get_property_value(reply)), length}};
}

std::variant<std::unique_ptr<XConnection>, std::string>
XConnection::open(const std::optional<std::string>& displayName) {
    const std::string name = displayName ? *displayName : environmentValue("DISPLAY");
    if (name.empty()) return whyNoDisplay();
    int screenNumber = 0;
    xcb_connection_t* connection = xcb_connect(name.c_str(), &screenNumber);
    if (const int error = xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        return whyNotConnected(name, error);
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screenNumber && screens.rem > 1; ++i) xcb_screen_next(&screens);
    std::unique_ptr<XConnection> opened(new XConnection(connection, screens.data, name));
    opened->internAtoms();
    if (opened->isLost()) return whyNotConnected(name, XCB_CONN_ERROR);
    return opened;
}

XConnection::XConnection(xcb_connection_t* connection, xcb_screen_t* screen, std::string displayName) :
    connection_(connection), screen_(screen), displayName_(std::move(displayName)) {}

XConnection::~XConnection() {
    xcb_disconnect(connection_);
}

void XConnection::internAtoms() {
    std::array<xcb_intern_atom_cookie_t, kAtomNames.size()> requests{};
    for (std::size_t i = 0; i < kAtomNames.size(); ++i) {
        requests[i] =
            xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(kAtomNames[i])), kAtomNames[i]);
    }
    for (std::size_t i = 0; i < kAtomNames.size(); ++i) {
        const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, requests[i], nullptr));
        if (reply) atoms_.set(static_cast<Atom>(i), reply->atom);
    }
}

xcb_get_property_cookie_t XConnection::requestProperty(xcb_window_t window, xcb_atom_t property,
                                                       std::uint32_t lengthInWords) const {
    return xcb_get_property(connection_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, lengthInWords);
}

void XConnection::sendToWindowManager(xcb_window_t window, Atom message,
                                      const std::array<std::uint32_t, 5>& data) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atoms_[message];
    std::memcpy(event.data.data32, data.data(), sizeof event.data.data32);
    // With this mask only the window manager gets the event; other programs that watch the root, and KOVA itself, are
    // not woken.
    xcb_send_event(connection_, 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT, reinterpret_cast<const char*>(&event));
}

} // namespace kova::x11
