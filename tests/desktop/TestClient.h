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
    std::optional<CGSize> cells{}; // size increments
    bool isOverrideRedirect = false;
    int border = 0;
    bool knowsDelete = false; // lists WM_DELETE_WINDOW
    xcb_window_t transientFor = XCB_WINDOW_NONE;
};

class TestClient {
  public:
    /// A program of that class and process id; such a process need not exist.
    TestClient(const std::string& displayName, const std::string& className, std::uint32_t process);
    ~TestClient();
    TestClient(const TestClient&) = delete;
    TestClient& operator=(const TestClient&) = delete;

    /// Waits until the window manager manages a new window, since it announces itself before it handles all map
    /// requests. False if that takes longer than 20 s.
    bool waitForManager();

    xcb_window_t open(const TestWindow& window);
    /// Creates a window without mapping it.
    xcb_window_t create(const TestWindow& window);
    void map(xcb_window_t window);
    void unmap(xcb_window_t window);
    /// Withdraws the window from its window manager, also if it is not mapped.
    void withdraw(xcb_window_t window);
    void destroy(xcb_window_t window);
    /// Moves and resizes the window, as its own program does.
    void configure(xcb_window_t window, const CGRect& area);

    void setTitle(xcb_window_t window, const std::string& bytes);
    void setNumbers(xcb_window_t window, const std::string& property, const std::string& type,
                    const std::vector<std::uint32_t>& numbers);
    void setText(xcb_window_t window, const std::string& property, const std::string& type, const std::string& bytes);
    void remove(xcb_window_t window, const std::string& property);
    /// Sends a client message to the root, which requests something of the window manager: "_NET_WM_DESKTOP" of a
    /// window, for example.
    void ask(const std::string& type, xcb_window_t window, const std::vector<std::uint32_t>& numbers);
    enum class Demand { remove, add };
    /// Asks the window manager to add these states to _NET_WM_STATE, or to remove them.
    void demandState(xcb_window_t window, const std::string& first, const std::string& second = "",
                     Demand demand = Demand::add);

    /// How many new geometries were reported to the window since the last call, including synthetic events.
    int takeConfigureCount(xcb_window_t window);
    int takeConfigureCount(const std::vector<xcb_window_t>& windows); // of all of them together
    /// How often the window was asked to close since it was opened.
    int deleteCount(xcb_window_t window);
    /// The client's own area as the server has it, in root coordinates, and the same grown by _NET_FRAME_EXTENTS.
    CGRect area(xcb_window_t window) const;
    CGRect outerFrame(xcb_window_t window) const;
    bool isViewable(xcb_window_t window) const;
    std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& property) const;
    /// Any program's window of that WM_NAME, wherever a window manager has put it; 0 when there is none.
    xcb_window_t windowTitled(const std::string& title) const;
    std::vector<xcb_window_t> windowsTitled(const std::string& title) const;
    xcb_window_t root() const { return root_; }
    xcb_window_t focus() const;
    xcb_atom_t atom(const std::string& name) const;
    xcb_connection_t* connection() const { return connection_; }
    /// Waits until the server has carried out all requests.
    void sync() const;

  private:
    void readEvents();

    xcb_connection_t* connection_;
    xcb_window_t root_;
    std::string className_;
    std::uint32_t process_;
    mutable std::map<std::string, xcb_atom_t> atoms_;
    std::map<xcb_window_t, int> configureCounts_, deleteCounts_;
};

} // namespace kova::testing
