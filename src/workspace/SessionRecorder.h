// Describes the session for storing, and restores it at the start.
#pragma once

#include "workspace/DisplayChanges.h"
#include "workspace/DisplayMemory.h"
#include "workspace/FloatingWindows.h"
#include "workspace/FocusMode.h"
#include "workspace/FrameKeeper.h"
#include "workspace/LayoutFollower.h"
#include "workspace/LiveWindows.h"
#include "workspace/SessionRestore.h"
#include "workspace/SessionResumption.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileKeeper.h"
#include "workspace/TileMemory.h"
#include "workspace/TransitionRecovery.h"
#include "workspace/UndoSteps.h"
#include "workspace/WindowFinder.h"
#include "workspace/WindowPresenter.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace kova {

struct WorkspaceParts;

class SessionRecorder {
  public:
    SessionRecorder(WorkspaceParts& parts, TileGeometry& geometry, const WindowFinder& finder,
                    WindowPresenter& presenter, TileKeeper& keeper, LayoutFollower& follower, UndoSteps& steps,
                    DisplayChanges& displayChanges);

    std::optional<WorkspaceSession> describeSession();
    bool restoreSession();
    void followWindowManager();
    void hideStackedWindowsAgain();
    std::set<WindowID> unlistedButExpectedWindowIDs();

  private:
    WorkspaceSessionWindow sessionWindow(const ManagedWindow& window, const std::map<WindowID, CGSize>& minimums);
    void restoreTiles(const WorkspaceSession& session, const ResumedWindows& resumed);
    std::set<DisplayID> restoreDisplays(const WorkspaceSession& session);
    void expectReturns(const WorkspaceSession& session, const ResumedWindows& resumed);
    std::set<DisplayID> restoreResizedDisplays();
    void acceptPlacesOfWindows(const std::set<DisplayID>& returnedDisplayIDs);
    bool isBackBehindFront(const ManagedWindow& window, const std::optional<CGRect>& formerFrame) const;

    const WorkspaceServices& services_;
    WorkspaceState& state_;
    LiveWindows& liveWindows_;
    TileAssignments& assignments_;
    TileMemory& tileMemory_;
    DisplayMemory& displays_;
    const FocusMode& focusMode_;
    FloatingWindows& floating_;
    FrameKeeper& frames_;
    const TransitionRecovery& recovery_;
    SessionRestore& session_;
    TileGeometry& geometry_;
    const WindowFinder& finder_;
    WindowPresenter& presenter_;
    TileKeeper& keeper_;
    LayoutFollower& follower_;
    UndoSteps& steps_;
    DisplayChanges& displayChanges_;
    std::optional<std::uint64_t> windowManagerChanges_; // as of the last poll
};

} // namespace kova
