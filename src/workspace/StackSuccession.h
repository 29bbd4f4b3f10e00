// Which window comes forward when the front window of a tile has left it: closed, moved, dropped or floated elsewhere.
#pragma once

#include "workspace/TileAssignments.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kova {

struct Promotion {
    std::string windowID;
    std::string targetID;
    bool operator==(const Promotion&) const = default;
};

class StackSuccession {
  public:
    /// Records the tile that the window lost, which differs from the tile in whose stack it waits when a span displaced
    /// it.
    void noteDisplaced(const std::string& windowID, const std::string& lostTargetID,
                       const std::string& waitingTargetID);
    /// The window fronts a tile again.
    void forget(const std::string& windowID) { lostTargetIDs_.erase(windowID); }
    void rename(const std::string& windowID, const std::string& newID);
    void keepOnly(const std::set<std::string>& windowIDs);

    /// For each tile that had a front window in `before` and has none in `now`: the windows that may come forward, the
    /// best first. These are the ones that wait there, in the order of the stack, then those that wait elsewhere and
    /// were displaced from that tile. Windows that were front windows in `before` are not candidates: they were
    /// displaced just now.
    std::vector<std::vector<Promotion>> candidates(const TileAssignments& before, const TileAssignments& now) const;

  private:
    std::map<std::string, std::string> lostTargetIDs_; // by the window that waits elsewhere
};

} // namespace kova
