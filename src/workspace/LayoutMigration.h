// Moves the windows of a display to the tiles of its new layout.
#pragma once

#include "layout/LayoutSolver.h"
#include "layout/TileSpans.h"
#include "workspace/TileAssignments.h"

#include <string>
#include <vector>

namespace kova {

/// The tiles of one display before or after a change of its layout: slots in layout order, and the cell of each.
struct DisplayTiles {
    std::vector<SlotID> slotIDs;
    std::vector<CGRect> frames;
    bool operator==(const DisplayTiles&) const = default;
};

/// The layout that a display showed last.
struct ShownLayout {
    std::string layoutID;
    DisplayTiles tiles;
    bool operator==(const ShownLayout&) const = default;
};

/// The windows in the tiles of a layout that a display showed earlier.
struct RememberedLayout {
    ShownLayout shown;
    TileAssignments assignments;
    bool operator==(const RememberedLayout&) const = default;
};

DisplayTiles tilesOf(const SolvedLayout& solved);

struct LayoutMigration {
    TileAssignments assignments;
    std::vector<WindowID> displacedWindowIDs; // lost their tiles; each is stacked behind another window
    std::vector<WindowID> returnedWindowIDs;  // became front windows
};

/// Moves the windows of the display to the tiles of its new layout. A front window stays in the slot with the same id.
/// Otherwise it moves to the slot with the same canonical id, to the first free slot, or into the stack of the nearest
/// tile, in this order of preference. Stacks follow their front window. Other displays do not change.
LayoutMigration migrateAssignments(const TileAssignments& before, const DisplayID& displayID,
                                   const DisplayTiles& oldTiles, const DisplayTiles& newTiles);

/// Like `migrateAssignments`, but for windows that are remembered in several former layouts. Earlier entries of
/// `remembered` have precedence. If the new layout `next` is among them, its windows return to their tiles and spans. A
/// window that is remembered as stacked but is a front window now stays in front.
LayoutMigration migrateRemembered(const TileAssignments& before, const DisplayID& displayID,
                                  const std::vector<RememberedLayout>& remembered, const ShownLayout& next);

/// If the window was a front window before the migration and is stacked after it, the window changes places with the
/// front window of its new tile. No-op if that front window spans several tiles.
void keepInFront(LayoutMigration& migration, const WindowID& windowID);

} // namespace kova
