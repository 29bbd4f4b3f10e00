// What windows on other Spaces (virtual desktops) come back to. While a Space is not shown its windows keep their tiles
// in the assignments; only when such a tile is given to another window is the place remembered here instead.
// Always true: a window has at most one place here.
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
    /// Places that were given up together.
    struct Places {
        std::optional<std::uint64_t> space; // absent where Spaces have no numbers
        TileAssignments tiles;
        bool operator==(const Places&) const = default;
    };

    /// Takes the windows that are elsewhere out of the assignments and remembers their places.
    void store(const std::vector<ManagedWindow>& windows, TileAssignments& assignments);
    /// Does so only for windows in these tiles, in front or stacked.
    void storeFrom(const std::vector<std::string>& targets, const std::vector<ManagedWindow>& windows,
                   TileAssignments& assignments);
    /// Returns windows whose Space is shown again to their tiles, in front of windows placed there since. Windows that
    /// are elsewhere now are removed. A window that moved to another Space, or has a tile by now, is not returned. True
    /// if any was returned.
    bool restore(const std::vector<ManagedWindow>& windows, std::uint64_t shownSpace, SpaceChange change,
                 TileAssignments& assignments);

    /// The window is to have the frame (window-service space) once it is shown and answers.
    void setPendingFrame(const std::string& windowID, const CGRect& frame) { pendingFrames_[windowID] = frame; }
    /// Returns and removes the pending frames of windows that are shown and whose application responds.
    std::map<std::string, CGRect> takeAppliableFrames(const std::vector<ManagedWindow>& windows);

    /// Whether a place of the window is remembered here.
    bool holds(const std::string& windowID) const;
    void keepOnly(const std::set<std::string>& windowIDs);
    void rename(const std::string& windowID, const std::string& newID);
    void renameDisplay(const std::string& displayID, const std::string& newID);

    const std::vector<Places>& places() const { return places_; }
    void setPlaces(std::vector<Places> places) { places_ = std::move(places); }
    bool operator==(const SpaceMemory&) const = default;

  private:
    void add(const std::optional<std::uint64_t>& space, TileAssignments held);

    std::vector<Places> places_;
    std::map<std::string, CGRect> pendingFrames_;
};

} // namespace kova
