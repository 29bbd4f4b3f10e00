// Which window is in which tile: fronts, stacks and the anchors of windows that span several tiles.
// Always true: a window is assigned either to one tile or to all the tiles of one span, whose anchor is then known; the
// front window of a tile is the first of its stack where the tile has one; no stack is empty and none holds a window
// twice.
#pragma once

#include "layout/TileSpans.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

struct TileAssignments {
    std::map<std::string, std::string> assignedWindowIDs;                   // tile-target id -> window id
    std::map<std::string, std::vector<std::string>> stackWindowIDsByTarget; // front first
    std::map<std::string, std::string> anchorTargetIDsByWindowID;           // spanning windows only

    /// The tile that the window fronts: its anchor when it spans several; absent when it fronts none.
    std::optional<std::string> targetOf(const std::string& windowID) const;
    /// The tile whose stack holds the window, front or not; absent when no stack does.
    std::optional<std::string> stackTargetOf(const std::string& windowID) const;
    /// Every tile that the window fronts, in key order.
    std::vector<std::string> targetsOf(const std::string& windowID) const;
    /// Whether the window fronts a tile.
    bool isAssigned(const std::string& windowID) const { return targetOf(windowID).has_value(); }
    bool isInAnyTile(const std::string& windowID) const;
    /// Every tile that the window fronts, its anchor first; empty when it fronts none.
    std::vector<std::string> targetsAnchorFirst(const std::string& windowID) const;
    /// Every window that fronts a tile or waits in a stack.
    std::set<std::string> windows() const;
    /// What there is on one display.
    TileAssignments onDisplay(const std::string& displayID) const;
    /// Whether what is always true of assignments is true of these, which may come from an edited file.
    bool isSound() const;

    /// Takes the window out of every stack, dropping stacks that become empty.
    void removeFromStacks(const std::string& windowID);
    /// Takes the window out of everything.
    void remove(const std::string& windowID);
    enum class StackPosition { front, behind };
    /// Puts the window into one stack only, in front of or behind what is there. A front window that had no stack yet
    /// is kept as its first member.
    void insertIntoStack(const std::string& targetID, const std::string& windowID, StackPosition position);
    /// Makes the window front of `targets` (anchor first) and of no other tile. Gives the windows that fronted one of
    /// them, each once, which lose all their tiles and their anchors but stay in their stacks.
    std::vector<std::string> assign(const std::string& windowID, const std::vector<std::string>& targets);
    /// A spanning window's tiles share one stack, its anchor's: what waited in the others waits there, and so do
    /// displaced windows whose own stack has no front window any more.
    void mergeStacksInto(const std::string& anchorTargetID, const std::vector<std::string>& targets,
                         const std::vector<std::string>& displacedWindowIDs);
    /// Puts the front window of a tile first in its stack, where it has one.
    void putFrontsFirst();
    /// Takes over the window's tiles, and its place at the front of its stack, from `other`.
    void adopt(const std::string& windowID, const TileAssignments& other);
    /// The window is known under another id from now on, which must be in no tile.
    void rename(const std::string& windowID, const std::string& newID);
    /// The display is known under another id from now on, which must have nothing yet.
    void renameDisplay(const std::string& displayID, const std::string& newID);
    /// Keeps only windows in `liveWindowIDs`, in their order. The tile that lost its front gets no new one.
    void keepOnly(const std::set<std::string>& liveWindowIDs);

    bool operator==(const TileAssignments&) const = default;
};

} // namespace kova
