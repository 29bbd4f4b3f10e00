// Where a window goes: one tile of one display, or a span of neighboring tiles when its minimum size does not fit one.
#pragma once

#include "layout/LayoutSolver.h"
#include "support/Identifiers.h"

#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

/// The string identity of a tile on a display: display id, "::", slot id.
std::string tileTargetID(const DisplayID& displayID, std::string_view slotID);

/// The display id of a tile-target id.
DisplayID displayIDOf(std::string_view targetID);

/// The slot id of a tile-target id, if the tile is on that display; absent otherwise.
std::optional<std::string_view> slotIDOn(const DisplayID& displayID, std::string_view targetID);

/// The tile-target id, on the display with the new id if it was on the former one.
std::string withDisplayRenamed(const std::string& targetID, const DisplayID& formerID, const DisplayID& newID);

struct DisplayTileTarget {
    DisplayID displayID;
    TileSlot slot;
    std::string id() const { return tileTargetID(displayID, slot.id); }
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
    static std::optional<TileSpan> bestSpan(std::span<const TileSlot> slots, std::string_view anchorSlotID,
                                            CGSize displaySize, double tileInset, CGSize minimumSize,
                                            const std::set<std::string>& occupiedSlotIDs);
};

} // namespace kova
