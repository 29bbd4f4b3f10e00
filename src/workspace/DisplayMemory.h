// Remembers the windows of disconnected displays. If an arrangement puts these windows on connected displays, the
// assignments before that arrangement are remembered as well. For each display, this object also remembers the layout
// that was shown last, and the windows in the layouts that the display had at other sizes. Always true: a window is
// remembered for at most one disconnected display. Displays count as changing until they have not changed for
// `kSettleTime`, since a display on standby may look disconnected for a moment.
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
    /// Call when the set of connected displays has changed from `before` to `now`. Remembers the windows of displays
    /// that were disconnected. Puts windows back into the tiles of displays that were connected again. The result lists
    /// the displays of which only the id has changed; the caller renames these displays everywhere.
    [[nodiscard]] std::vector<Renaming> noteConnected(const std::set<DisplayID>& before, const std::set<DisplayID>& now,
                                                      TileAssignments& assignments);
    /// Remembers the windows assigned to the display.
    void rememberDisplay(const DisplayID& displayID, const TileAssignments& assignments);
    /// Remembers the windows of every disconnected display that has front windows and is not remembered yet.
    void rememberDisconnectedDisplays(const TileAssignments& assignments, const std::set<DisplayID>& connected);
    /// Puts the remembered windows of the display back into its tiles, and forgets them.
    void returnWindowsToDisplay(const DisplayID& displayID, TileAssignments& assignments);
    bool remembersDisplay(const DisplayID& displayID) const { return absence_.remembers({displayID}); }
    bool belongsToDisconnectedDisplay(const WindowID& windowID) const {
        return absence_.belongsToDisconnectedDisplay(windowID);
    }
    /// The remembered windows of each disconnected display. The layout id of each key is empty.
    const std::map<AbsenceKey, TileAssignments>& disconnectedDisplays() const { return absence_.rememberedTiles(); }
    void restoreDisconnectedDisplays(std::map<AbsenceKey, TileAssignments> tiles) {
        absence_.restore(std::move(tiles));
    }
    /// See `DisplayAbsence::replaceRemembered`.
    void replaceRemembered(const TileAssignments& assignments) { absence_.replaceRemembered(assignments); }

    /// Call before every arrangement. Records the assignments if a display is disconnected and none are recorded yet.
    void noteArrangement(const TileAssignments& assignments);
    /// Once all displays are connected, gives tiles to the recorded windows that KOVA has minimized and that have no
    /// tile now. Such a window returns to its recorded tile or, if that tile is taken, to another free tile of the
    /// record.
    void returnDisplacedByArrangement(TileAssignments& assignments, const std::set<DisplayID>& connected,
                                      const std::function<bool(const WindowID& windowID)>& isMinimizedByKova);
    /// The next three are for windows without a tile; see `StrandedFloats::rememberDisconnected`, `settle` and
    /// `takeReturned`.
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

    /// Remembers the windows of a layout that the display no longer shows because its size has changed.
    void rememberLayout(const DisplayID& displayID, const std::string& layoutID, const TileAssignments& assignments);
    /// Puts the remembered windows of the layout back into its tiles, and forgets them.
    void returnWindowsToLayout(const DisplayID& displayID, const std::string& layoutID, TileAssignments& assignments);
    /// Forgets the windows that the display had in former layouts and before an arrangement. Call when the user has
    /// chosen a layout for the display.
    void forgetLayouts(const DisplayID& displayID);

    /// Records front windows that must be shown, and stacked windows that must be hidden, because their tiles have
    /// changed. `takeWindowsToPresent` returns and forgets them.
    void noteWindowsToPresent(const std::vector<WindowID>& toShow, const std::vector<WindowID>& toHide);
    bool hasWindowsToPresent() const { return !windowsToShow_.empty() || !windowsToHide_.empty(); }
    struct WindowsToPresent {
        std::set<WindowID> toShow;
        std::set<WindowID> toHide;
    };
    WindowsToPresent takeWindowsToPresent();

    /// Null for a display without a record.
    const ShownLayout* shown(const DisplayID& displayID) const;
    /// Records the layout and the tiles that the display shows. Returns whether they differ from those recorded before;
    /// false for a display without a record.
    bool noteShown(const DisplayID& displayID, const std::string& layoutID, const SolvedLayout& solved);
    /// Copies the chosen layout from the display's former id to its new id. The former id keeps the layout too, unless
    /// it has only a copy that an earlier call made.
    void carryLayout(WorkspaceProfile& profile, const DisplayID& formerID, const DisplayID& newID);

    /// Restarts the settle time; `settled` is called at its end.
    void beginSettling();
    /// Whether the window's display is disconnected, but may return soon because the displays have not settled yet.
    bool isWaitingForItsDisplay(const WindowID& windowID) const {
        return isSettling() && belongsToDisconnectedDisplay(windowID);
    }
    bool isSettling() const { return queue_.uptime() < settledAt_; }
    /// Call when the displays have settled. A display that is connected later is not matched to the displays that were
    /// disconnected before.
    void forgetRecentlyDisconnected() { recentlyDisconnected_.clear(); }

    /// Records whether focus mode kept windows of disconnected displays out of free tiles. If so, they are placed when
    /// focus mode ends.
    void noteKeptOutByFocusMode(bool areKeptOut) { areKeptOutByFocusMode_ = areKeptOut; }
    bool takeKeptOutByFocusMode() { return std::exchange(areKeptOutByFocusMode_, false); }

    /// Call when the user has moved the window: it no longer returns to a display, a layout or a tile.
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
    TileAssignments beforeArrangement_; // before the first arrangement while a display was disconnected
    StrandedFloats strandedFloats_;
    std::set<WindowID> windowsToShow_;
    std::set<WindowID> windowsToHide_;
    std::map<DisplayID, ShownLayout> shown_;   // also of disconnected displays
    std::set<DisplayID> recentlyDisconnected_; // only displays named by their frame; until displays settle
    std::set<DisplayID> inheritedLayouts_;     // ids whose layout is a copy of their former id's layout
    Seconds settledAt_{0};
    bool areKeptOutByFocusMode_ = false;
    Lifetime lifetime_;
};

} // namespace kova
