// The seam to the user's hand: the pointer while its main button is held anywhere on the desktop, and the handles that
// can be taken hold of. Points are in screen space.
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
    /// Whether windows are commonly dragged by any point of theirs, as with Alt on X11; else by titles and edges.
    virtual bool dragsWindowsByAnyPoint() const { return true; }
};

/// One divider's handle.
struct DividerHandle {
    std::string id; // opaque; the same for the same divider as long as it is shown
    CGRect frame{}; // screen space, the gap between the tiles
    LayoutAxis axis = LayoutAxis::horizontal;
    double insetPoints = 0; // windows keep this distance from the edges of their tiles, so that more of the gap is bare
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
    /// Whether handles lie over the desktop's icons, and are to be shown only on displays with a window in a tile.
    virtual bool coversDesktopIcons() const { return false; }
    /// What the hand does with a handle. Once pressed, a handle gets the movements until it is released or cancelled
    /// (Escape), wherever the pointer goes. A handle is entered and left as the pointer crosses its edge; a back end
    /// may tell of that late, or of leaving alone.
    [[nodiscard]] virtual Subscription observeHandles(std::function<void(const DividerHandleEvent&)> observer) = 0;
};

} // namespace kova
