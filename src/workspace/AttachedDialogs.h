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
    /// Takes the dialogs out of a poll's windows and returns the other windows. If a dialog has moved since it was seen
    /// or put somewhere last, its offset is measured again; a move of its window does not change the offset.
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
    /// Returns the new origins of the window's dialogs for the window's new `frame`, and records them. Dialogs move as
    /// far as the window does, but stay inside `visibleArea` as far as they fit. Dialogs that need not move are left
    /// out.
    std::vector<Move> moveWithWindow(const WindowID& windowID, const CGRect& frame, const CGRect& visibleArea);

  private:
    struct Place {
        CGPoint offset{}; // from the window's origin to the dialog's; only the user or the application changes it
        CGPoint origin{}; // the dialog's origin as it was seen or requested last
    };

    std::vector<ManagedWindow> dialogs_;
    std::map<WindowID, Place> places_; // by the dialog's id
};

} // namespace kova
