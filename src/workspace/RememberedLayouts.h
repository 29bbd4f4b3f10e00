// Remembers for each display the tiles that windows had in layouts that the user replaced. Each new layout is filled
// from these tiles, so that no placement is lost while a layout with fewer tiles is in force. Always true: a window is
// remembered for at most one layout of a display.
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
    /// Call before the display's layout is replaced: remembers the tiles of windows that are not remembered for another
    /// layout. First forgets all layouts of the display if the replaced layout is the oldest remembered one.
    void leave(const DisplayID& displayID, const ShownLayout& layout, const TileAssignments& assignments);
    /// The remembered windows that are still on the display, per layout, the newest layout first.
    std::vector<RememberedLayout> of(const DisplayID& displayID, const TileAssignments& assignments) const;

    /// Forgets the window. Call when the user has moved it.
    void forget(const WindowID& windowID);
    void forgetDisplay(const DisplayID& displayID) { layoutsByDisplay_.erase(displayID); }
    void forgetAll() { layoutsByDisplay_.clear(); }
    /// Call after an arrangement: forgets all windows except those that are stacked and not in front.
    void keepOnlyWaiting(const TileAssignments& assignments);
    void keepOnly(const std::set<WindowID>& windowIDs);
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);
    bool operator==(const RememberedLayouts&) const = default;

  private:
    void keepIf(const std::function<bool(const WindowID& windowID)>& isKept);

    std::map<DisplayID, std::vector<RememberedLayout>> layoutsByDisplay_; // the newest layout first
};

} // namespace kova
