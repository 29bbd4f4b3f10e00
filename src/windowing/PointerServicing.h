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
    /// Reports the main button, and movements only while it is held. Costs nothing without an observer. Main
    /// thread.
    [[nodiscard]] virtual Subscription observePointer(std::function<void(const PointerEvent&)> observer) = 0;
    /// Whether windows can be dragged by any point, as with Alt on X11; else by titles and edges.
    virtual bool dragsWindowsByAnyPoint() const { return true; }
};

/// One divider's handle.
struct DividerHandle {
    std::string id; // opaque; the same for the same divider as long as it is shown
    CGRect frame{}; // screen space, the gap between the tiles
    LayoutAxis axis = LayoutAxis::horizontal;
    double insetPoints = 0; // distance of windows from their tiles' edges, by which the gap between windows is wider
    bool operator==(const DividerHandle&) const = default;
};

struct DividerHandleEvent {
    enum class Kind { pressed, moved, released, cancelled, doubleClicked, entered, left };
    Kind kind = Kind::pressed;
    std::string handleID;
    CGPoint location{};
};

class DividerHandleServicing {
  public:
    virtual ~DividerHandleServicing() = default;
    /// Shows exactly these handles, each at least 8 points thick, with the resize cursor of its axis, above the desktop
    /// but below the windows that overlap it. Main thread; never waits.
    virtual void showHandles(const std::vector<DividerHandle>& handles) = 0;
    /// Whether handles cover the desktop's icons, so that they are shown only on displays with a window in a tile.
    virtual bool coversDesktopIcons() const { return false; }
    /// Sets the areas (screen space) where presses of the main button must not reach the desktop; replaces the former
    /// areas. Only has an effect if `coversDesktopIcons`. Main thread; never waits.
    virtual void guardDesktop(const std::vector<CGRect>&) {}
    /// Events of handles. A pressed handle gets all movements until the release or Escape, wherever the pointer goes. A
    /// handle is entered and left when the pointer crosses its edge; a back end may report that late, or only the
    /// leaving.
    [[nodiscard]] virtual Subscription observeHandles(std::function<void(const DividerHandleEvent&)> observer) = 0;
};

} // namespace kova
