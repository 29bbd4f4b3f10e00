// Platform interface to the pointer: its main button on the whole desktop, and the handles of dividers. Points are in
// screen space.
#pragma once

#include "layout/LayoutTree.h"
#include "support/Geometry.h"
#include "support/Published.h"

#include <functional>
#include <string>
#include <vector>

namespace kova {

struct PointerEvent {
    enum class Kind { pressed, moved, released };
    Kind kind = Kind::pressed;
    CGPoint location{};
    bool isShiftDown = false;
};

class PointerMonitorServicing {
  public:
    virtual ~PointerMonitorServicing() = default;
    /// Reports presses and releases of the main button, and movements while the button is held. Costs nothing without
    /// an observer. Main thread.
    [[nodiscard]] virtual Subscription observePointer(std::function<void(const PointerEvent&)> observer) = 0;
    /// Whether the user can drag a window by any point, as with Alt on X11; otherwise only by its title or an edge.
    virtual bool dragsWindowsByAnyPoint() const { return true; }
};

/// One divider's handle.
struct DividerHandle {
    std::string id; // opaque; the same for the same divider as long as it is shown
    CGRect frame{}; // screen space, the gap between the tiles
    LayoutAxis axis = LayoutAxis::horizontal;
    double insetPoints = 0; // the gap between the windows is wider than `frame` by one inset on each side
    bool operator==(const DividerHandle&) const = default;
};

struct DividerHandleEvent {
    enum class Kind { pressed, moved, released, canceled, doubleClicked, entered, left };
    Kind kind = Kind::pressed;
    std::string handleID;
    CGPoint location{};
};

class DividerHandleServicing {
  public:
    virtual ~DividerHandleServicing() = default;
    /// Shows exactly these handles. Each handle is at least 8 points thick and has the resize cursor of its axis. It is
    /// above the desktop, but below the windows that overlap it. Main thread; never waits.
    virtual void showHandles(const std::vector<DividerHandle>& handles) = 0;
    /// Whether handles cover the desktop's icons. If so, handles are shown only on displays with a window in a tile.
    virtual bool coversDesktopIcons() const { return false; }
    /// Sets the areas (screen space) where presses of the main button must not reach the desktop; replaces the former
    /// areas. This has an effect only if `coversDesktopIcons`. Main thread; never waits.
    virtual void guardDesktop(const std::vector<CGRect>&) {}
    /// Reports the events of handles. After a press, all movements are reported until the release or Escape, wherever
    /// the pointer is. `entered` and `left` mean that the pointer crossed the handle's edge; a back end may report them
    /// late, or only `left`.
    [[nodiscard]] virtual Subscription observeHandles(std::function<void(const DividerHandleEvent&)> observer) = 0;
};

} // namespace kova
