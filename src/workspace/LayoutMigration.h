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
    bool operator==(const DisplayTiles&) const = default;
};

/// What a display showed last.
struct ShownLayout {
    std::string layoutID;
    DisplayTiles tiles;
    bool operator==(const ShownLayout&) const = default;
};

/// What a display showed, and the windows in its tiles.
struct LayoutHome {
    ShownLayout shown;
    TileAssignments assignments;
    bool operator==(const LayoutHome&) const = default;
};

DisplayTiles tilesOf(const SolvedLayout& solved);

struct LayoutMigration {
    TileAssignments assignments;
    std::vector<std::string> displacedWindowIDs; // lost their tile and wait behind another window
    std::vector<std::string> returnedWindowIDs;  // front a tile, and did not before
};

/// Windows stay in the slot of the same id, else of the same canonical id; the others take the free slots in order;
/// what is left goes behind the nearest tile's window. Stacks go with their front. Other displays are untouched.
LayoutMigration migrateAssignments(const TileAssignments& before, const std::string& displayID,
                                   const DisplayTiles& oldTiles, const DisplayTiles& newTiles);

/// Does so for windows remembered for several former layouts; those of an earlier entry choose first. In the layout in
/// which they are at home, windows have their tiles again, spans included. A window that has come forward in a stack
/// stays in front of it.
LayoutMigration migrateHomes(const TileAssignments& before, const std::string& displayID,
                             const std::vector<LayoutHome>& homes, const ShownLayout& next);

/// If the window fronted a tile and waits now, it comes to the front of the tile in which it waits, and the window
/// there waits in its place. Nothing changes where that one spans several tiles.
void keepInFront(LayoutMigration& migration, const std::string& windowID);

} // namespace kova
