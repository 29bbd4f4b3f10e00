// A test application: windows with any properties, valid or not, and a record of their events. It has its own
// connection to the server, like any other program.
#pragma once

#include "support/Geometry.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kova::testing {

struct TestWindow {
    std::string title;
    CGRect frame = makeRect(40, 50, 400, 300);
    std::string type = "NORMAL"; // the end of _NET_WM_WINDOW_TYPE_...
    std::optional<CGSize> minimumSize{};
    std::optional<CGSize> sizeIncrements{};
    bool isOverrideRedirect = false;
    int border = 0;
    bool hasDeleteProtocol = false; // WM_PROTOCOLS lists WM_DELETE_WINDOW
    xcb_window_t transientFor = XCB_WINDOW_NONE;
};

class TestClient {
  public:
    /// The client's windows announce this class and process id; the process need not exist.
    TestClient(const std::string& displayName, const std::string& className, std::uint32_t process);
    ~TestClient();
    TestClient(const TestClient&) = delete;
    TestClient& operator=(const TestClient&) = delete;

    /// Waits until the window manager manages a new window: window managers announce themselves earlier than they
    /// handle map requests. False if that takes longer than 20 s.
    bool waitForManager();

    xcb_window_t open(const TestWindow& window);
    /// Creates a window without mapping it.
    xcb_window_t create(const TestWindow& window);
    void map(xcb_window_t window);
    void unmap(xcb_window_t window);
    /// Removes the window from the window manager's control, even if the window is not mapped.
    void withdraw(xcb_window_t window);
    void destroy(xcb_window_t window);
    /// Moves and resizes the window as the program that owns it does, without the window manager's messages.
    void configure(xcb_window_t window, const CGRect& area);

    void setTitle(xcb_window_t window, const std::string& bytes);
    void setNumbers(xcb_window_t window, const std::string& property, const std::string& type,
                    const std::vector<std::uint32_t>& numbers);
    void setText(xcb_window_t window, const std::string& property, const std::string& type, const std::string& bytes);
    void remove(xcb_window_t window, const std::string& property);
    /// Sends a client message about the window to the window manager; "_NET_WM_DESKTOP", for example, moves the window
    /// to another desktop.
    void sendToManager(const std::string& type, xcb_window_t window, const std::vector<std::uint32_t>& numbers);
    enum class StateRequest { remove, add };
    /// Requests that the window manager adds these states to _NET_WM_STATE or removes them.
    void requestState(xcb_window_t window, const std::string& first, const std::string& second = "",
                      StateRequest request = StateRequest::add);

    /// The number of ConfigureNotify events for the window since the last call, including synthetic events.
    int takeConfigureCount(xcb_window_t window);
    int takeConfigureCount(const std::vector<xcb_window_t>& windows); // the sum
    /// The number of WM_DELETE_WINDOW messages to the window since it was opened.
    int closeRequestCount(xcb_window_t window);
    /// The window's own area on the server, without decorations, in root coordinates.
    CGRect area(xcb_window_t window) const;
    /// The area with the decorations that _NET_FRAME_EXTENTS describes.
    CGRect outerFrame(xcb_window_t window) const;
    bool isViewable(xcb_window_t window) const;
    std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& property) const;
    /// A window of any program with this WM_NAME, also inside a window manager's frame; 0 if there is none.
    xcb_window_t windowTitled(const std::string& title) const;
    std::vector<xcb_window_t> windowsTitled(const std::string& title) const;
    xcb_window_t root() const { return root_; }
    xcb_window_t focus() const;
    xcb_atom_t atom(const std::string& name) const;
    xcb_connection_t* connection() const { return connection_; }
    /// Waits until the server has processed all requests of this client.
    void sync() const;

  private:
    void readEvents();

    xcb_connection_t* connection_;
    xcb_window_t root_;
    std::string className_;
    std::uint32_t process_;
    mutable std::map<std::string, xcb_atom_t> atoms_;
    std::map<xcb_window_t, int> configureCounts_, closeRequestCounts_;
};

} // namespace kova::testing
