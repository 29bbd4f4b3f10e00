// Turns presses, movements, releases and Escape on a divider's handle into events. The desktop counts the clicks.
// Points are in screen space.
#pragma once

#include "windowing/PointerServicing.h"

#include <optional>
#include <span>
#include <string>

namespace kova {

/// The smallest thickness of a handle, in points.
inline constexpr double kThinnestHandle = 8;
/// A press counts as the second of a double click only if the pointer moved at most this many points in between.
inline constexpr double kDoubleClickTolerancePoints = 3;

/// The area of a handle that reacts to the pointer: its frame, widened evenly to at least `kThinnestHandle`.
CGRect pressFrame(const DividerHandle& handle);
/// The whole gap between the windows on both sides of a handle, or the press frame if the press frame is thicker.
CGRect gapFrame(const DividerHandle& handle);

/// Each function returns the event to report; absent if there is none.
class DividerGestureRecognizer {
  public:
    /// `clickCount` is 2 for the second press of a double click.
    std::optional<DividerHandleEvent> press(const std::string& handleID, int clickCount, CGPoint location);
    std::optional<DividerHandleEvent> move(CGPoint location);
    std::optional<DividerHandleEvent> release(CGPoint location);
    /// Ends the drag because Escape was pressed or the handle was removed.
    std::optional<DividerHandleEvent> cancel(CGPoint location);
    /// Cancels if the pressed handle is not one of `handles`.
    std::optional<DividerHandleEvent> keepOnly(std::span<const DividerHandle> handles, CGPoint location);

    bool isHeld() const { return handleID_.has_value(); }

  private:
    std::optional<DividerHandleEvent> makeEvent(DividerHandleEvent::Kind kind, CGPoint location) const;
    std::optional<DividerHandleEvent> end(DividerHandleEvent::Kind kind, CGPoint location);

    std::optional<std::string> handleID_; // of the pressed handle
};

} // namespace kova
