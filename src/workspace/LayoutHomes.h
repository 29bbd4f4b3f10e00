// Where the windows of a display were before the user chose other layouts for it, so that layouts with fewer tiles cost
// no window its place: whichever layout follows, windows go where they would go from their own tile.
// Always true: a window is at home once per display at most.
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
    /// The display leaves its layout with these assignments: windows without a home are at home there. When it leaves
    /// the layout with which it began, everything is forgotten first.
    void leave(const std::string& displayID, const ShownLayout& layout, const TileAssignments& assignments);
    /// The windows that are still on the display, by the layout in which they are at home, the newest first.
    std::vector<LayoutHome> of(const std::string& displayID, const TileAssignments& assignments) const;

    /// The user has put the window elsewhere.
    void forget(const std::string& windowID);
    void forgetDisplay(const std::string& displayID) { homes_.erase(displayID); }
    void forgetAll() { homes_.clear(); }
    /// After an arrangement only windows that it left waiting in a stack are still away from home.
    void keepOnlyWaiting(const TileAssignments& assignments);
    void keepOnly(const std::set<std::string>& windowIDs);
    void rename(const std::string& windowID, const std::string& newID);
    void renameDisplay(const std::string& displayID, const std::string& newID);
    bool operator==(const LayoutHomes&) const = default;

  private:
    void keepIf(const std::function<bool(const std::string& windowID)>& isKept);

    std::map<std::string, std::vector<LayoutHome>> homes_; // by display, the newest layout first
};

} // namespace kova
