// The windows that displays had when they were disconnected, so that every window returns to its slot with its display.
// Also used for layouts that a display cannot show for a while, because it has another size. Always true: a window is
// remembered for at most one display, the first that was disconnected.
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
    std::vector<WindowID> returnedFronts;  // front windows again, after they had lost their tiles
    std::vector<WindowID> returnedWaiting; // now stacked in a tile in which they were not stacked before
};
/// Puts the windows of `held` back into their tiles, in front of windows placed there since.
ReturnedWindows withRememberedWindows(const TileAssignments& held, TileAssignments assignments);

struct AbsenceKey {
    DisplayID displayID;
    std::string layoutID{}; // the layout that cannot be shown; empty for a disconnected display
    auto operator<=>(const AbsenceKey&) const = default;
};

class DisplayAbsence {
  public:
    /// Remembers the windows on the key's display, except those that belong to another disconnected display.
    void remember(const AbsenceKey& key, const TileAssignments& assignments);

    using Return = ReturnedWindows;
    /// Restores every remembered window to its tile, in front of windows placed there in the meantime.
    Return returnWindows(const AbsenceKey& key, TileAssignments assignments);
    bool remembers(const AbsenceKey& key) const { return rememberedTiles_.contains(key); }

    bool belongsToDisconnectedDisplay(const WindowID& windowID) const;
    /// Forgets the window, which the user has moved.
    void forget(const WindowID& windowID);
    void forgetAll() { rememberedTiles_.clear(); }
    void forgetDisplay(const DisplayID& displayID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);
    void keepOnly(const std::set<WindowID>& windowIDs);
    void rename(const WindowID& windowID, const WindowID& newID);
    /// After an undo: replaces the remembered windows by those that the restored assignments have on these displays.
    void replaceRemembered(const TileAssignments& assignments);

    const std::map<AbsenceKey, TileAssignments>& rememberedTiles() const { return rememberedTiles_; }
    void restore(std::map<AbsenceKey, TileAssignments> tiles) { rememberedTiles_ = std::move(tiles); }

  private:
    void dropEmpty();

    std::map<AbsenceKey, TileAssignments> rememberedTiles_;
};

} // namespace kova
