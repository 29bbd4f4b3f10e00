// What one operation has changed. An operation finds its target or refuses, edits, and commits once at its end: windows
// that lack room claim tiles, tiles without a front window get the next of their stack, windows that lost their tile
// are hidden, placed windows get their frames, the assignments are published, frames are requested for windows that are
// not in their tiles, and all requests are sent together.
#pragma once

#include "workspace/FrameKeeper.h"
#include "workspace/TileAssignments.h"

#include <optional>
#include <vector>

namespace kova {

struct Transaction {
    /// The assignments before the operation. Absent if no tile can have lost its front window, or the caller has filled
    /// it already.
    std::optional<TileAssignments> before{};
    /// Windows that lost their tile, apart from those that `TileKeeper::place` has displaced.
    std::vector<WindowID> displaced{};
    /// Tile frames have changed; overlays and divider handles follow.
    bool hasMovedTiles = false;
    /// Windows that refused their frames get all attempts again, because their tiles or minimum sizes have changed.
    bool resetsLimits = false;
    /// The remaining steps of an arrangement are dropped, because they were planned for the former tiles.
    bool endsArrangement = false;
    /// Present if windows may lack room now: the window that claims further tiles first. An empty id means that no
    /// window comes first.
    std::optional<WindowID> claimant{};
    /// How far windows may be off their tiles before their frames are requested. Absent: no frame is requested.
    std::optional<FrameKeeper::CorrectedDrift> correctedDrift = FrameKeeper::CorrectedDrift::noticeable;
    /// False while the layouts shown before still have to be compared with those of changed displays.
    bool comparesTiles = true;
};

/// The value of `Transaction::correctedDrift` for operations that move no window or that have requested the frames
/// themselves.
inline constexpr std::nullopt_t kNoCorrection = std::nullopt;

} // namespace kova
