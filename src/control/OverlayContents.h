// What the overlay shows, as values: backdrop, tile footers, divider lines, the drop target and the status message. The
// agent computes the values; a separate program draws them. Rectangles are in window-service space: points, origin at
// the top left of the first display, y growing downwards.
#pragma once

#include "layout/LayoutTree.h"
#include "layout/TileTarget.h"
#include "support/Geometry.h"
#include "support/Identifiers.h"
#include "themes/ThemeRegistry.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kova {

struct OverlayAppearance {
    std::string themeID;
    std::string accentColorID;
    std::optional<bool> isDark; // absent: as dark as the desktop's own windows
    ThemePalette palette;       // contains the accent color
    bool useThemeBackground = false;
    bool showTileBackgrounds = false;
    bool showBrain = false;
    bool operator==(const OverlayAppearance&) const = default;
};

struct OverlayDisplay {
    DisplayID id;
    int number = 1; // position in the list, from 1
    std::string name;
    CGRect frame{};
    CGRect visibleFrame{}; // without panels, docks and menu bars
    double scale = 1;      // pixels of the device per point
    std::string layoutID{};
    std::string layoutName{};
    bool isFocusMode = false; // one window owns the display
    bool isCurrent = false;   // true if it was the current display when the displays were last computed
    /// Frames of the windows that are shown outside tiles and can cover the decoration of the backdrop; empty while the
    /// decoration is switched off.
    std::vector<CGRect> floatingFrames{};
    bool operator==(const OverlayDisplay&) const = default;
};

struct OverlayApplication {
    std::optional<BundleID> id;
    std::string name;
    bool operator==(const OverlayApplication&) const = default;
};

/// One window in a tile's application strip.
struct OverlayWindow {
    WindowID id;
    OverlayApplication application;
    std::string title;
    bool isFront = false;
    bool isFocused = false;
    bool isMinimized = false;
    bool operator==(const OverlayWindow&) const = default;
};

struct OverlayNotice {
    std::string text;
    OverlayApplication application;
    bool operator==(const OverlayNotice&) const = default;
};

/// A tile, or all the tiles that one window spans.
struct OverlayTile {
    TileTarget id; // for a span, its anchor
    DisplayID displayID;
    SlotID slotID;
    std::string name{};
    std::vector<SlotID> coveredSlotIDs{}; // the tile's own slot first
    CGRect cell{};
    CGRect windowFrame{};                 // the cell without the inset; the window may be smaller
    std::optional<CGRect> footerFrame{};  // absent on a display that a window owns in focus mode
    std::vector<OverlayWindow> windows{}; // in stack order, the front window first
    std::optional<OverlayApplication> pendingLaunch{};
    std::optional<OverlayNotice> notice{};
    bool isDropTarget = false;
    bool operator==(const OverlayTile&) const = default;
};

struct OverlayDivider {
    std::string id; // opaque; does not change while the divider is shown
    DisplayID displayID;
    std::string layoutID;
    std::string splitID;
    int boundaryIndex = 0;
    LayoutAxis axis = LayoutAxis::horizontal; // the axis along which the divider moves
    CGRect frame{};                           // the gap between the tiles
    bool isHovered = false;
    bool isDragged = false;
    bool operator==(const OverlayDivider&) const = default;
};

/// A window that is being moved with the pointer.
struct OverlayDrag {
    WindowID windowID;
    std::optional<DisplayID> displayID; // under the pointer
    std::optional<TileTarget> tileID;   // the drop target
    bool operator==(const OverlayDrag&) const = default;
};

struct OverlayMessage {
    std::string text;
    std::optional<DisplayID> displayID; // the display that was current when the message appeared
    std::string undoMethod; // the socket's method that undoes the reported action; empty if it cannot be undone
    bool operator==(const OverlayMessage&) const = default;
};

/// An open window of KOVA: the settings window or the window for new users.
struct OverlayShownWindow {
    std::optional<std::string> pane; // the pane to show; absent: the pane shown last
    std::uint64_t request = 0; // the number of the last request to show the window; a new one brings it to the front
    bool operator==(const OverlayShownWindow&) const = default;
};

struct OverlayWindows {
    std::optional<OverlayShownWindow> settings;
    std::optional<OverlayShownWindow> onboarding;
    bool operator==(const OverlayWindows&) const = default;
};

struct OverlayContents {
    bool isSuspended = false;
    OverlayAppearance appearance;
    std::vector<OverlayDisplay> displays;
    std::vector<OverlayTile> tiles;
    std::vector<OverlayDivider> dividers;
    std::optional<OverlayDrag> drag;
    std::optional<OverlayMessage> message;
    OverlayWindows windows;
    bool operator==(const OverlayContents&) const = default;
};

/// Parts of the contents that change independently of each other, one bit for each.
enum class OverlaySection : std::uint32_t {
    isSuspended = 1U << 0,
    appearance = 1U << 1,
    displays = 1U << 2,
    tiles = 1U << 3,
    dividers = 1U << 4,
    drag = 1U << 5,
    message = 1U << 6,
    settingsWindow = 1U << 7,
    onboardingWindow = 1U << 8,
};
using OverlaySections = std::uint32_t;
inline constexpr OverlaySections kEveryOverlaySection = (1U << 9) - 1;

constexpr bool holds(OverlaySections sections, OverlaySection section) {
    return (sections & static_cast<OverlaySections>(section)) != 0;
}

/// Swaps the given sections between two contents.
void swapSections(OverlayContents& one, OverlayContents& other, OverlaySections sections);

/// Main thread only.
class OverlayServing {
  public:
    virtual ~OverlayServing() = default;
    /// Sets the given sections of `contents` to what the overlay shows now. The other sections are left unchanged.
    virtual void update(OverlayContents& contents, OverlaySections sections) = 0;
    /// Calls `changed` with the sections that may have changed, possibly in the middle of an operation. A later call of
    /// `watch` replaces the function; an empty function ends watching. Without a watcher nothing is computed.
    virtual void watch(std::function<void(OverlaySections)> changed) = 0;
};

} // namespace kova
