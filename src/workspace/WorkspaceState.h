// The published state of the workspace, for the user interface, the command line and subscribers. Main thread only.
#pragma once

#include "layout/TileTarget.h"
#include "layout/WorkspaceProfile.h"
#include "persistence/WorkspaceProductDocument.h"
#include "support/Published.h"
#include "windowing/ManagedWindow.h"
#include "windowing/ScreenServicing.h"
#include "workspace/SceneReport.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

/// Tells the user that a window claimed further tiles, because its minimum size did not fit the selected one.
struct WindowPlacementNotice {
    Uuid id = Uuid::random();
    CGRect claimedFrame{}; // screen space
    int additionalTileCount = 0;
    std::string applicationName;
    bool operator==(const WindowPlacementNotice&) const = default;
};

struct WorkspaceFocusMode {
    DisplayID displayID;
    TileTarget anchor;
    WindowID windowID;
    bool operator==(const WorkspaceFocusMode&) const = default;
};

struct WorkspaceState {
    Published<AccessibilityPermissionState> permissionState{AccessibilityPermissionState::unknown};
    Published<bool> isSuspended{false}; // no window is moved, since the screen cannot be seen
    Published<std::vector<ManagedWindow>> windows;
    Published<std::int64_t> titleRevision{
        0}; // incremented when a title changes, because a title alone does not republish the window list
    Published<std::map<TileTarget, WindowID>> assignedWindowIDs;
    Published<std::map<WindowID, CGSize>> observedMinimumSizes;
    Published<std::int64_t> layoutRevision{0};
    Published<std::optional<WindowPlacementNotice>> placementNotice;
    Published<std::optional<TileTarget>> dropTarget; // the tile under a window that is being dragged
    Published<std::map<TileTarget, std::vector<WindowID>>> stackWindowIDsByTarget;
    Published<std::map<TileTarget, LaunchableApplication>> pendingLaunches; // until placed or timed out
    Published<bool> canUndo{false};
    Published<std::optional<WorkspaceFocusMode>> focusMode;
    Published<std::optional<std::string>> lastActionMessage;
    Published<std::vector<std::string>> lastArrangeExplanation;
    Published<std::vector<WorkspaceScene>> scenes; // the newest last
    Published<std::vector<WorkspaceRule>> rules;   // the first matching rule decides
    Published<std::optional<Uuid>> activeSceneID;
    Published<std::optional<SceneReport>> sceneReport; // of the scene opened last; absent before the first
    Published<bool> continuousManagementEnabled{false};
    Published<bool> bringsNextForward{true}; // the next window of a stack, when the front window leaves
    Published<bool> useThemeBackground{false};
    Published<bool> showBrain{false};
    Published<bool> showTileBackgrounds{true};
    Published<std::string> accentColorID{"system-blue"};
    Published<WorkspaceProfile> profile;
    Published<std::vector<Screen>> screens;
    Published<std::optional<WindowID>> focusedWindowID; // as of the last poll; absent when none is managed
    Published<std::set<WindowID>> floatingWindowIDs;    // made floating by a command; until they get a tile
    Published<bool> isPaused{false};                    // the user has paused KOVA; no window is moved
};

} // namespace kova
