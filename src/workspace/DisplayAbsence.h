// Remembers the windows that displays had when they were disconnected, so that every window returns to its tile when
// its display is connected again. Another object of this class remembers the windows of layouts that a display cannot
// show for a while, because it has another size. Always true: a window is remembered for at most one display, the first
// that was disconnected.
#pragma once

#include "workspace/TileAssignments.h"

#include <compare>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kova {

struct ReturnedWindows {
    TileAssignments assignments;
    std::vector<WindowID> returnedFronts;  // became front windows of tiles in which they were not in front before
    std::vector<WindowID> returnedStacked; // became stacked in tiles in which they were not stacked before
};
/// Adds the windows of `remembered` to `assignments`, in their former tiles. Windows that were placed there meanwhile
/// are stacked behind them.
ReturnedWindows withRememberedWindows(const TileAssignments& remembered, TileAssignments assignments);

struct AbsenceKey {
    DisplayID displayID;
    std::string layoutID{}; // the layout that cannot be shown; empty for a disconnected display
    auto operator<=>(const AbsenceKey&) const = default;
};

class DisplayAbsence {
  public:
    /// Remembers the windows on the key's display, except those that are remembered already for another key.
    void remember(const AbsenceKey& key, const TileAssignments& assignments);

    /// Adds the windows of the key to the assignments, as `withRememberedWindows` says, and forgets the key.
    ReturnedWindows returnWindows(const AbsenceKey& key, TileAssignments assignments);
    bool remembers(const AbsenceKey& key) const { return rememberedTiles_.contains(key); }

    bool belongsToDisconnectedDisplay(const WindowID& windowID) const;
    /// Call when the user has moved the window.
    void forget(const WindowID& windowID);
    void forgetAll() { rememberedTiles_.clear(); }
    void forgetDisplay(const DisplayID& displayID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);
    void keepOnly(const std::set<WindowID>& windowIDs);
    void rename(const WindowID& windowID, const WindowID& newID);
    /// Call after an undo. If the restored assignments have windows on a remembered display, these windows replace the
    /// remembered ones.
    void replaceRemembered(const TileAssignments& assignments);

    const std::map<AbsenceKey, TileAssignments>& rememberedTiles() const { return rememberedTiles_; }
    void restore(std::map<AbsenceKey, TileAssignments> tiles) { rememberedTiles_ = std::move(tiles); }

  private:
    void dropEmpty();

    std::map<AbsenceKey, TileAssignments> rememberedTiles_;
};

} // namespace kova
