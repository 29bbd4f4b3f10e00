// What becomes of the windows of a display whose layout changes.
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
};

/// What a display showed last.
struct ShownLayout {
    std::string layoutID;
    DisplayTiles tiles;
};

DisplayTiles tilesOf(const SolvedLayout& solved);

struct LayoutMigration {
    TileAssignments assignments;
    std::vector<std::string> displacedWindowIDs; // fronts that lost their tile and went behind another's
};

/// Windows stay in the slot of the same id, else of the same canonical id; the others take the free slots in order;
/// what is left goes behind the nearest tile's window. Stacks go with their front. Other displays are untouched.
LayoutMigration migrateAssignments(const TileAssignments& before, const std::string& displayID,
                                   const DisplayTiles& oldTiles, const DisplayTiles& newTiles);

} // namespace kova
