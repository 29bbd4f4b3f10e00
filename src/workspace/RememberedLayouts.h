// Remembers for each display the tiles that windows had in the layouts that the user replaced, so that no placement is
// lost while a layout with fewer tiles is in force: each new layout is filled from these tiles. Always true: per
// display, a window is remembered for one layout, its home.
#pragma once

#include "workspace/LayoutMigration.h"
#include "workspace/TileAssignments.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kova {

class RememberedLayouts {
  public:
    /// Call before the display's layout is replaced: remembers the windows that have no home yet. First forgets all
    /// homes if the replaced layout is the oldest remembered one.
    void leave(const DisplayID& displayID, const ShownLayout& layout, const TileAssignments& assignments);
    /// The remembered windows that are still on the display, per layout, the newest layout first.
    std::vector<RememberedLayout> of(const DisplayID& displayID, const TileAssignments& assignments) const;

    /// Forgets the window, which the user has moved.
    void forget(const WindowID& windowID);
    void forgetDisplay(const DisplayID& displayID) { homes_.erase(displayID); }
    void forgetAll() { homes_.clear(); }
    /// After an arrangement: forgets all windows except those that it left stacked.
    void keepOnlyWaiting(const TileAssignments& assignments);
    void keepOnly(const std::set<WindowID>& windowIDs);
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);
    bool operator==(const RememberedLayouts&) const = default;

  private:
    void keepIf(const std::function<bool(const WindowID& windowID)>& isKept);

    std::map<DisplayID, std::vector<RememberedLayout>> homes_; // the newest layout first
};

} // namespace kova
