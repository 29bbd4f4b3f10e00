#include "layout/LayoutCatalogue.h"

#include "layout/BranchLengths.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kova {

namespace {

constexpr std::array<std::pair<LayoutDisplayClass, std::string_view>, 3> kDisplayClasses{{
    {LayoutDisplayClass::standard, "standard"},
    {LayoutDisplayClass::compact16By9, "compact16By9"},
    {LayoutDisplayClass::superUltraWide5120x1440, "superUltraWide5120x1440"},
}};

constexpr double kUltraWideAspect = 3;
constexpr double kCompactWidth = 1920; // points

LayoutNode tile(SlotID id, std::string name) {
    return LayoutTile{std::move(id), std::move(name)};
}
LayoutNode row(std::vector<LayoutBranch> branches) {
    return LayoutSplit{LayoutAxis::horizontal, std::move(branches)};
}
LayoutNode column(std::vector<LayoutBranch> branches) {
    return LayoutSplit{LayoutAxis::vertical, std::move(branches)};
}

LayoutNode primary() {
    return tile("focus-main", "Primary");
}
/// "secondary-2", named "Secondary 2".
LayoutNode secondary(int number) {
    const std::string digits = std::to_string(number);
    return tile(SlotID("secondary-" + digits), "Secondary " + digits);
}
LayoutNode onlySecondary() {
    return tile("secondary-1", "Secondary");
}
LayoutNode reference() {
    return tile("focus-right-top", "Reference");
}
LayoutNode secondaryBelowReference() {
    return tile("focus-right-bottom", "Secondary");
}

std::vector<LayoutDefinition> makeBuiltInLayouts() {
    using enum LayoutDisplayClass;
    std::vector<LayoutDefinition> all;
    const auto add = [&all](const char* id, const char* name, LayoutNode tree, LayoutDisplayClass forClass = standard) {
        all.push_back(makeLayoutDefinition(id, name, forClass, std::move(tree)));
    };
    // Weights are relative: those of a split need not sum to 1.
    add("jarvis.command-center", "Focus + Utility",
        row({{0.63, column({{0.715, primary()}, {0.21, tile("focus-utility", "Utility")}})},
             {0.325, column({{0.475, reference()}, {0.45, secondaryBelowReference()}})}}));
    add("jarvis.compact-16-by-9", "Compact Focus",
        row({{0.63, primary()}, {0.325, column({{1, reference()}, {1, secondaryBelowReference()}})}}), compact16By9);
    add("jarvis.focus-single", "Focus (1)", primary());
    add("jarvis.dual-split", "Dual Split (2)", row({{1, primary()}, {1, onlySecondary()}}));
    add("jarvis.dual-stack", "Dual Stack (2)", column({{1, primary()}, {1, onlySecondary()}}));
    add("jarvis.triple-strip", "Triple Strip (3)", row({{1, primary()}, {1, secondary(1)}, {1, secondary(2)}}));
    add("jarvis.triple-stack", "Triple Stack (3)", column({{1, primary()}, {1, secondary(1)}, {1, secondary(2)}}));
    add("jarvis.quad-grid", "Quad Grid (2×2)",
        column({{1, row({{1, primary()}, {1, secondary(1)}})}, {1, row({{1, secondary(2)}, {1, secondary(3)}})}}));
    add("jarvis.quad-strip", "Quad Strip (4)",
        row({{1, primary()}, {1, secondary(1)}, {1, secondary(2)}, {1, secondary(3)}}));
    add("jarvis.six-grid", "Six Grid (3×2)",
        column({{1, row({{1, primary()}, {1, secondary(1)}, {1, secondary(2)}})},
                {1, row({{1, secondary(3)}, {1, secondary(4)}, {1, secondary(5)}})}}));
    add("jarvis.six-grid-portrait", "Six Grid (2×3)",
        column({{1, row({{1, primary()}, {1, secondary(1)}})},
                {1, row({{1, secondary(2)}, {1, secondary(3)}})},
                {1, row({{1, secondary(4)}, {1, secondary(5)}})}}));
    add("jarvis.super-ultrawide-5120x1440", "Ultra Focus (5)",
        row({{0.245, column({{1, secondary(1)}, {1, secondary(2)}})},
             {0.463, primary()},
             {0.245, column({{1, secondary(3)}, {1, secondary(4)}})}}),
        superUltraWide5120x1440);
    return all;
}

CGRect scaled(const CGRect& normalizedFrame, CGSize area) {
    const CGRect frame = makeRect(normalizedFrame.origin.x * area.width, normalizedFrame.origin.y * area.height,
                                  normalizedFrame.size.width * area.width, normalizedFrame.size.height * area.height);
    return isFinite(frame) ? frame : CGRect{};
}

} // namespace

