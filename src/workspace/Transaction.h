// The changes of one operation. An operation finds its target or refuses, edits, and commits once at its end: tiles
// without a front window get the next of their stack, the assignments are published, frames are requested for windows
// that are not in their tiles, and all requests are sent together.
#pragma once

#include "workspace/FrameKeeper.h"
#include "workspace/TileAssignments.h"

#include <optional>
#include <string>

namespace kova {

struct Transaction {
    /// The assignments before the operation. Absent if no tile can have lost its front window, or the caller has filled
    /// it already.
    std::optional<TileAssignments> before{};
    /// Tile frames have changed; overlays and divider handles follow.
    bool hasMovedTiles = false;
    /// Windows may lack room now; this one claims tiles first. Empty: no window comes first. Absent: no window lacks
    /// room.
    std::optional<WindowID> claimant{};
    FrameKeeper::Straying straying = FrameKeeper::Straying::noticeable;
};

} // namespace kova
