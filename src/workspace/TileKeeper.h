// Keeps windows and tiles consistent: places windows, gives them room, fills tiles that lost their window, and commits
// what an operation has changed.
#pragma once

#include "support/Lifetime.h"
#include "windowing/AccessibilityWindowService.h"
#include "workspace/ArrangementMemory.h"
#include "workspace/AwaitedWindows.h"
#include "workspace/DisplayMemory.h"
#include "workspace/FloatingWindows.h"
#include "workspace/FocusMode.h"
#include "workspace/FrameKeeper.h"
#include "workspace/LiveWindows.h"
#include "workspace/PointerInteraction.h"
#include "workspace/RequestBatch.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileMemory.h"
#include "workspace/Transaction.h"
#include "workspace/WindowPresenter.h"
#include "workspace/WorkspaceAccess.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kova {

struct WorkspaceParts;

enum class Focusing { no, yes };

class TileKeeper {
  public:
    TileKeeper(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry, WindowPresenter& presenter);

    /// Ends every operation that edits tiles: the only place that publishes the assignments.
    void commit(const Transaction& changes);
    /// Raises the layout revision, so that overlays and divider handles are updated. `commit` calls this if tiles have
    /// moved; a divider drag calls it for each movement.
    void raiseRevision();
    /// Gives the tiles to the window. The next `commit` hides the windows that lost them and requests the window's
    /// frame.
    void place(const ManagedWindow& window, const Covering& covering, AccessibilityWindowService::BringToFront raise);
    /// Places the window in one tile. False if there is no such window or tile.
    bool placeInTile(const WindowID& windowID, const TileTarget& target, Focusing focusing);
    /// Places the window in one tile and commits.
    bool placeWindow(const WindowID& windowID, const TileTarget& target, Focusing focusing);
    /// Publishes a notice if the window took more than one tile.
    void announceClaim(const ManagedWindow& window, const Covering& covering);
    /// Fills tiles that have lost their front window since `before` from their stacks.
    void bringNextForward(const TileAssignments& before);
    /// Windows that need less room than when they claimed their span keep only the tiles that they need.
    void giveBackSpans();
    /// Records that the window kept `actual` after a request for `wanted`; both in window-service space.
    void minimumSizeObserved(const WindowID& windowID, const CGRect& wanted, const CGRect& actual);
    /// Drops learned minimum sizes for which a smaller window was seen.
    void noteSizesSeen();
    /// Requests a size below the window's learned minimum once, if that is due.
    void retryMinimum(const WindowID& windowID);
    void publishMinimums() { state_.observedMinimumSizes.set(frames_.sizes().observed()); }
    /// Publishes and stores the profile.
    void setProfile(WorkspaceProfile profile);
    /// Commits after tiles of the display have moved.
    void layoutChanged(const DisplayID& displayID);
    /// `weights` without splits restore the layout's own weights.
    void storeWeights(const DisplayID& displayID, const std::string& layoutID, LayoutWeightOverrides weights);
    /// Marks the window as placed, so that rules do not move it.
    void exemptFromRules(const WindowID& windowID);
    /// Forgets all remembered tiles of the window.
    void noteMovedByUser(const WindowID& windowID);

  private:
    struct Placed {
        WindowID windowID;
        AccessibilityWindowService::BringToFront raise;
    };

    std::vector<WindowID> takeTiles(const WindowID& windowID, const Covering& covering);
    void hideDisplaced();
    void requestFramesOfPlaced();
    void publishAssignments();
    bool noteTileGeometry();
    void keepFloatingValid();
    bool bringForward(const Promotion& promotion);
    void claimRoomWhereNeeded(const WindowID& first);
    std::optional<std::pair<ManagedWindow, Covering>> nextClaimOn(const Screen& screen, const WindowID& first,
                                                                  const std::set<WindowID>& done) const;
    void moveOutOfTheWay(const Screen& screen, const std::pair<ManagedWindow, Covering>& claim);
    void reflow(const WindowID& windowID);
    void rememberMinimum(const ManagedWindow& window, std::optional<CGSize> minimum);
    void makeRoomFor(const ManagedWindow& window);

    const WorkspaceServices& services_;
    RequestBatch& requests_;
    AccessibilityWindowService& windowService_;
    WorkspaceState& state_;
    LiveWindows& liveWindows_;
    TileAssignments& assignments_;
    TileMemory& tileMemory_;
    DisplayMemory& displays_;
    FocusMode& focusMode_;
    FloatingWindows& floating_;
    PointerInteraction& pointer_;
    FrameKeeper& frames_;
    AwaitedWindows& awaited_;
    ArrangementMemory& arrangementMemory_;
    WorkspaceAccess& access_;
    TileGeometry& geometry_;
    WindowPresenter& presenter_;
    std::vector<WindowID> displaced_; // since the last commit
    std::vector<Placed> placed_;      // since the last commit
    Lifetime lifetime_;
};

} // namespace kova
