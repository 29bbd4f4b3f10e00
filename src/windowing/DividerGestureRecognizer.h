// The hand on a divider's handle: what pressing, moving, letting go and Escape tell, for a desktop that counts clicks.
// Points are in screen space.
#pragma once

#include "windowing/PointerServicing.h"

#include <optional>
#include <span>
#include <string>

namespace kova {

/// The thinnest that a handle can be taken hold of, in points.
inline constexpr double kThinnestHandle = 8;

/// Where a handle can be taken hold of: its frame, made thick enough around its middle.
CGRect grippableFrame(const DividerHandle& handle);
/// All that is bare between the windows on both sides of a handle, or the grippable frame where that is thicker.
CGRect bareFrame(const DividerHandle& handle);

/// Each call gives what is to be told; absent when nothing.
class DividerGestureRecognizer {
  public:
    /// `clickCount` is 2 for the second press of a double click.
    std::optional<DividerHandleEvent> press(const std::string& handleID, int clickCount, CGPoint location);
    std::optional<DividerHandleEvent> move(CGPoint location);
    std::optional<DividerHandleEvent> release(CGPoint location);
    /// By Escape, or because the handle was taken away.
    std::optional<DividerHandleEvent> cancel(CGPoint location);
    /// Cancels when the handle that is held is not among them.
    std::optional<DividerHandleEvent> keepOnly(std::span<const DividerHandle> handles, CGPoint location);

    bool isHeld() const { return handleID_.has_value(); }

  private:
    std::optional<DividerHandleEvent> tell(DividerHandleEvent::Kind kind, CGPoint location) const;
    std::optional<DividerHandleEvent> letGo(DividerHandleEvent::Kind kind, CGPoint location);

    std::optional<std::string> handleID_; // of the handle that is held
};

} // namespace kova
