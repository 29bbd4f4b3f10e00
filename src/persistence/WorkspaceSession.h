// The record from which a restarted agent continues: which window was in which tile, and how each window is recognized.
#pragma once

#include "layout/TileTarget.h"
#include "support/Decoded.h"
#include "support/Geometry.h"
#include "support/Identifiers.h"

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

struct WorkspaceSessionWindow {
    WindowID id;
    pid_t processIdentifier = 0;
    std::optional<std::string> processStart{}; // distinguishes the process from later processes with the same id
    std::optional<BundleID> bundleIdentifier{};
    std::string title{};
    std::optional<CGRect> frame{};               // window-service space
    std::optional<CGSize> observedMinimumSize{}; // points
    bool isHiddenInStack = false;                // "isPutAway" in the file
    bool isSurplus = false;                      // the window was minimized because no tile was left
    bool operator==(const WorkspaceSessionWindow&) const = default;
};

/// The assignments of the workspace, with the window ids that were valid when the session was stored.
struct WorkspaceSessionTiles {
    std::map<TileTarget, WindowID> assignedWindowIDs;
    std::map<TileTarget, std::vector<WindowID>> stackWindowIDs; // front first
    std::map<WindowID, TileTarget> anchors;                     // by window id
    bool operator==(const WorkspaceSessionTiles&) const = default;
};

/// The tiles of the windows of a Space (virtual desktop) that is not shown.
struct WorkspaceSessionSpace {
    std::optional<std::uint64_t> number{}; // absent on desktops that do not number Spaces
    WorkspaceSessionTiles tiles;
    bool operator==(const WorkspaceSessionSpace&) const = default;
};

/// The window that owned its display in focus mode.
struct WorkspaceSessionZoom {
    DisplayID displayID;
    TileTarget anchor;
    WindowID windowID;
    std::optional<CGRect> frameBefore{}; // window-service space
    bool operator==(const WorkspaceSessionZoom&) const = default;
};

struct WorkspaceSession {
    std::vector<WorkspaceSessionWindow> windows;
    WorkspaceSessionTiles tiles;
    std::map<DisplayID, WorkspaceSessionTiles> disconnectedDisplays; // their tiles; "awayDisplays" in the file
    std::vector<WorkspaceSessionSpace> otherSpaces;
    std::set<WindowID> handledRuleWindowIDs;
    std::optional<WorkspaceSessionZoom> zoom;
    std::set<WindowID> floatingWindowIDs{}; // windows that a command made floating
    bool operator==(const WorkspaceSession&) const = default;
};

std::string encodeWorkspaceSession(const WorkspaceSession& session);
Decoded<WorkspaceSession> decodeWorkspaceSession(std::string_view text);

} // namespace kova
