// The layouts that a user can put on a display, and the classes of displays that they are designed for.
#pragma once

#include "layout/LayoutSolver.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

enum class LayoutDisplayClass { standard, compact16By9, superUltraWide5120x1440 };

std::string_view rawValue(LayoutDisplayClass displayClass);
std::optional<LayoutDisplayClass> layoutDisplayClassFromRawValue(std::string_view raw);
/// The area in points in which the slots of the class's layouts are solved.
CGSize referenceSize(LayoutDisplayClass displayClass);
/// The class of a display. The aspect ratio of its whole frame tells whether it is ultra-wide. If not, the width of its
/// visible frame decides. Sizes are in points.
LayoutDisplayClass classifyDisplay(CGSize frameSize, CGSize visibleSize);

/// A layout read back from JSON has no tree: its slots are used as stored and weights cannot be applied to it.
struct LayoutDefinition {
    std::string id;
    std::string name;
    std::vector<TileSlot> slots; // tree order
    LayoutDisplayClass displayClass = LayoutDisplayClass::standard;
    std::optional<LayoutNode> tree;
    LayoutMetrics metrics;
    bool operator==(const LayoutDefinition&) const = default;
};

/// A definition with its slots solved from the tree at the class's reference size.
LayoutDefinition makeLayoutDefinition(std::string id, std::string name, LayoutDisplayClass displayClass,
                                      LayoutNode tree, LayoutMetrics metrics = {});

/// A copy of the definition with the weights in its tree and with slots solved from that tree. If the definition has no
/// tree, or if there are no weights, the copy is unchanged.
LayoutDefinition applying(const LayoutDefinition& definition, const LayoutWeightOverrides& overrides);
/// The slots of the definition's tree at the class's reference size; empty when it has no tree.
std::vector<TileSlot> slotsAtReferenceSize(const LayoutDefinition& definition);

/// The twelve built-in layouts, in catalogue order.
const std::vector<LayoutDefinition>& builtInLayouts();

/// The first definition with the id; null when there is none.
const LayoutDefinition* findLayout(const std::vector<LayoutDefinition>& catalogue, std::string_view id);

/// The definition's tiles on an area of this size, solved from its tree. If it has no tree, its stored slots are scaled
/// to the area, and there are no dividers.
SolvedLayout solveDefinition(const LayoutDefinition& definition, const TileMinimumSizes& minimumSizes, CGSize areaSize,
                             double tileInset);
/// Solves into an existing result, with a reusable solver.
void solveDefinition(const LayoutDefinition& definition, const TileMinimumSizes& minimumSizes, CGSize areaSize,
                     double tileInset, LayoutSolver& solver, SolvedLayout& result);

} // namespace kova
