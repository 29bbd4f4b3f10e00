// A layout divides a rectangle into named tiles by a tree of weighted splits. Values only: the tree says how an area is
// divided, not how large the parts are.
#pragma once

#include "support/Geometry.h"
#include "support/Identifiers.h"

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kova {

/// Branches lie side by side along the horizontal axis (a row) or one above the other along the vertical axis (a
/// column).
enum class LayoutAxis { horizontal, vertical };

/// "horizontal" or "vertical".
std::string_view rawValue(LayoutAxis axis);

struct LayoutBranch;

/// A leaf. The id is the slot's id, unique within one tree.
struct LayoutTile {
    SlotID id;
    std::string name;
    bool operator==(const LayoutTile&) const = default;
};

struct LayoutSplit {
    LayoutAxis axis = LayoutAxis::horizontal;
    std::vector<LayoutBranch> branches;
    bool operator==(const LayoutSplit&) const;
};

using LayoutNode = std::variant<LayoutTile, LayoutSplit>;

/// A weight is a relative share of its split's free length; the weights of a split need not sum to 1.
struct LayoutBranch {
    double weight = 1;
    LayoutNode node;
    bool operator==(const LayoutBranch&) const;
};

struct LayoutMetrics {
    double outerMargin = 10;          // points kept free at the four sides of the area
    double columnGutter = 12;         // points between neighboring branches
    CGSize minimumTileSize{320, 220}; // points, the smallest tile that the solver tries to keep
    bool operator==(const LayoutMetrics&) const = default;
};

/// Weights by split id, one per branch of that split, in branch order. Splits without an entry keep their own weights.
struct LayoutWeightOverrides {
    std::map<std::string, std::vector<double>> splits;
    bool operator==(const LayoutWeightOverrides&) const = default;
};

/// Split id of a path of child indices from the root: "root", "root.1", "root.1.0".
std::string splitID(std::span<const int> path);

/// The tree with override weights put into its branches. An entry counts only when it has one finite, positive value
/// per branch; every resulting weight is at least 0.000001.
LayoutNode applyingWeightOverrides(const LayoutNode& tree, const LayoutWeightOverrides& overrides);
/// Does the same in place. `tree` is a copy of `original` whose weights may differ. A split whose number of branches
/// differs stays unchanged.
void replaceWeights(LayoutNode& tree, const LayoutNode& original, const LayoutWeightOverrides& overrides);

/// Number of tiles in the tree.
std::size_t tileCount(const LayoutNode& tree);

} // namespace kova
