// The stacking order of the root window's children, kept up to date by the server's events, and where the overlay's
// windows belong in it. Plain values, independent of the X server.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

namespace kova::ui {

using WindowNumber = std::uint32_t;

enum class RootChild {
    other,       // not shown, or irrelevant for the order: menus, tooltips, support windows
    application, // a window of an application, or the frame around it
    desktop,     // a window with wallpaper and icons, below all applications
    guard,       // a window of the window manager that hides the windows below it and receives their clicks
    ours,        // a window of the overlay
};

class StackOrder {
  public:
    /// Sets all children, bottom first.
    void reset(std::vector<WindowNumber> bottomFirst);
    // Call the next five functions at the server's events.
    void created(WindowNumber window); // the new window is the topmost
    void removed(WindowNumber window);
    /// The window is now directly above `sibling`, or at the bottom if `sibling` is 0.
    void configured(WindowNumber window, WindowNumber sibling);
    void raised(WindowNumber window);
    void lowered(WindowNumber window);
    void classify(WindowNumber window, RootChild kind);
    RootChild kindOf(WindowNumber window) const;
    const std::vector<WindowNumber>& bottomFirst() const { return order_; }
    /// The applications that no guard hides, bottom first.
    std::vector<WindowNumber> shownApplications() const;

    /// Where the windows `ours` (bottom first) belong: directly above each other, below every application that no guard
    /// hides, and above the desktop windows that are below these applications.
    struct Place {
        bool isKept = false;    // `ours` are already in this place
        WindowNumber above = 0; // the window directly above which the first of `ours` belongs; 0: at the bottom
    };
    Place placeFor(const std::vector<WindowNumber>& ours) const;

  private:
    std::vector<WindowNumber> order_;
    std::map<WindowNumber, RootChild> kinds_; // a window without an entry is `other`
};

} // namespace kova::ui
