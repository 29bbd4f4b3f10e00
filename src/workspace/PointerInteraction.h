// The state of the pointer: idle, a button is down on a window, a window is being dragged, or a divider is being
// dragged. Always true: exactly one of these four states holds, and each drag holds a snapshot from before the drag. A
// drag pauses polls, because a poll would move the dragged window back. The pause ends shortly after the drag, or when
// the pointer stops moving.
#pragma once

#include "workspace/DividerDrag.h"
#include "workspace/PartDefaults.h"
#include "workspace/PollPause.h"
#include "workspace/UndoHistory.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>

namespace kova {

class PointerInteraction : public PartWithoutPolls {
  public:
    /// A button is down on a window. The window may move before the drag is detected.
    struct Press {
        WindowID windowID;
        std::optional<CGRect> frame; // at the press, in window-service space
    };
    struct WindowDrag {
        WindowID windowID;
        WorkspaceUndoSnapshot before;
    };
    struct DividerMove {
        ActiveDividerDrag drag;
        WorkspaceUndoSnapshot before;
        std::map<WindowID, CGRect> frames; // last written, by window id, in window-service space
    };

    /// `moveDivider` is called when a movement of the divider is due, `resumed` when polls may move windows again.
    PointerInteraction(MainQueue& queue, std::function<void()> moveDivider, std::function<void()> resumed);

    /// Whether the window is pressed or dragged. Only the pointer may move such a window.
    bool isHolding(const WindowID& windowID) const { return isPressing(windowID) || isDragging(windowID); }
    bool isPressing(const WindowID& windowID) const;
    bool isDragging(const WindowID& windowID) const;
    /// Whether any window or divider is being dragged.
    bool isDragging() const;
    /// Whether a button is down on any window, or any window is being dragged.
    bool isOnWindow() const;
    bool isPausingPolls() const { return pause_.isActive(); }

    /// Records that a button is down on the window. No-op during a drag.
    void press(WindowID windowID, const std::optional<CGRect>& frame);
    /// Ends the press and returns the pressed window; absent if a drag has begun.
    std::optional<Press> release();

    void beginWindowDrag(WindowID windowID, WorkspaceUndoSnapshot before);
    /// The window that is being dragged; absent when none is.
    std::optional<WindowID> draggedWindow() const;
    std::optional<WindowDrag> endWindowDrag();

    void beginDividerDrag(const DisplayLayoutDivider& target, const LayoutWeightOverrides& weights,
                          WorkspaceUndoSnapshot before, std::map<WindowID, CGRect> frames);
    /// Null when no divider is dragged.
    const ActiveDividerDrag* dividerDrag() const;
    bool isDragging(const DisplayLayoutDivider& divider) const { return divider_.isDragging(divider); }
    void moveDivider(double translationPoints) { divider_.update(translationPoints); }
    /// Changes the weights by the pending translation; false if none is pending.
    bool takeDividerTranslation() { return divider_.takePendingTranslation(); }
    /// Records the frame as written. True if it differs from the frame that the drag last wrote for the window.
    bool noteDividerFrame(const WindowID& windowID, const CGRect& frame);
    std::optional<DividerMove> endDividerDrag();

    /// Prolongs the pause of polls, after a movement of the pointer.
    void noteMovement() { pause_.noteMovement(); }
    void resumePollsAfter(Seconds delay) { pause_.endAfter(delay); }
    /// Resets to idle. True if polls were paused, so that the caller must poll again.
    bool abandon();

    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);

  private:
    struct DraggingDivider {
        WorkspaceUndoSnapshot before;
        std::map<WindowID, CGRect> frames;
    };

    std::variant<std::monostate, Press, WindowDrag, DraggingDivider> gesture_;
    DividerDrag divider_; // active exactly while `gesture_` is a `DraggingDivider`
    PollPause pause_;
};

} // namespace kova
