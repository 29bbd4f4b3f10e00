// Which window is in which tile: fronts, stacks and the anchors of windows that span several tiles.
// Always true: a window is assigned either to one tile or to all tiles of one span, whose anchor is then recorded; the
// front window of a tile is also the first of the tile's stack, if there is a stack; no stack is empty or holds a
// window twice.
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
    std::map<TileTarget, WindowID> assignedWindowIDs;
    std::map<TileTarget, std::vector<WindowID>> stackWindowIDsByTarget; // front first
    std::map<WindowID, TileTarget> anchorsByWindowID;                   // spanning windows only

    /// The tile in which the window is in front, the anchor for a span; absent if the window is not a front window.
    std::optional<TileTarget> targetOf(const WindowID& windowID) const;
    /// The tile whose stack contains the window, as front window or behind it; absent when no stack does.
    std::optional<TileTarget> stackTargetOf(const WindowID& windowID) const;
    /// Every tile in which the window is in front, in the order of the map's keys.
    std::vector<TileTarget> targetsOf(const WindowID& windowID) const;
    /// Whether the window is the front window of a tile.
    bool isAssigned(const WindowID& windowID) const { return targetOf(windowID).has_value(); }
    bool isInAnyTile(const WindowID& windowID) const;
    /// Whether `target`, in which the window is in front, is its only tile or the anchor of its span.
    bool isAnchor(const TileTarget& target, const WindowID& windowID) const;
    /// Every tile in which the window is in front, the anchor first.
    std::vector<TileTarget> targetsAnchorFirst(const WindowID& windowID) const;
    /// Every front window and every stacked window.
    std::set<WindowID> windows() const;
    /// Those on one display.
    std::set<WindowID> windowsOn(const DisplayID& displayID) const;
    /// The part of the assignments that belongs to one display.
    TileAssignments onDisplay(const DisplayID& displayID) const;
    /// The part of the assignments that belongs to all other displays.
    TileAssignments onOtherDisplays(const DisplayID& displayID) const;
    /// Whether the invariants above hold. They may not if the assignments come from a file that was edited.
    bool isSound() const;

    /// Takes the window out of every stack, dropping stacks that become empty.
    void removeFromStacks(const WindowID& windowID);
    /// Removes the window from all tiles and stacks.
    void remove(const WindowID& windowID);
    enum class StackPosition { front, behind };
    /// Puts the window into one stack only, before or after its members. A front window without a stack becomes the
    /// first member.
    void insertIntoStack(const TileTarget& target, const WindowID& windowID, StackPosition position);
    /// Makes the window the front window of `targets` (anchor first) and of no other tile. Returns the former front
    /// windows, each once; these lose all their tiles and their anchors but stay in their stacks.
    std::vector<WindowID> assign(const WindowID& windowID, const std::vector<TileTarget>& targets);
    /// The tiles of a span share the stack of its anchor: windows stacked in the other tiles, and displaced windows
    /// whose own stack has no front window any more, are moved there.
    void mergeStacksInto(const TileTarget& anchor, const std::vector<TileTarget>& targets,
                         const std::vector<WindowID>& displacedWindowIDs);
    /// Moves the front window of a tile to the first place of its stack, if it has one.
    void putFrontsFirst();
    /// Copies the window's tiles, and its place at the front of its stack, from `other`.
    void adopt(const WindowID& windowID, const TileAssignments& other);
    /// Renames the window; the new id must be in no tile.
    void rename(const WindowID& windowID, const WindowID& newID);
    /// Renames the display; the new id must have no tiles yet.
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);
    /// Keeps only windows in `liveWindowIDs`. A tile that loses its front window gets no new one.
    void keepOnly(const std::set<WindowID>& liveWindowIDs);

    bool operator==(const TileAssignments&) const = default;
};

} // namespace kova
