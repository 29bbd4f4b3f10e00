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

/// Tells the user that a window claimed further tiles, because its minimum size did not fit into its tile.
struct WindowPlacementNotice {
    Uuid id = Uuid::random();
    CGRect claimedFrame{};       // around all tiles of the span, in screen space
    int additionalTileCount = 0; // without the anchor
    std::string applicationName;
    bool operator==(const WindowPlacementNotice&) const = default;
};

struct WorkspaceFocusMode {
    DisplayID displayID;
    TileTarget anchor; // the tile of the zoomed window; the nearest tile if it has none
    WindowID windowID; // the zoomed window
    bool operator==(const WorkspaceFocusMode&) const = default;
};

struct WorkspaceState {
    Published<AccessibilityPermissionState> permissionState{AccessibilityPermissionState::unknown};
    Published<bool> isSuspended{false}; // no window is moved, since the screen cannot be seen
    Published<std::vector<ManagedWindow>> windows;
    /// Incremented when the title of a window changes. `windows` is not published again only because of a title.
    Published<std::int64_t> titleRevision{0};
    Published<std::map<TileTarget, WindowID>> assignedWindowIDs; // the front windows
    Published<std::map<WindowID, CGSize>> observedMinimumSizes;
    Published<std::int64_t> layoutRevision{0}; // incremented when tiles have moved
    Published<std::optional<WindowPlacementNotice>> placementNotice;
    Published<std::optional<TileTarget>> dropTarget; // the tile under the pointer while it drags a window
    Published<std::map<TileTarget, std::vector<WindowID>>> stackWindowIDsByTarget;
    Published<std::map<TileTarget, LaunchableApplication>> pendingLaunches; // applications whose windows are awaited
    Published<bool> canUndo{false};
    Published<std::optional<WorkspaceFocusMode>> focusMode;
    Published<std::optional<std::string>> lastActionMessage;
    Published<std::vector<std::string>> lastArrangeExplanation;
    Published<std::vector<WorkspaceScene>> scenes; // a new scene comes last
    Published<std::vector<WorkspaceRule>> rules;   // the first matching rule decides
    Published<std::optional<Uuid>> activeSceneID;
    Published<std::optional<SceneReport>> sceneReport; // on the scene opened last; absent if none was opened
    Published<bool> continuousManagementEnabled{false};
    /// Whether the next window of a stack becomes the front window when the front window leaves the tile.
    Published<bool> bringsNextForward{true};
    Published<bool> useThemeBackground{false};
    Published<bool> showBrain{false};
    Published<bool> showTileBackgrounds{true};
    Published<std::string> accentColorID{"system-blue"};
    Published<WorkspaceProfile> profile;
    Published<std::vector<Screen>> screens;
    Published<std::optional<WindowID>> focusedWindowID; // at the last poll; absent if it is not managed
    Published<std::set<WindowID>> floatingWindowIDs;    // made floating by a command, and not put into a tile since
    Published<bool> isPaused{false};                    // the user has paused KOVA; no window is moved
};

} // namespace kova
