// Short functions that make trees, print solved layouts, and generate random trees.
#pragma once

#include "layout/BranchLengths.h"
#include "layout/LayoutSolver.h"

#ifdef KOVA_HAS_RAPIDCHECK
#include <rapidcheck.h>
#endif

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace kova::testing {

inline LayoutNode tile(SlotID id) {
    return LayoutTile{id, "Name of " + id.text()};
}
inline LayoutNode row(std::vector<LayoutBranch> branches) {
    return LayoutSplit{LayoutAxis::horizontal, branches};
}
inline LayoutNode column(std::vector<LayoutBranch> branches) {
    return LayoutSplit{LayoutAxis::vertical, branches};
}

inline std::string print(const CGRect& r) {
    std::ostringstream out;
    out << r.origin.x << ',' << r.origin.y << ' ' << r.size.width << 'x' << r.size.height;
    return out.str();
}

/// "a 10,10 1593x1392 | b 1615,10 935x1392"
inline std::string print(const SolvedLayout& layout) {
    std::string out;
    for (std::size_t i = 0; i < layout.slots.size(); ++i) {
        out += (i ? " | " : "") + layout.slots[i].id.text() + " " + print(layout.frames[i]);
    }
    return out;
}

/// "root:0 1274,10 12x1392 lengths 1264 1264 minimums 320 320"
inline std::string print(const LayoutDivider& divider) {
    std::ostringstream out;
    out << divider.splitID << ':' << divider.boundaryIndex << ' ' << print(divider.frame) << " lengths";
    for (const double length : divider.branchLengths) out << ' ' << length;
    out << " minimums";
    for (const double length : divider.branchMinimumLengths) out << ' ' << length;
    return out.str();
}

#ifdef KOVA_HAS_RAPIDCHECK
/// A tree with at most `depth` levels of splits, some of them without branches. Its tiles are numbered from `nextTile`
/// on, modulo `distinctIDs`.
inline LayoutNode randomTree(const rc::Gen<double>& weights, int depth, int& nextTile, int distinctIDs = 1000) {
    const int branchCount = depth > 0 ? *rc::gen::inRange(0, 5) : 0;
    if (branchCount == 0 && *rc::gen::inRange(0, 8) == 0) return row({});
    if (branchCount == 0) return tile(SlotID("t" + std::to_string(nextTile++ % distinctIDs)));
    LayoutSplit split{*rc::gen::element(LayoutAxis::horizontal, LayoutAxis::vertical), {}};
    for (int i = 0; i < branchCount; ++i) {
        split.branches.push_back({*weights, randomTree(weights, depth - 1, nextTile, distinctIDs)});
    }
    return split;
}
#endif

/// The smallest length in points that the node needs along the axis, computed by the rules for layouts.
inline double neededLength(const LayoutNode& node, LayoutAxis axis, const TileMinimumSizes& minimums,
                           const LayoutMetrics& metrics, double inset) {
    const bool isAcross = axis == LayoutAxis::horizontal;
    if (const auto* leaf = std::get_if<LayoutTile>(&node)) {
        const auto window = minimums.find(leaf->id);
        const CGSize size = window == minimums.end() ? CGSize{} : window->second;
        return isAcross ? std::max(size.width + 2 * inset, metrics.minimumTileSize.width)
                        : std::max(size.height + 2 * inset, metrics.minimumTileSize.height);
    }
    const auto& split = std::get<LayoutSplit>(node);
    double sum = 0, largest = 0;
    for (const auto& branch : split.branches) {
        const double length = neededLength(branch.node, axis, minimums, metrics, inset);
        sum += length;
        largest = std::max(largest, length);
    }
    if (split.axis != axis || split.branches.empty()) return largest;
    const double gap = isAcross ? metrics.columnGutter : metrics.columnGutter + 28;
    return sum + gap * static_cast<double>(split.branches.size() - 1);
}

inline std::vector<double> distributeLengths(std::span<const double> weights, std::span<const double> minimums,
                                             double available) {
    const std::size_t count = std::max(weights.size(), minimums.size());
    std::vector<double> usableWeights(count, kWeightFloor);
    std::vector<double> usableMinimums(count, 0);
    std::transform(weights.begin(), weights.end(), usableWeights.begin(), usableWeight);
    std::transform(minimums.begin(), minimums.end(), usableMinimums.begin(), usableMinimum);
    std::vector<double> lengths(count);
    BranchLengthsScratch scratch;
    distribute(usableWeights, usableMinimums, usableLength(available), lengths, scratch);
    return lengths;
}

inline std::vector<double> roundLengths(std::span<const double> lengths, double available) {
    std::vector<double> rounded(lengths.size());
    std::transform(lengths.begin(), lengths.end(), rounded.begin(), usableLength);
    BranchLengthsScratch scratch;
    roundToWholePoints(rounded, usableLength(available), scratch);
    return rounded;
}

} // namespace kova::testing
