// What one operation has changed. An operation finds its target or refuses, edits, and commits once at its end: tiles
// without their front window get the next of their stack, the assignments are published, windows that are not where
// they belong are asked for their frames, and everything is sent in one go.
#pragma once

#include "workspace/FrameKeeper.h"
#include "workspace/TileAssignments.h"

#include <optional>
#include <string>

namespace kova {

struct Transaction {
    /// The assignments before the operation. Absent when no tile can have lost its front window, or the caller has
    /// filled it already.
    std::optional<TileAssignments> before{};
    /// Tile frames have changed; overlays and divider handles follow.
    bool hasMovedTiles = false;
    /// Windows may lack room now, this one first; empty: none before others. Absent: none lacks room.
    std::optional<std::string> claimant{};
    FrameKeeper::Straying straying = FrameKeeper::Straying::noticeable;
};

} // namespace kova
