// Dialogs that belong to a window. Tiles, rules, scenes and stacks ignore dialogs: a dialog stays where its application
// put it, and moves with its window. Frames are in window-service space.
#pragma once

#include "windowing/ManagedWindow.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kova {

class AttachedDialogs {
  public:
    /// Removes the dialogs from a poll's windows and returns the other windows. A dialog that moved by itself gets its
    /// new offset; moving its window does not change the offset.
    std::vector<ManagedWindow> takeFrom(std::vector<ManagedWindow> found);

    const std::vector<ManagedWindow>& all() const { return dialogs_; }
    /// Null when no dialog has the id.
    const ManagedWindow* find(const WindowID& id) const;
    /// The window to which the dialog belongs. For an id that is not a dialog's, that id itself.
    WindowID ownerOf(const WindowID& id) const;

    struct Move {
        ManagedWindow dialog;
        CGPoint origin{};
    };
    /// The new origins of the window's dialogs when the window moves to `frame`. The dialogs move by the same amount,
    /// but stay inside `visibleArea` as far as they fit. Records the new origins. Dialogs that need not move are left
    /// out.
    std::vector<Move> follow(const WindowID& windowID, const CGRect& frame, const CGRect& visibleArea);

  private:
    struct Place {
        CGPoint offset{}; // from the window's origin, as the user or the application chose it
        CGPoint origin{}; // where the dialog was seen or put last
    };

    std::vector<ManagedWindow> dialogs_;
    std::map<WindowID, Place> places_; // by the dialog's id
};

} // namespace kova
