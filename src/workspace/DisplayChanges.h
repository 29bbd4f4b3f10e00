// Moves windows to other tiles after displays were connected, disconnected or resized.
#pragma once

#include "windowing/AccessibilityWindowService.h"
#include "workspace/DisplayMemory.h"
#include "workspace/FocusMode.h"
#include "workspace/LayoutFollower.h"
#include "workspace/LiveWindows.h"
#include "workspace/PointerInteraction.h"
#include "workspace/RefreshCycle.h"
#include "workspace/RequestBatch.h"
#include "workspace/SessionRestore.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileKeeper.h"
#include "workspace/UndoSteps.h"
#include "workspace/WindowPresenter.h"
#include "workspace/WorkspaceAccess.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <set>
#include <string>
#include <vector>

namespace kova {

struct WorkspaceParts;

class DisplayChanges {
  public:
    DisplayChanges(WorkspaceParts& parts, RefreshCycle& refreshCycle, WorkspaceAccess& access, TileGeometry& geometry,
                   WindowPresenter& presenter, TileKeeper& keeper, LayoutFollower& follower, UndoSteps& steps,
                   std::function<void(const DisplayID& formerID, const DisplayID& newID)> renameDisplay);

    void readScreens();
    void screensChanged();
    void displayHasNewID(const DisplayID& formerID, const DisplayID& newID);
    void adaptToDisplays();
    void displaysSettled();
    void placeWindowsOfDisconnectedDisplays();

  private:
    bool mayKeepFocusMode(const std::vector<Screen>& before) const;
    void keepFramesAfterFocusMode();
    void recordConnectedAndDisconnected(const std::set<DisplayID>& before);
    void returnStrandedFloats();
    void moveIntoView();
    bool isOnZoomedDisplay(const WorkspaceTile& tile) const;
    std::vector<WindowID> placeFrontsOfDisconnectedDisplays();
    std::vector<WindowID> restackWindowsOfDisconnectedDisplays();
    void keepTilesAfterFocusMode(const std::vector<WindowID>& fronts, const std::vector<WindowID>& stacked);
    void cancelUnreachablePlacements();

    const WorkspaceServices& services_;
    RequestBatch& requests_;
    AccessibilityWindowService& windowService_;
    WorkspaceState& state_;
    LiveWindows& liveWindows_;
    TileAssignments& assignments_;
    DisplayMemory& displays_;
    FocusMode& focusMode_;
    PointerInteraction& pointer_;
    SessionRestore& session_;
    RefreshCycle& refreshCycle_;
    WorkspaceAccess& access_;
    TileGeometry& geometry_;
    WindowPresenter& presenter_;
    TileKeeper& keeper_;
    LayoutFollower& follower_;
    UndoSteps& steps_;
    std::function<void(const DisplayID&, const DisplayID&)> renameDisplay_;
};

} // namespace kova
