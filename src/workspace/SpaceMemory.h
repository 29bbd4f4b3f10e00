// Tiles and pending frames of windows on other Spaces (virtual desktops). While a Space is not shown, its windows keep
// their tiles in the assignments. If such a tile is given to another window, the former window's tile is remembered
// here. Always true: a window has at most one remembered tile or stack.
#pragma once

#include "windowing/ManagedWindow.h"
#include "workspace/SpaceChange.h"
#include "workspace/TileAssignments.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

class SpaceMemory {
  public:
    /// The remembered tiles of one Space; where Spaces have no numbers, those of one operation.
    struct Places {
        std::optional<std::uint64_t> space; // absent where Spaces have no numbers
        TileAssignments tiles;
        bool operator==(const Places&) const = default;
    };

    /// Removes the windows that are elsewhere from the assignments and remembers their tiles.
    void store(const std::vector<ManagedWindow>& windows, TileAssignments& assignments);
    /// Like `store`, but only for windows in these tiles, in front or stacked.
    void storeFrom(const std::vector<TileTarget>& targets, const std::vector<ManagedWindow>& windows,
                   TileAssignments& assignments);
    /// Call when a poll has found which Space is shown. Puts the windows of that Space back into their remembered
    /// tiles, in front of windows placed there since. Forgets the remembered tiles of windows that were sent to another
    /// Space or already have a tile. If any window returns to its tile, also stores the windows that are elsewhere now
    /// and returns true.
    bool restore(const std::vector<ManagedWindow>& windows, std::uint64_t shownSpace, SpaceChange change,
                 TileAssignments& assignments);

    /// Remembers the frame (window-service space) until the window is shown and its application responds.
    void setPendingFrame(const WindowID& windowID, const CGRect& frame) { pendingFrames_[windowID] = frame; }
    /// Returns and removes the pending frames of windows that are shown and whose application responds.
    std::map<WindowID, CGRect> takeAppliableFrames(const std::vector<ManagedWindow>& windows);

    /// Whether a tile of the window is remembered here.
    bool holds(const WindowID& windowID) const;
    void keepOnly(const std::set<WindowID>& windowIDs);
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);

    const std::vector<Places>& places() const { return places_; }
    void setPlaces(std::vector<Places> places) { places_ = std::move(places); }
    bool operator==(const SpaceMemory&) const = default;

  private:
    void add(const std::optional<std::uint64_t>& space, TileAssignments held);

    std::vector<Places> places_;
    std::map<WindowID, CGRect> pendingFrames_;
};

} // namespace kova
