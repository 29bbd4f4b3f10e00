// The connection to the X server: its atoms, its root window, and the sending of requests. After `open` no function
// waits for a reply unless it says so. Threads: xcb serializes requests of all threads. Errors of requests without a
// reply arrive as events and are ignored: they mean that a window was destroyed.
#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace kova::x11 {

inline constexpr xcb_window_t kNoWindow = XCB_WINDOW_NONE;

#define KOVA_X11_ATOMS(X)                                                                                              \
    X(utf8String, "UTF8_STRING")                                                                                       \
    X(wmState, "WM_STATE")                                                                                             \
    X(wmChangeState, "WM_CHANGE_STATE")                                                                                \
    X(wmProtocols, "WM_PROTOCOLS")                                                                                     \
    X(wmDeleteWindow, "WM_DELETE_WINDOW")                                                                              \
    X(wmClientMachine, "WM_CLIENT_MACHINE")                                                                            \
    X(netSupported, "_NET_SUPPORTED")                                                                                  \
    X(netSupportingWmCheck, "_NET_SUPPORTING_WM_CHECK")                                                                \
    X(netClientList, "_NET_CLIENT_LIST")                                                                               \
    X(netActiveWindow, "_NET_ACTIVE_WINDOW")                                                                           \
    X(netCurrentDesktop, "_NET_CURRENT_DESKTOP")                                                                       \
    X(netWorkarea, "_NET_WORKAREA")                                                                                    \
    X(netMoveresizeWindow, "_NET_MOVERESIZE_WINDOW")                                                                   \
    X(netRestackWindow, "_NET_RESTACK_WINDOW")                                                                         \
    X(netFrameExtents, "_NET_FRAME_EXTENTS")                                                                           \
    X(gtkFrameExtents, "_GTK_FRAME_EXTENTS")                                                                           \
    X(gtkApplicationId, "_GTK_APPLICATION_ID")                                                                         \
    X(netWmName, "_NET_WM_NAME")                                                                                       \
    X(netWmPid, "_NET_WM_PID")                                                                                         \
    X(netWmDesktop, "_NET_WM_DESKTOP")                                                                                 \
    X(netWmStrut, "_NET_WM_STRUT")                                                                                     \
    X(netWmStrutPartial, "_NET_WM_STRUT_PARTIAL")                                                                      \
    X(netWmState, "_NET_WM_STATE")                                                                                     \
    X(netWmStateHidden, "_NET_WM_STATE_HIDDEN")                                                                        \
    X(netWmStateFullscreen, "_NET_WM_STATE_FULLSCREEN")                                                                \
    X(netWmStateMaximizedVert, "_NET_WM_STATE_MAXIMIZED_VERT")                                                         \
    X(netWmStateMaximizedHorz, "_NET_WM_STATE_MAXIMIZED_HORZ")                                                         \
    X(netWmStateShaded, "_NET_WM_STATE_SHADED")                                                                        \
    X(netWmStateModal, "_NET_WM_STATE_MODAL")                                                                          \
    X(netWmStateSticky, "_NET_WM_STATE_STICKY")                                                                        \
    X(netWmWindowType, "_NET_WM_WINDOW_TYPE")                                                                          \
    X(typeNormal, "_NET_WM_WINDOW_TYPE_NORMAL")                                                                        \
    X(typeDialog, "_NET_WM_WINDOW_TYPE_DIALOG")                                                                        \
    X(typeDock, "_NET_WM_WINDOW_TYPE_DOCK")                                                                            \
    X(typeDesktop, "_NET_WM_WINDOW_TYPE_DESKTOP")                                                                      \
    X(typeSplash, "_NET_WM_WINDOW_TYPE_SPLASH")                                                                        \
    X(typeUtility, "_NET_WM_WINDOW_TYPE_UTILITY")                                                                      \
    X(typeToolbar, "_NET_WM_WINDOW_TYPE_TOOLBAR")                                                                      \
    X(typeMenu, "_NET_WM_WINDOW_TYPE_MENU")                                                                            \
    X(typeDropdownMenu, "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU")                                                           \
    X(typePopupMenu, "_NET_WM_WINDOW_TYPE_POPUP_MENU")                                                                 \
    X(typeTooltip, "_NET_WM_WINDOW_TYPE_TOOLTIP")                                                                      \
    X(typeNotification, "_NET_WM_WINDOW_TYPE_NOTIFICATION")                                                            \
    X(typeCombo, "_NET_WM_WINDOW_TYPE_COMBO")                                                                          \
    X(typeDragIcon, "_NET_WM_WINDOW_TYPE_DND")                                                                         \
    X(windowManagerSelection, "WM_S0")                                                                                 \
    X(manager, "MANAGER")                                                                                              \
    X(xsettings, "_XSETTINGS_SETTINGS")                                                                                \
    X(kovaAgent, "_KOVA_AGENT")                                                                                        \
    X(edid, "EDID")

enum class Atom : std::uint8_t {
#define X(name, text) name,
    KOVA_X11_ATOMS(X)
#undef X
        count
};

class Atoms {
  public:
    xcb_atom_t operator[](Atom atom) const { return values_[static_cast<std::size_t>(atom)]; }
    void set(Atom atom, xcb_atom_t value) { values_[static_cast<std::size_t>(atom)] = value; }

  private:
    std::array<xcb_atom_t, static_cast<std::size_t>(Atom::count)> values_{};
};

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};
/// A reply, event or error of xcb; null when the request failed.
template <class T>
using XReply = std::unique_ptr<T, FreeDeleter>;

/// Whether an event with that sequence number happened at or after the request. Each event has the number of the last
/// request that the server had carried out; the numbers wrap around.
inline bool isAtOrAfter(std::uint32_t sequence, std::uint32_t request) {
    return static_cast<std::int32_t>(sequence - request) >= 0;
}

/// A property as the server returned it; not validated.
struct PropertyView {
    xcb_atom_t type = XCB_ATOM_NONE;
    int format = 0;
    std::span<const std::uint8_t> bytes;
};

/// Empty, with the type XCB_ATOM_NONE, for a null reply.
PropertyView viewOf(const xcb_get_property_reply_t* reply);

class XConnection {
  public:
    /// Connects and waits for the server. On failure returns a sentence that says why and what to do.
    static std::variant<std::unique_ptr<XConnection>, std::string> open(const std::optional<std::string>& displayName);
    ~XConnection();
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    xcb_connection_t* get() const { return connection_; }
    xcb_window_t root() const { return screen_->root; }
    const xcb_screen_t& screen() const { return *screen_; }
    const Atoms& atoms() const { return atoms_; }
    /// The name that was passed to `open`, else the name in the environment.
    const std::string& displayName() const { return displayName_; }
    bool isLost() const { return xcb_connection_has_error(connection_) != 0; }

    /// Buffers a request for a property of any type; `flush` sends it.
    xcb_get_property_cookie_t requestProperty(xcb_window_t window, xcb_atom_t property,
                                              std::uint32_t lengthInWords) const;
    /// Sends a client message about a window to the window manager, as a pager does.
    void sendToWindowManager(xcb_window_t window, Atom message, const std::array<std::uint32_t, 5>& data) const;
    void flush() const { xcb_flush(connection_); }

  private:
    XConnection(xcb_connection_t* connection, xcb_screen_t* screen, std::string displayName);
    void internAtoms();

    xcb_connection_t* connection_;
    xcb_screen_t* screen_;
    std::string displayName_;
    Atoms atoms_;
};

} // namespace kova::x11
