// Decides whether the windows in the tiles of one display have the room that they need, and which tiles a window covers
// that does not fit into one. Works on values, so that arrangements and single placements follow the same rules.
#pragma once

#include "layout/LayoutCatalogue.h"
#include "layout/TileSpans.h"
#include "support/Identifiers.h"

#include <set>
#include <string>
#include <vector>

namespace kova {

/// A window in front of one tile, or of the tiles of one span.
struct TileHolder {
    WindowID windowID;
    std::vector<SlotID> slotIDs; // anchor first
    CGSize minimumSize{};        // points; 0 where none is known
};

class TileRoom {
  public:
    /// `layout` must outlive the object; `visibleSize` and `tileInset` are in points.
    TileRoom(const LayoutDefinition& layout, CGSize visibleSize, double tileInset, std::vector<TileHolder> holders);

    /// The holders whose tiles are smaller than their minimum size. A minimum size that is larger than all tiles
    /// together is reduced to that area.
    std::vector<WindowID> cramped() const { return crampedIn(solved()); }
    /// The same, given the layout solved with the minimum sizes of these holders.
    std::vector<WindowID> crampedIn(const SolvedLayout& solved) const;
    /// The tiles that the window covers if it is put into the slot, anchor first: the slot alone if no window becomes
    /// cramped by that, otherwise the preferred span in which the window fits. The present holders of these tiles lose
    /// them. Empty if the layout has no such slot.
    std::vector<SlotID> tilesFor(const WindowID& windowID, CGSize minimumSize, const SlotID& slotID) const;
    /// The holders, other than the window, of any of the slots.
    std::set<WindowID> holdersOf(const std::vector<SlotID>& slotIDs, const WindowID& exceptWindowID) const;

  private:
    TileRoom with(std::vector<TileHolder> holders) const;
    std::vector<TileHolder> withoutHoldersOf(const std::vector<SlotID>& slotIDs, const WindowID& windowID) const;
    SolvedLayout solved() const;
    CGSize attainable(CGSize minimumSize, const SolvedLayout& solved) const;
    bool isCramped(const TileHolder& holder, const SolvedLayout& solved) const;

    const LayoutDefinition* layout_;
    CGSize visibleSize_;
    double tileInset_;
    std::vector<TileHolder> holders_;
};

} // namespace kova
