// What is known of windows and tiles beside the assignments of now: places on virtual desktops that are not shown, in
// layouts that the user has left, tiles that were lost to others, and which windows have had their place and are not
// moved by rules any more. Always true: a window that is gone is in none of them.
#pragma once

#include "workspace/LayoutHomes.h"
#include "workspace/SpaceMemory.h"
#include "workspace/StackSuccession.h"

#include <functional>
#include <set>
#include <string>

namespace kova {

class TileMemory {
  public:
    SpaceMemory& spaces() { return spaces_; }
    const SpaceMemory& spaces() const { return spaces_; }
    LayoutHomes& homes() { return homes_; }
    const LayoutHomes& homes() const { return homes_; }
    StackSuccession& succession() { return succession_; }

    /// Windows that rules have been asked about, or that have a place otherwise.
    const std::set<std::string>& placed() const { return placed_; }
    bool isPlaced(const std::string& windowID) const { return placed_.contains(windowID); }
    void notePlaced(const std::string& windowID) { placed_.insert(windowID); }
    void keepPlaced(const std::function<bool(const std::string& windowID)>& isLive);

    void keepOnly(const std::set<std::string>& windowIDs);
    void rename(const std::string& windowID, const std::string& newID);
    void renameDisplay(const std::string& displayID, const std::string& newID);

  private:
    SpaceMemory spaces_;
    LayoutHomes homes_;
    StackSuccession succession_;
    std::set<std::string> placed_;
};

} // namespace kova
