// One window of the simulated desktop, with the behavior of real ones.
// Frames are in desktop space: points, origin at a corner that no change of displays moves, y growing downwards.
#pragma once

#include "support/Geometry.h"
#include "support/MainQueue.h"
#include "windowing/AccessibilityServicing.h"

#include <optional>
#include <set>
#include <span>
#include <string>

namespace kova {

inline constexpr int kEveryVirtualDesktop = -1;

/// The elements inside a window; the innermost one is reported as the element under the pointer.
enum class InnerElements {
    nested,   // a button in a group in the window
    cyclic,   // a cycle of parents
    orphaned, // no parent can be read
};

/// How a window is opened and how it behaves. All traits may be combined.
struct WindowTraits {
    std::optional<CGRect> frame{};      // desktop space; absent: somewhere on the first display
    std::optional<std::string> title{}; // absent: the window's label
    std::string role = "AXWindow";
    std::optional<std::string> subrole = "AXStandardWindow";
    std::set<AccessibilityAttribute> unreadable{};
    InnerElements inside = InnerElements::nested;
    int layer = 0;
    std::optional<int> virtualDesktop{}; // absent: the one that is shown
    bool isMinimized = false;
    std::optional<std::string> dialogOf{}; // label of the window that it belongs to

    std::optional<CGSize> minimumSize{};       // enforced, and announced
    std::optional<CGSize> otherMinimumSize{};  // announced under the attribute's other name, and not enforced
    std::optional<CGSize> secretMinimumSize{}; // enforced, not announced
    std::optional<CGSize> maximumSize{};
    std::optional<double> aspect{}; // width divided by height; keeps the requested width, whatever the height
    bool tellsSizeHints = false;    // of cells, largest size and aspect
    CGSize cell{};                  // sizes are whole cells, as in a terminal; 0: any size
    bool refusesToMove = false;
    bool refusesToResize = false;
    bool clampsToDisplay = false; // stays on its display: limits a new size by its position, a new position by its size
    Seconds answersAfter{0};      // the delay until a write takes effect
    int springsBackTimes = 0;     // how often it returns to its former frame, 0.1 s after a request
    int vanishesAtWrite = 0;      // closes itself at the n-th request; 0: never
};

class SimulatedWindow {
  public:
    SimulatedWindow(std::uint64_t number, pid_t processIdentifier, std::string label, WindowTraits traits);

    std::uint64_t number() const { return number_; }
    void renumber(std::uint64_t number) { number_ = number; }
    pid_t processIdentifier() const { return processIdentifier_; }
    /// Its name in scenarios; unique among open windows.
    const std::string& label() const { return label_; }
    const WindowTraits& traits() const { return traits_; }
    /// Whether the window takes any frame as requested.
    bool isObedient() const;
    /// The minimum size of a window that otherwise takes a frame as requested; absent for others.
    std::optional<CGSize> leastSize() const;

    std::optional<WindowSizeHints> sizeHints() const;
    /// Changes its minimum size, and announces it.
    void setMinimumSize(std::optional<CGSize> size) { traits_.minimumSize = size; }

    CGRect frame{};
    std::string title;
    bool isMinimized = false;
    bool isFullScreen = false;
    bool isMaximized = false;
    bool wasIconifiedByHiding = false;
    bool isLost = false; // it exists, but the window server says that it was closed
    int virtualDesktop = 0;
    int virtualDesktopBeforeFullScreen = 0;
    std::uint64_t tabGroup = 0; // 0: none
    bool isBackgroundTab = false;
    CGRect frameBeforeFullScreen{}; // or before it was maximized
    int writeCount = 0;             // requests to write any attribute
    int frameWriteCount = 0;        // of these, with a position or a size
    int springsBackTimes = 0;

    /// The frame that the window takes when the origin or the size is requested. `displayFrame` is the frame of the
    /// window's display.
    CGRect frameMovedTo(CGPoint origin, const CGRect& displayFrame) const;
    CGRect frameResizedTo(CGSize size, const CGRect& displayFrame) const;

  private:
    std::uint64_t number_;
    pid_t processIdentifier_;
    std::string label_;
    WindowTraits traits_;
};

/// "15,15 1908x1382".
std::string describeFrame(const CGRect& frame);
/// "AXPosition 15,15", "AXMinimized true".
std::string describeWrite(const AttributeWrite& write);

} // namespace kova
