// Finds the span of neighboring tiles for a window whose minimum size does not fit into one tile.
#pragma once

#include "layout/LayoutSolver.h"
#include "layout/TileTarget.h"

#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

struct DisplayTileTarget {
    DisplayID displayID;
    TileSlot slot;
    TileTarget id() const { return {displayID, slot.id}; }
    bool operator==(const DisplayTileTarget&) const = default;
};

struct TileSpan {
    std::vector<TileSlot> slots; // layout order
    CGRect normalizedFrame{};    // unit square of the display
    bool operator==(const TileSpan&) const = default;
};

struct TileSpanPolicy {
    TileSpanPolicy() = delete;

    /// The preferred span that holds the anchor slot and fits the minimum size; absent when none fits, when the anchor
    /// is not among the slots, or when there are fewer than 2 or more than 63 slots. Sizes and inset are in points; a
    /// component of the minimum size that is not positive and finite counts as 0.
    static std::optional<TileSpan> bestSpan(std::span<const TileSlot> slots, const SlotID& anchorSlotID,
                                            CGSize displaySize, double tileInset, CGSize minimumSize,
                                            const std::set<SlotID>& occupiedSlotIDs);
};

} // namespace kova
