// Records which window is in which tile: the front windows, the stacks, and the anchors of windows that span several
// tiles. Always true:
// - A front window is assigned either to one tile, or to all tiles of one span; the anchor of a span is recorded.
// - If a tile has a front window and a stack, the front window is the first member of the stack.
// - No stack is empty, and no window is in a stack twice or in two stacks.
#pragma once

#include "layout/TileSpans.h"
#include "layout/TileTarget.h"
#include "support/Identifiers.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

struct TileAssignments {
    std::map<TileTarget, WindowID> assignedWindowIDs;                   // the front windows
    std::map<TileTarget, std::vector<WindowID>> stackWindowIDsByTarget; // front first
    std::map<WindowID, TileTarget> anchorsByWindowID;                   // spanning windows only

    /// The tile in which the window is the front window; for a spanning window, its anchor. Absent if the window is not
    /// a front window.
    std::optional<TileTarget> targetOf(const WindowID& windowID) const;
    /// The tile whose stack contains the window, as front window or behind it; absent if it is in no stack.
    std::optional<TileTarget> stackTargetOf(const WindowID& windowID) const;
    /// Every tile in which the window is in front, in the order of the tile targets.
    std::vector<TileTarget> targetsOf(const WindowID& windowID) const;
    /// Whether the window is the front window of a tile.
    bool isAssigned(const WindowID& windowID) const { return targetOf(windowID).has_value(); }
    bool isInAnyTile(const WindowID& windowID) const;
    /// `target` is a tile in which the window is in front. True if this tile is the window's only tile or its anchor.
    bool isAnchor(const TileTarget& target, const WindowID& windowID) const;
    /// Every tile in which the window is in front, the anchor first.
    std::vector<TileTarget> targetsAnchorFirst(const WindowID& windowID) const;
    /// Every front window and every stacked window.
    std::set<WindowID> windows() const;
    /// Every front window and every stacked window of one display.
    std::set<WindowID> windowsOn(const DisplayID& displayID) const;
    /// The part of the assignments that belongs to one display.
    TileAssignments onDisplay(const DisplayID& displayID) const;
    /// The part of the assignments that belongs to all other displays.
    TileAssignments onOtherDisplays(const DisplayID& displayID) const;
    /// Whether the statements at the top of this file are true. They may be false if the assignments come from a file
    /// that was edited.
    bool isSound() const;

    /// Takes the window out of every stack. Stacks that become empty are dropped.
    void removeFromStacks(const WindowID& windowID);
    /// Removes the window from all tiles and stacks.
    void remove(const WindowID& windowID);
    enum class StackPosition { front, behind };
    /// Moves the window into the stack of `target`, before or after the other members. If the front window of `target`
    /// is not in that stack yet, it is added beforehand.
    void insertIntoStack(const TileTarget& target, const WindowID& windowID, StackPosition position);
    /// Makes the window the front window of `targets` (anchor first) and of no other tile. Returns the former front
    /// windows, each once; these lose all their tiles and their anchors but stay in their stacks.
    std::vector<WindowID> assign(const WindowID& windowID, const std::vector<TileTarget>& targets);
    /// `targets` are the tiles of a span, which share the stack of the anchor. Moves into that stack the windows that
    /// are stacked in the other tiles, and the displaced windows that are in no stack, or in the stack of a tile that
    /// has no front window any more.
    void mergeStacksInto(const TileTarget& anchor, const std::vector<TileTarget>& targets,
                         const std::vector<WindowID>& displacedWindowIDs);
    /// Moves each front window to the first place of its tile's stack, if the tile has a stack.
    void putFrontsFirst();
    /// Makes the window the front window of the tiles that it has in `other`. No-op if it has none there.
    void adopt(const WindowID& windowID, const TileAssignments& other);
    /// Replaces the id of the window. The new id must be in no tile.
    void rename(const WindowID& windowID, const WindowID& newID);
    /// Replaces the id of the display. The new id must have no tiles yet.
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);
    /// Keeps only windows in `liveWindowIDs`. A tile that loses its front window gets no new one.
    void keepOnly(const std::set<WindowID>& liveWindowIDs);

    bool operator==(const TileAssignments&) const = default;
};

} // namespace kova
