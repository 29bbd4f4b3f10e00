// Per display, the tiles that windows had in the layouts that the user replaced, so that a layout with fewer tiles
// loses no placement: with each new layout, windows move from these tiles. Always true: a window is remembered for one
// layout per display ("at home" in it).
#pragma once

#include "workspace/LayoutMigration.h"
#include "workspace/TileAssignments.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kova {

class LayoutHomes {
  public:
    /// Call before the display's layout is replaced: remembers its windows that have no former layout yet. If the
    /// replaced layout is the first one, forgets all others before.
    void leave(const DisplayID& displayID, const ShownLayout& layout, const TileAssignments& assignments);
    /// The windows that are still on the display, by the layout for which they are remembered, the newest first.
    std::vector<LayoutHome> of(const DisplayID& displayID, const TileAssignments& assignments) const;

    /// Forgets the window, which the user has moved.
    void forget(const WindowID& windowID);
    void forgetDisplay(const DisplayID& displayID) { homes_.erase(displayID); }
    void forgetAll() { homes_.clear(); }
    /// After an arrangement: forgets all windows except those that it left stacked.
    void keepOnlyWaiting(const TileAssignments& assignments);
    void keepOnly(const std::set<WindowID>& windowIDs);
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);
    bool operator==(const LayoutHomes&) const = default;

  private:
    void keepIf(const std::function<bool(const WindowID& windowID)>& isKept);

    std::map<DisplayID, std::vector<LayoutHome>> homes_; // by display, the newest layout first
};

} // namespace kova
