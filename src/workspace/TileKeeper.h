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
    /// Increments the layout revision, so that overlays and divider handles are updated. `commit` calls this if tiles
    /// have moved; a divider drag calls it for each movement.
    void raiseRevision();
    /// Makes the window the front window of the tiles. The next `commit` hides the windows that lost these tiles, and
    /// requests the frame of the placed window.
    void place(const ManagedWindow& window, const Covering& covering, AccessibilityWindowService::BringToFront raise);
    /// Places the window in the tile, or in a span with that anchor if it needs more room. False if there is no such
    /// window or tile.
    bool placeInTile(const WindowID& windowID, const TileTarget& target, Focusing focusing);
    /// Like `placeInTile`, and commits.
    bool placeWindow(const WindowID& windowID, const TileTarget& target, Focusing focusing);
    /// Publishes a notice if the window took more than one tile.
    void announceClaim(const ManagedWindow& window, const Covering& covering);
    /// Brings a stacked window to the front of each tile that has lost its front window since `before`.
    void bringNextForward(const TileAssignments& before);
    /// If a window needs less room than when it claimed its span, takes away the tiles that it no longer needs.
    void giveBackSpans();
    /// Records that the window has the frame `actual` after a request for `wanted`. Both are in window-service space.
    void minimumSizeObserved(const WindowID& windowID, const CGRect& wanted, const CGRect& actual);
    /// Forgets the learned minimum sizes of windows that are smaller now.
    void noteSizesSeen();
    /// Requests once a size below the window's learned minimum size, if `WindowSizes::isRetryDue` says so.
    void retryMinimum(const WindowID& windowID);
    void publishMinimums() { state_.observedMinimumSizes.set(frames_.sizes().observed()); }
    /// Publishes and stores the profile.
    void setProfile(WorkspaceProfile profile);
    /// Call after tiles of the display have moved. Updates everything that depends on their frames, and commits.
    void layoutChanged(const DisplayID& displayID);
    /// `weights` without splits restore the layout's own weights.
    void storeWeights(const DisplayID& displayID, const std::string& layoutID, LayoutWeightOverrides weights);
    /// Marks the window as handled by rules, so that they do not move it any more. No-op while rules are switched off.
    void exemptFromRules(const WindowID& windowID);
    /// Call when the user has moved the window: forgets all its remembered tiles, and exempts it from rules.
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
