// Remembers the windows of disconnected displays. If an arrangement puts these windows on connected displays, the
// assignments before that arrangement are remembered. For each display this object also remembers the layout shown
// last, and the windows in the layouts that the display had at other sizes. Always true: a window is
// remembered for at most one disconnected display; displays count as changing until they have not changed for
// `kSettleTime`, since a display on standby may look disconnected.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "workspace/DisplayAbsence.h"
#include "workspace/LayoutMigration.h"
#include "workspace/PartDefaults.h"
#include "workspace/StrandedFloats.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kova {

struct WorkspaceProfile;

class DisplayMemory : public PartWithoutPolls {
  public:
    static constexpr Seconds kSettleTime{2};

    /// `settled` is called once the displays have not changed for the settle time.
    DisplayMemory(MainQueue& queue, std::function<void()> settled);

    struct Renaming {
        DisplayID formerID;
        DisplayID newID;
    };
    /// Records the windows of disconnected displays, and returns windows to displays that were connected again. The
    /// result lists the displays that only changed their id; the caller renames these displays everywhere.
    [[nodiscard]] std::vector<Renaming> noteConnected(const std::set<DisplayID>& before, const std::set<DisplayID>& now,
                                                      TileAssignments& assignments);
    /// Remembers the windows assigned to the display.
    void rememberDisplay(const DisplayID& displayID, const TileAssignments& assignments);
    /// Remembers the windows of every disconnected display that has assignments and no record yet.
    void rememberDisconnectedDisplays(const TileAssignments& assignments, const std::set<DisplayID>& connected);
    void returnWindowsToDisplay(const DisplayID& displayID, TileAssignments& assignments);
    bool remembersDisplay(const DisplayID& displayID) const { return absence_.remembers({displayID}); }
    /// True if the window belongs to a disconnected display.
    bool belongsToDisconnectedDisplay(const WindowID& windowID) const {
        return absence_.belongsToDisconnectedDisplay(windowID);
    }
    /// By the id of the display.
    const std::map<AbsenceKey, TileAssignments>& disconnectedDisplays() const { return absence_.rememberedTiles(); }
    void restoreDisconnectedDisplays(std::map<AbsenceKey, TileAssignments> held) { absence_.restore(std::move(held)); }
    /// After an undo: replaces the remembered windows by those of the restored assignments.
    void replaceRemembered(const TileAssignments& assignments) { absence_.replaceRemembered(assignments); }

    /// Call before an arrangement puts windows of disconnected displays into tiles of connected ones.
    void noteArrangement(const TileAssignments& assignments);
    /// Reverts such an arrangement once all displays are connected. A hidden window that lost its tile and has none now
    /// returns to that tile, or to another free tile that had a window before the arrangement.
    void returnDisplacedByArrangement(TileAssignments& assignments, const std::set<DisplayID>& connected,
                                      const std::function<bool(const WindowID& windowID)>& isMinimizedByKova);
    /// Windows without a tile; see `StrandedFloats::rememberDisconnected`, `settle` and `takeReturned`.
    void noteStranded(const std::vector<Screen>& before, const std::set<DisplayID>& connected,
                      const std::vector<ManagedWindow>& live, const TileAssignments& tiles) {
        strandedFloats_.rememberDisconnected(before, connected, live, tiles);
    }
    void settleStranded(const WindowID& windowID, const CGRect& frame) { strandedFloats_.settle(windowID, frame); }
    std::vector<std::pair<WindowID, CGRect>> takeReturnedStranded(const std::set<DisplayID>& connected,
                                                                  const std::vector<ManagedWindow>& live,
                                                                  const TileAssignments& tiles) {
        return strandedFloats_.takeReturned(connected, live, tiles);
    }

    /// Remembers the windows of a layout that the display leaves because its size has changed.
    void rememberLayout(const DisplayID& displayID, const std::string& layoutID, const TileAssignments& assignments);
    void returnWindowsToLayout(const DisplayID& displayID, const std::string& layoutID, TileAssignments& assignments);
    /// Forgets the former layouts of a display. Call when the user has chosen a layout for that display.
    void forgetLayouts(const DisplayID& displayID);

    /// Records windows that have their tiles again and must be shown, and windows that are stacked again and must be
    /// hidden; `takeReturned` returns and forgets them.
    void noteReturned(const std::vector<WindowID>& fronts, const std::vector<WindowID>& waiting);
    bool hasReturned() const { return !windowsToShow_.empty() || !windowsToHide_.empty(); }
    struct Returned {
        std::set<WindowID> fronts;
        std::set<WindowID> waiting;
    };
    Returned takeReturned();

    /// Null for a display without a record.
    const ShownLayout* shown(const DisplayID& displayID) const;
    /// Records the tiles of the display. Returns whether they differ from those of the last call.
    bool noteShown(const DisplayID& displayID, const std::string& layoutID, const SolvedLayout& solved);
    /// Copies the chosen layout to the display's new id. The former id keeps the layout only if the user chose it for
    /// that id.
    void carryLayout(WorkspaceProfile& profile, const DisplayID& formerID, const DisplayID& newID);

    /// Restarts the settle time; `settled` is called at its end.
    void beginSettling();
    /// Whether the window's display was disconnected within the settle time.
    bool isWaitingForItsDisplay(const WindowID& windowID) const {
        return isSettling() && belongsToDisconnectedDisplay(windowID);
    }
    bool isSettling() const { return queue_.uptime() < settledAt_; }
    /// Displays that are connected later with another id are no longer matched to displays disconnected until now.
    void forgetRecentlyDisconnected() { recentlyDisconnected_.clear(); }

    /// Records whether focus mode kept windows of disconnected displays out of free tiles.
    void noteKeptOutByFocusMode(bool areKeptOut) { areKeptOutByFocusMode_ = areKeptOut; }
    bool takeKeptOutByFocusMode() { return std::exchange(areKeptOutByFocusMode_, false); }

    /// Forgets the window, which the user has moved.
    void forget(const WindowID& windowID);
    void forgetAllWindows();
    void keepOnly(const std::set<WindowID>& windowIDs);
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);

  private:
    void returnWindows(DisplayAbsence& absence, const AbsenceKey& key, TileAssignments& assignments);

    MainQueue& queue_;
    std::function<void()> settled_;
    DisplayAbsence absence_;
    DisplayAbsence formerLayouts_;      // by display and layout
    TileAssignments beforeArrangement_; // before the first arrangement with a disconnected display
    StrandedFloats strandedFloats_;
    std::set<WindowID> windowsToShow_;
    std::set<WindowID> windowsToHide_;
    std::map<DisplayID, ShownLayout> shown_;   // also of disconnected displays
    std::set<DisplayID> recentlyDisconnected_; // displays named by their frame that were disconnected
    std::set<DisplayID> inheritedLayouts_;     // ids that have a copy of the former id's layout
    Seconds settledAt_{0};
    bool areKeptOutByFocusMode_ = false;
    Lifetime lifetime_;
};

} // namespace kova
