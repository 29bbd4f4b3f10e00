// Decides which windows in the tiles of one display have less room than they need, and which tiles a window covers if
// it does not fit into one tile. Works on values, so that arrangements and single placements follow the same rules.
#pragma once

#include "layout/LayoutCatalogue.h"
#include "layout/TileSpans.h"
#include "support/Identifiers.h"

#include <set>
#include <string>
#include <vector>

namespace kova {

/// The front window of one tile, or of all tiles of one span.
struct TileHolder {
    WindowID windowID;
    std::vector<SlotID> slotIDs; // anchor first
    CGSize minimumSize{};        // points; 0 if unknown
};

class TileRoom {
  public:
    /// `layout` must outlive the object. `visibleSize` is the size of the display's visible frame; it and `tileInset`
    /// are in points.
    TileRoom(const LayoutDefinition& layout, CGSize visibleSize, double tileInset, std::vector<TileHolder> holders);

    /// The cramped windows: those whose tile or span is smaller than their minimum size. A minimum size that is larger
    /// than the area of all tiles is limited to that area.
    std::vector<WindowID> cramped() const { return crampedIn(solved()); }
    /// Like `cramped`, if the caller has solved the layout with the minimum sizes of these windows already.
    std::vector<WindowID> crampedIn(const SolvedLayout& solved) const;
    /// The slots that the window covers if it is put into `slotID`, which comes first: only `slotID` if no window
    /// becomes cramped by that, else a span. The other front windows of these slots lose them. Empty if the layout has
    /// no such slot.
    std::vector<SlotID> tilesFor(const WindowID& windowID, CGSize minimumSize, const SlotID& slotID) const;
    /// The front windows of the slots, apart from `exceptWindowID`.
    std::set<WindowID> holdersOf(const std::vector<SlotID>& slotIDs, const WindowID& exceptWindowID) const;

  private:
    TileRoom withHolders(std::vector<TileHolder> holders) const;
    std::vector<TileHolder> withoutHoldersOf(const std::vector<SlotID>& slotIDs, const WindowID& windowID) const;
    std::vector<SlotID> allSlotsFrom(const SlotID& slotID) const;
    SolvedLayout solved() const;
    CGSize attainable(CGSize minimumSize, const SolvedLayout& solved) const;
    bool isCramped(const TileHolder& holder, const SolvedLayout& solved) const;

    const LayoutDefinition* layout_;
    CGSize visibleSize_;
    double tileInset_;
    std::vector<TileHolder> holders_;
};

} // namespace kova
