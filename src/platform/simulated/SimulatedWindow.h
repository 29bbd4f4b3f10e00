// One window of the simulated desktop. It behaves like a real window.
// Frames are in desktop space: points, y growing downwards. A change of displays does not move the origin.
#pragma once

#include "support/Geometry.h"
#include "support/MainQueue.h"
#include "windowing/AccessibilityServicing.h"

#include <optional>
#include <set>
#include <span>
#include <string>

namespace kova {

/// The `virtualDesktop` of a window that is on all virtual desktops.
inline constexpr int kEveryVirtualDesktop = -1;

/// The elements inside a window; the innermost one is reported as the element under the pointer.
enum class InnerElements {
    nested,   // a button in a group in the window
    cyclic,   // the button and the group are each other's parent
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

    std::optional<CGSize> minimumSize{};            // enforced, and announced as `minSize`
    std::optional<CGSize> otherMinimumSize{};       // announced as `minimumSize`, and not enforced
    std::optional<CGSize> unannouncedMinimumSize{}; // enforced, not announced
    std::optional<CGSize> maximumSize{};
    std::optional<double> aspect{}; // width divided by height; the height is computed from the requested width
    bool tellsSizeHints = false;    // announces hints: minimum and maximum size, increment, aspect
    CGSize sizeIncrement{};         // a terminal: the size of a character; sizes are multiples of it; 0: any size
    bool refusesToMove = false;
    bool refusesToResize = false;
    bool clampsToDisplay =
        false;                // stays on its display: its position limits a new size, its size limits a new position
    Seconds writeDelay{0};    // the delay until a write takes effect
    int springsBackTimes = 0; // how many times it returns to its former frame 0.1 s after a request
    int vanishesAtWrite = 0;  // closes itself at the write with this number; 0: never
};

class SimulatedWindow {
  public:
    SimulatedWindow(std::uint64_t number, pid_t processIdentifier, std::string label, WindowTraits traits);

    std::uint64_t number() const { return number_; }
    void renumber(std::uint64_t number) { number_ = number; }
    pid_t processIdentifier() const { return processIdentifier_; }
    /// The name of the window in scenarios; unique among open windows.
    const std::string& label() const { return label_; }
    const WindowTraits& traits() const { return traits_; }
    /// Whether the window takes any frame as requested.
    bool isObedient() const;
    /// The smallest size that the window accepts. Absent if traits other than its size limits (minimum and maximum
    /// size, increment) delay, change or refuse requested frames.
    std::optional<CGSize> leastSize() const;

    std::optional<WindowSizeHints> sizeHints() const;
    /// Changes the announced minimum size.
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
    int writeCount = 0;             // writes of any attributes
    int frameWriteCount = 0;        // writes of a position or a size
    int springsBackTimes = 0;       // how many times it will still return to its former frame

    /// The frame that the window takes when this origin or this size is requested. `displayFrame` is the frame of the
    /// window's display.
    CGRect frameMovedTo(CGPoint origin, const CGRect& displayFrame) const;
    CGRect frameResizedTo(CGSize size, const CGRect& displayFrame) const;

  private:
    std::uint64_t number_;
    pid_t processIdentifier_;
    std::string label_;
    WindowTraits traits_;
};

/// A text such as "15,15 1908x1382".
std::string describeFrame(const CGRect& frame);
/// A text such as "AXPosition 15,15" or "AXMinimized true".
std::string describeWrite(const AttributeWrite& write);

} // namespace kova
