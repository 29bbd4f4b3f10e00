// Decides which window comes forward when the front window has left a tile, because it was closed, moved to another
// tile or made to float.
#pragma once

#include "workspace/TileAssignments.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kova {

struct Promotion {
    WindowID windowID;
    TileTarget target;
    bool operator==(const Promotion&) const = default;
};

class StackPromotion {
  public:
    /// Records the tile that a window lost to a span, if it differs from the tile in which the window is stacked now.
    void noteDisplaced(const WindowID& windowID, const TileTarget& lostTarget, const TileTarget& waitingTarget);
    /// Forgets the window, because it is a front window again.
    void forget(const WindowID& windowID) { lostTargets_.erase(windowID); }
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);
    void keepOnly(const std::set<WindowID>& windowIDs);

    /// For each tile that had a front window in `before` and has none in `now`: the windows that may come forward, the
    /// best first. These are the windows of the tile's stack in its order, then windows stacked elsewhere that were
    /// displaced from that tile. Front windows of `before` are no candidates, since they were displaced just now.
    std::vector<std::vector<Promotion>> candidates(const TileAssignments& before, const TileAssignments& now) const;

  private:
    std::map<WindowID, TileTarget> lostTargets_; // by the window that is stacked elsewhere
};

} // namespace kova
