// The order of the root window's children, bottom first, followed by the server's events, and whether the overlay's
// windows have their places in it. Plain values, without a server.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

namespace kova::ui {

using WindowNumber = std::uint32_t;

enum class RootChild {
    other,       // not shown, or of no consequence: menus, tooltips, support windows
    application, // or the frame around one
    desktop,     // a window with wallpaper and icons, below all applications
    guard,       // hides the windows below it, and takes their clicks
    ours,
};

class StackOrder {
  public:
    /// All children, bottom first.
    void reset(std::vector<WindowNumber> bottomFirst);
    void created(WindowNumber window); // on top
    void removed(WindowNumber window);
    /// The window is now directly above `sibling`; 0: at the bottom.
    void configured(WindowNumber window, WindowNumber sibling);
    void raised(WindowNumber window);
    void lowered(WindowNumber window);
    void classify(WindowNumber window, RootChild kind);
    RootChild kindOf(WindowNumber window) const;
    const std::vector<WindowNumber>& bottomFirst() const { return order_; }
    /// Applications that no guard hides.
    std::vector<WindowNumber> shownApplications() const;

    /// Where `ours` (bottom first) belong: together, below every application that is not hidden, above the desktops
    /// that are below those. `above` is the window right above which the first of them belongs, 0: the bottom.
    struct Place {
        bool isKept = false; // nothing is to be done
        WindowNumber above = 0;
    };
    Place placeFor(const std::vector<WindowNumber>& ours) const;

  private:
    std::vector<WindowNumber> order_;
    std::map<WindowNumber, RootChild> kinds_; // `other` is not kept
};

} // namespace kova::ui