std::string_view rawValue(LayoutDisplayClass displayClass) {
    return kDisplayClasses[static_cast<std::size_t>(displayClass)].second;
}

std::optional<LayoutDisplayClass> layoutDisplayClassFromRawValue(std::string_view raw) {
    for (const auto& [displayClass, name] : kDisplayClasses) {
        if (name == raw) return displayClass;
    }
    return std::nullopt;
}

CGSize referenceSize(LayoutDisplayClass displayClass) {
    switch (displayClass) {
    case LayoutDisplayClass::standard:
        return {2560, 1440};
    case LayoutDisplayClass::compact16By9:
        return {1920, 1080};
    case LayoutDisplayClass::superUltraWide5120x1440:
        return {5120, 1440};
    }
    return {2560, 1440};
}

LayoutDisplayClass classifyDisplay(CGSize frameSize, CGSize visibleSize) {
    // Uses the whole frame, so that a panel does not change the class.
    if (frameSize.height > 0 && frameSize.width / frameSize.height >= kUltraWideAspect) {
        return LayoutDisplayClass::superUltraWide5120x1440;
    }
    return visibleSize.width <= kCompactWidth ? LayoutDisplayClass::compact16By9 : LayoutDisplayClass::standard;
}

LayoutDefinition makeLayoutDefinition(std::string id, std::string name, LayoutDisplayClass displayClass,
                                      LayoutNode tree, LayoutMetrics metrics) {
    LayoutDefinition definition{std::move(id), std::move(name), {}, displayClass, std::move(tree), metrics};
    definition.slots = slotsAtReferenceSize(definition);
    return definition;
}

LayoutDefinition applying(const LayoutDefinition& definition, const LayoutWeightOverrides& overrides) {
    LayoutDefinition result = definition;
    if (!definition.tree || overrides.splits.empty()) return result;
    result.tree = applyingWeightOverrides(*definition.tree, overrides);
    result.slots = slotsAtReferenceSize(result);
    return result;
}

std::vector<TileSlot> slotsAtReferenceSize(const LayoutDefinition& definition) {
    if (!definition.tree) return {};
    return solveSlots(*definition.tree, {}, referenceSize(definition.displayClass), definition.metrics, kSlotInset)
        .slots;
}

const std::vector<LayoutDefinition>& builtInLayouts() {
    static const std::vector<LayoutDefinition> layouts = makeBuiltInLayouts();
    return layouts;
}

const LayoutDefinition* findLayout(const std::vector<LayoutDefinition>& catalogue, std::string_view id) {
    const auto found = std::find_if(catalogue.begin(), catalogue.end(),
                                    [id](const LayoutDefinition& definition) { return definition.id == id; });
    return found == catalogue.end() ? nullptr : &*found;
}

SolvedLayout solveDefinition(const LayoutDefinition& definition, const TileMinimumSizes& minimumSizes, CGSize areaSize,
                             double tileInset) {
    LayoutSolver solver;
    SolvedLayout result;
    solveDefinition(definition, minimumSizes, areaSize, tileInset, solver, result);
    return result;
}

void solveDefinition(const LayoutDefinition& definition, const TileMinimumSizes& minimumSizes, CGSize areaSize,
                     double tileInset, LayoutSolver& solver, SolvedLayout& result) {
    if (definition.tree) {
        solver.solve(*definition.tree, minimumSizes, areaSize, definition.metrics, tileInset, result);
        return;
    }
    result = {};
    result.slots = definition.slots;
    const double inset = usableLength(tileInset);
    const CGSize area{usableLength(areaSize.width), usableLength(areaSize.height)};
    for (TileSlot& slot : result.slots) {
        if (!isFinite(slot.normalizedFrame)) slot.normalizedFrame = {};
        result.frames.push_back(scaled(slot.normalizedFrame, area));
    }
    for (const auto& window : minimumSizes) {
        std::size_t tile = result.slots.size(); // counted from 1; 0 if no tile has the id
        while (tile > 0 && result.slots[tile - 1].id != window.first) --tile;
        if (tile == 0 || !holdsWindow(result.frames[tile - 1], window.second, inset)) {
            result.unsatisfiedTileIDs.insert(window.first);
        }
    }
}

} // namespace kova
