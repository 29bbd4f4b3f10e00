// Says what one operation has changed. An operation first finds its target, or refuses. Then it changes the
// assignments, and at its end it commits. The commit does this, in this order:
// - Windows that lack room claim further tiles.
// - Tiles that have lost their front window get another one from their stacks.
// - Displaced windows are hidden, and the frames of placed windows are requested.
// - The assignments are published.
// - Frames are requested for windows that are not in their tiles.
// - All requests are sent together.
#pragma once

#include "workspace/FrameKeeper.h"
#include "workspace/TileAssignments.h"

#include <optional>
#include <vector>

namespace kova {

struct Transaction {
    /// The assignments before the operation. Absent if no tile can have lost its front window, or if the caller has
    /// filled such tiles already.
    std::optional<TileAssignments> before{};
    /// Windows that lost their tile, apart from those that `TileKeeper::place` has displaced.
    std::vector<WindowID> displaced{};
    /// True if frames of tiles have changed, so that overlays and divider handles must be updated.
    bool hasMovedTiles = false;
    /// True if the limits of `ReflowPolicy` are counted from 0 again, because tiles or minimum sizes have changed.
    bool resetsLimits = false;
    /// True if the remaining steps of an arrangement are dropped, because they were planned for the former tiles.
    bool endsArrangement = false;
    /// Present if windows may lack room now. This window is the first that may claim further tiles; with an empty id no
    /// window has precedence.
    std::optional<WindowID> claimant{};
    /// How far a window may be off its tile before its frame is requested again. If absent, no frame is requested
    /// again.
    std::optional<FrameKeeper::CorrectedDrift> correctedDrift = FrameKeeper::CorrectedDrift::noticeable;
    /// True if the commit compares the tiles of each display with those recorded by the previous commit, and records
    /// them. False if a later step still needs the former record.
    bool comparesTiles = true;
};

/// The value of `Transaction::correctedDrift` for operations that move no window or that have requested the frames
/// themselves.
inline constexpr std::nullopt_t kNoCorrection = std::nullopt;

} // namespace kova
