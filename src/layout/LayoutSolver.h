// Computes tile frames and dividers from a tree and an area. Pure arithmetic; every frame is in layout space: points,
// origin at the area's top left corner, y growing downwards.
#pragma once

#include "layout/LayoutTree.h"
#include "support/Identifiers.h"
#include "support/Limits.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace kova {

inline constexpr double kWeightFloor = 0.000001;
inline constexpr double kMinimumFitTolerance = 0.5; // points
inline constexpr double kFractionalTieTolerance = 0.000000001;
inline constexpr double kSlotInset = 5; // points, the inset with which definitions solve their slots

/// One tile of a layout. The normalized frame is a rectangle in the unit square of its area.
struct TileSlot {
    SlotID id;
    std::string name;
    CGRect normalizedFrame{};
    bool operator==(const TileSlot&) const = default;
};

/// One boundary that can be dragged: it lies between branches `boundaryIndex` and `boundaryIndex + 1` of its split.
struct LayoutDivider {
    std::string splitID;
    int boundaryIndex = 0;
    LayoutAxis axis = LayoutAxis::horizontal;
    CGRect frame{};                           // layout space, the gap between the two branches
    std::vector<double> branchLengths;        // points along the axis, integral
    std::vector<double> branchMinimumLengths; // points along the axis
    bool operator==(const LayoutDivider&) const = default;
};

struct DisplayLayoutDivider {
    DisplayID displayID;
    std::string layoutID;
    LayoutDivider divider;
    bool operator==(const DisplayLayoutDivider&) const = default;
};

/// Minimum size in points of the window in each tile, by tile id.
using TileMinimumSizes = std::unordered_map<SlotID, CGSize>;

/// Whether both have the same entries. Faster than `==` if they were made in the same order.
bool areEqual(const TileMinimumSizes& a, const TileMinimumSizes& b);

struct SolvedLayout {
    std::vector<TileSlot> slots;         // one per leaf, in tree order
    std::vector<CGRect> frames;          // the slots' cells in layout space, in the same order
    std::set<SlotID> unsatisfiedTileIDs; // of tiles smaller than their window's minimum; also unknown ids
    std::vector<LayoutDivider> dividers; // depth first
    bool operator==(const SolvedLayout&) const = default;
};

/// Solves layouts into reusable results: once the buffers have grown to the size of the tree, a solve allocates
/// nothing, which keeps the drag of a divider cheap. Each display has its own solver. Only one thread at a time may use
/// a solver.
class LayoutSolver {
  public:
    LayoutSolver();
    ~LayoutSolver();
    LayoutSolver(LayoutSolver&&) noexcept;
    LayoutSolver& operator=(LayoutSolver&&) noexcept;

    /// `referenceSize` is the area in points, `tileInset` the gap on each side between a tile's cell and its window.
    /// Every input has a result. An area that is too small for margins has none. If the minimums of a split's branches
    /// exceed its length, as an infinite minimum always does, this split ignores them. Other lengths that are not
    /// finite count as 0.
    void solve(const LayoutNode& tree, const TileMinimumSizes& minimumSizes, CGSize referenceSize,
               const LayoutMetrics& metrics, double tileInset, SolvedLayout& result);

  private:
    struct Scratch;
    std::unique_ptr<Scratch> scratch_;
};

/// Solves into a new result.
SolvedLayout solveSlots(const LayoutNode& tree, const TileMinimumSizes& minimumSizes, CGSize referenceSize,
                        const LayoutMetrics& metrics, double tileInset);

/// True when a window of this minimum size fits the tile's frame with the inset on each side, all in points. A minimum
/// that is not a number never fits.
bool holdsWindow(const CGRect& tileFrame, CGSize minimumSize, double tileInset);

/// The split's new weights (its branch lengths in points) after the divider moved by `translationPoints` along the
/// axis; absent if the branches on both sides cannot keep their minimums, or if the translation is not a number.
std::optional<std::vector<double>> draggedWeights(const LayoutDivider& divider, double translationPoints);

} // namespace kova
