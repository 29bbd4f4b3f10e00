// What displays held when they went away, so that every window finds its slot again when its display returns. The same
// for layouts that a display cannot show for a while, because it has another size.
// Always true: a window has at most one home here, the first that went away.
#pragma once

#include "workspace/TileAssignments.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace kova {

struct ReturnOfResidents {
    TileAssignments assignments;
    std::vector<std::string> regainedFronts;  // in front again of tiles that they had lost meanwhile
    std::vector<std::string> regainedWaiting; // behind others again, and were not meanwhile
};
/// The assignments with the windows of `held` in the places that they have there, in front of those that came into
/// these tiles meanwhile.
ReturnOfResidents withResidentsBack(const TileAssignments& held, TileAssignments assignments);

class DisplayAbsence {
  public:
    /// What is on the display is kept under the key, but for windows that are guests there.
    void leave(const std::string& key, const std::string& displayID, const TileAssignments& assignments);

    using Return = ReturnOfResidents;
    /// Everybody who was not forgotten is back in their slot, in front of who came there meanwhile.
    Return comeBack(const std::string& key, TileAssignments assignments);
    bool holds(const std::string& key) const { return homes_.contains(key); }

    bool isHomeless(const std::string& windowID) const;
    /// The user has put the window elsewhere.
    void forget(const std::string& windowID);
    void forgetAll() { homes_.clear(); }
    /// What was kept under keys that begin so.
    void forgetKeys(const std::string& prefix);
    /// The display is known under another id from now on, and its keys begin with that.
    void renameDisplay(const std::string& displayID, const std::string& newID);
    void keepOnly(const std::set<std::string>& windowIDs);
    void rename(const std::string& windowID, const std::string& newID);
    /// The assignments were set back to a time at which these displays had windows: that is what they held.
    void restate(const TileAssignments& assignments);

    const std::map<std::string, TileAssignments>& homes() const { return homes_; }
    void restore(std::map<std::string, TileAssignments> homes) { homes_ = std::move(homes); }

  private:
    void dropEmpty();

    std::map<std::string, TileAssignments> homes_;
};

} // namespace kova
