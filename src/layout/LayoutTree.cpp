#include "layout/LayoutTree.h"

#include "layout/BranchLengths.h"
#include "support/Overloaded.h"

#include <algorithm>
#include <cmath>

namespace kova {

namespace {

bool isUsable(const std::vector<double>& weights, std::size_t branchCount) {
    return weights.size() == branchCount &&
           std::all_of(weights.begin(), weights.end(), [](double w) { return std::isfinite(w) && w > 0; });
}

/// `id` is the split id of the node; it is extended for each branch and restored afterwards.
void putWeights(LayoutNode& node, const LayoutNode& original, const LayoutWeightOverrides& overrides, std::string& id) {
    auto* split = std::get_if<LayoutSplit>(&node);
    const auto* source = std::get_if<LayoutSplit>(&original);
    if (!split || !source || split->branches.size() != source->branches.size()) return;
    const auto found = overrides.splits.find(id);
    const bool overridden = found != overrides.splits.end() && isUsable(found->second, split->branches.size());
    const std::size_t ownLength = id.size();
    for (std::size_t i = 0; i < split->branches.size(); ++i) {
        LayoutBranch& branch = split->branches[i];
        branch.weight = raisedToFloor(overridden ? found->second[i] : source->branches[i].weight);
        if (std::holds_alternative<LayoutTile>(branch.node)) continue;
        id.append(".").append(std::to_string(i));
        putWeights(branch.node, source->branches[i].node, overrides, id);
        id.resize(ownLength);
    }
}

} // namespace

bool LayoutSplit::operator==(const LayoutSplit&) const = default;
bool LayoutBranch::operator==(const LayoutBranch&) const = default;

std::string_view rawValue(LayoutAxis axis) {
    return axis == LayoutAxis::horizontal ? "horizontal" : "vertical";
}

std::string splitID(std::span<const int> path) {
    std::string id = "root";
    for (const int index : path) id.append(".").append(std::to_string(index));
    return id;
}

LayoutNode applyingWeightOverrides(const LayoutNode& tree, const LayoutWeightOverrides& overrides) {
    LayoutNode result = tree;
    replaceWeights(result, tree, overrides);
    return result;
}

void replaceWeights(LayoutNode& tree, const LayoutNode& original, const LayoutWeightOverrides& overrides) {
    std::string id = "root";
    putWeights(tree, original, overrides, id);
}

std::size_t tileCount(const LayoutNode& tree) {
    return std::visit(Overloaded{[](const LayoutTile&) { return std::size_t{1}; },
                                 [](const LayoutSplit& split) {
                                     std::size_t count = 0;
                                     for (const auto& branch : split.branches) count += tileCount(branch.node);
                                     return count;
                                 }},
                      tree);
}

} // namespace kova
