// Moves the windows of a display to the tiles of its new layout.
#pragma once

#include "layout/LayoutSolver.h"
#include "layout/TileSpans.h"
#include "workspace/TileAssignments.h"

#include <string>
#include <vector>

namespace kova {

/// The tiles of one display, before or after: slots in layout order with their cells in one common space.
struct DisplayTiles {
    std::vector<std::string> slotIDs;
    std::vector<CGRect> frames;
    bool operator==(const DisplayTiles&) const = default;
};

/// The layout that a display showed last.
struct ShownLayout {
    std::string layoutID;
    DisplayTiles tiles;
    bool operator==(const ShownLayout&) const = default;
};

/// A layout that a display showed, and the windows in its tiles.
struct LayoutHome {
    ShownLayout shown;
    TileAssignments assignments;
    bool operator==(const LayoutHome&) const = default;
};

DisplayTiles tilesOf(const SolvedLayout& solved);

struct LayoutMigration {
    TileAssignments assignments;
    std::vector<WindowID> displacedWindowIDs; // lost their tile and are stacked behind another window
    std::vector<WindowID> returnedWindowIDs;  // front a tile, and did not before
};

/// Windows stay in the slot of the same id, else of the same canonical id; the others take the free slots in order;
/// windows without a slot are stacked in the nearest tile. Stacks follow their front window. Other displays do not
/// change.
LayoutMigration migrateAssignments(const TileAssignments& before, const DisplayID& displayID,
                                   const DisplayTiles& oldTiles, const DisplayTiles& newTiles);

/// Does so for windows remembered for several former layouts; those of an earlier entry choose first. Windows return to
/// their tiles in the layout for which they are remembered, including spans. A stacked window that came forward since
/// stays the front window.
LayoutMigration migrateHomes(const TileAssignments& before, const DisplayID& displayID,
                             const std::vector<LayoutHome>& homes, const ShownLayout& next);

/// If the window was a front window and is stacked now, it becomes the front window of that tile and the former one is
/// stacked. Changes nothing if the former one spans several tiles.
void keepInFront(LayoutMigration& migration, const WindowID& windowID);

} // namespace kova
