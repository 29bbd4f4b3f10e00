#include "layout/LayoutCatalogue.h"
#include "tests/layout/Trees.h"

#include <gtest/gtest.h>

#include <limits>

using namespace kova;
using namespace kova::testing;

namespace {

/// "H[1: focus-main "Primary", 1: secondary-1 "Secondary"]"
std::string print(const LayoutNode& node) {
    if (const auto* tile = std::get_if<LayoutTile>(&node)) return tile->id.text() + " \"" + tile->name + "\"";
    const auto& split = std::get<LayoutSplit>(node);
    std::ostringstream out;
    out << (split.axis == LayoutAxis::horizontal ? "H[" : "V[");
    for (const auto& branch : split.branches) {
        out << (&branch == &split.branches.front() ? "" : ", ") << branch.weight << ": " << print(branch.node);
    }
    return out.str() + "]";
}

} // namespace

TEST(LayoutCatalogue, BuiltInLayoutsHaveTheseNamesClassesAndTrees) {
    const std::vector<std::vector<std::string>> expected{
        {"jarvis.command-center", "Focus + Utility", "standard",
         "H[0.63: V[0.715: focus-main \"Primary\", 0.21: focus-utility \"Utility\"], 0.325: V[0.475: focus-right-top "
         "\"Reference\", 0.45: focus-right-bottom \"Secondary\"]]"},
        {"jarvis.compact-16-by-9", "Compact Focus", "compact16By9",
         "H[0.63: focus-main \"Primary\", 0.325: V[1: focus-right-top \"Reference\", 1: focus-right-bottom "
         "\"Secondary\"]]"},
        {"jarvis.focus-single", "Focus (1)", "standard", "focus-main \"Primary\""},
        {"jarvis.dual-split", "Dual Split (2)", "standard",
         "H[1: focus-main \"Primary\", 1: secondary-1 \"Secondary\"]"},
        {"jarvis.dual-stack", "Dual Stack (2)", "standard",
         "V[1: focus-main \"Primary\", 1: secondary-1 \"Secondary\"]"},
        {"jarvis.triple-strip", "Triple Strip (3)", "standard",
         "H[1: focus-main \"Primary\", 1: secondary-1 \"Secondary 1\", 1: secondary-2 \"Secondary 2\"]"},
        {"jarvis.triple-stack", "Triple Stack (3)", "standard",
         "V[1: focus-main \"Primary\", 1: secondary-1 \"Secondary 1\", 1: secondary-2 \"Secondary 2\"]"},
        {"jarvis.quad-grid", "Quad Grid (2\u00D72)", "standard",
         "V[1: H[1: focus-main \"Primary\", 1: secondary-1 \"Secondary 1\"], 1: H[1: secondary-2 \"Secondary 2\", 1: "
         "secondary-3 \"Secondary 3\"]]"},
        {"jarvis.quad-strip", "Quad Strip (4)", "standard",
         "H[1: focus-main \"Primary\", 1: secondary-1 \"Secondary 1\", 1: secondary-2 \"Secondary 2\", 1: secondary-3 "
         "\"Secondary 3\"]"},
        {"jarvis.six-grid", "Six Grid (3\u00D72)", "standard",
         "V[1: H[1: focus-main \"Primary\", 1: secondary-1 \"Secondary 1\", 1: secondary-2 \"Secondary 2\"], 1: H[1: "
         "secondary-3 \"Secondary 3\", 1: secondary-4 \"Secondary 4\", 1: secondary-5 \"Secondary 5\"]]"},
        {"jarvis.six-grid-portrait", "Six Grid (2\u00D73)", "standard",
         "V[1: H[1: focus-main \"Primary\", 1: secondary-1 \"Secondary 1\"], 1: H[1: secondary-2 \"Secondary 2\", 1: "
         "secondary-3 \"Secondary 3\"], 1: H[1: secondary-4 \"Secondary 4\", 1: secondary-5 \"Secondary 5\"]]"},
        {"jarvis.super-ultrawide-5120x1440", "Ultra Focus (5)", "superUltraWide5120x1440",
         "H[0.245: V[1: secondary-1 \"Secondary 1\", 1: secondary-2 \"Secondary 2\"], 0.463: focus-main \"Primary\", "
         "0.245: V[1: secondary-3 \"Secondary 3\", 1: secondary-4 \"Secondary 4\"]]"},
    };
    std::vector<std::vector<std::string>> actual;
    for (const auto& layout : builtInLayouts()) {
        actual.push_back(
            {layout.id, layout.name, std::string(rawValue(layout.displayClass)), print(layout.tree.value())});
        EXPECT_EQ(layout.metrics, (LayoutMetrics{10, 12, {320, 220}})) << layout.id;
        EXPECT_EQ(layoutDisplayClassFromRawValue(rawValue(layout.displayClass)), layout.displayClass);
    }
    EXPECT_EQ(actual, expected);
}

TEST(LayoutCatalogue, SlotsAreSolvedAtTheReferenceSize) {
    const auto& dualSplit = *findLayout(builtInLayouts(), "jarvis.dual-split");
    EXPECT_EQ(dualSplit.slots[0].normalizedFrame, makeRect(0.00390625, 10 / 1440.0, 0.49375, 1392 / 1440.0));
    EXPECT_EQ(dualSplit.slots[1].normalizedFrame.origin.x, 0.50234375);
    EXPECT_EQ(print(solveDefinition(dualSplit, {}, {2560, 1440}, 5)),
              "focus-main 10,10 1264x1392 | secondary-1 1286,10 1264x1392");
    EXPECT_EQ(findLayout(builtInLayouts(), "jarvis.dual-stack")->slots[0].normalizedFrame.size.height, 676 / 1440.0);
    const auto& ultraWide = *findLayout(builtInLayouts(), "jarvis.super-ultrawide-5120x1440");
    EXPECT_EQ(ultraWide.slots[2].normalizedFrame, makeRect(1327 / 5120.0, 10 / 1440.0, 2466 / 5120.0, 1392 / 1440.0));
    EXPECT_EQ(findLayout(builtInLayouts(), "jarvis.none"), nullptr);
}

TEST(LayoutCatalogue, WeightsAreAppliedOnlyToTheSplitsOfATree) {
    const auto& dualSplit = *findLayout(builtInLayouts(), "jarvis.dual-split");
    const auto applied = applying(dualSplit, {{{"root", {3, 1}}}});
    EXPECT_EQ(applied.slots[0].normalizedFrame.size.width, 1896 / 2560.0);
    EXPECT_EQ(applied.name, dualSplit.name);
    EXPECT_TRUE(applying(dualSplit, {}) == dualSplit);
    const auto& single = *findLayout(builtInLayouts(), "jarvis.focus-single");
    EXPECT_TRUE(applying(single, {{{"root", {3, 1}}}}) == single);
    LayoutDefinition stored = dualSplit; // as decoded from a file
    stored.tree.reset();
    EXPECT_TRUE(applying(stored, {{{"root", {3, 1}}}}) == stored);
}

TEST(LayoutCatalogue, StoredSlotsAreScaled) {
    LayoutDefinition stored{"x", "X", {{"a", "A", makeRect(0, 0, 0.5, 1)}, {"b", "B", makeRect(0.5, 0, 0.5, 1)}},
                            {},  {},  {}};
    const auto solved = solveDefinition(stored, {{"a", {490, 100}}, {"b", {491, 100}}, {"c", {}}}, {1000, 800}, 5);
    EXPECT_EQ(print(solved), "a 0,0 500x800 | b 500,0 500x800");
    EXPECT_EQ(solved.unsatisfiedTileIDs, (std::set<SlotID>{"b", "c"}));
    EXPECT_TRUE(solved.dividers.empty());
    const double noNumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(solveDefinition(stored, {{"a", {500, 100}}, {"b", {501, 100}}}, {1000, 800}, noNumber).unsatisfiedTileIDs,
              std::set<SlotID>{"b"})
        << "an inset that is not a number counts as 0";
    stored.slots[0].normalizedFrame.size.width = noNumber;
    EXPECT_EQ(print(solveDefinition(stored, {}, {1000, 800}, 5)), "a 0,0 0x0 | b 500,0 500x800");
}

TEST(LayoutCatalogue, TheDisplayClassDependsOnAspectAndVisibleWidth) {
    using enum LayoutDisplayClass;
    struct Case {
        CGSize frame, visible;
        LayoutDisplayClass expected;
    };
    const Case cases[] = {
        {{2560, 1440}, {2560, 1440}, standard},
        {{1920, 1080}, {1920, 1055}, compact16By9},
        {{1921, 1080}, {1921, 1055}, standard},
        {{1984, 1080}, {1920, 1080}, compact16By9}, // with a panel at a side
        {{1080, 1920}, {1080, 1920}, compact16By9},
        {{5120, 1440}, {5120, 1440}, superUltraWide5120x1440},
        {{4320, 1440}, {4256, 1440}, superUltraWide5120x1440}, // exactly 3 to 1, with a panel at a side
        {{4319, 1440}, {4319, 1415}, standard},                // 3 to 1 only without the panel
        {{1800, 600}, {1800, 575}, superUltraWide5120x1440},
        {{1799, 600}, {1799, 575}, compact16By9},
        {{0, 0}, {0, 0}, compact16By9},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(rawValue(classifyDisplay(c.frame, c.visible)), rawValue(c.expected))
            << print(makeRect(0, 0, c.frame.width, c.frame.height));
    }
    EXPECT_EQ(referenceSize(standard), (CGSize{2560, 1440}));
    EXPECT_EQ(referenceSize(compact16By9), (CGSize{1920, 1080}));
    EXPECT_EQ(referenceSize(superUltraWide5120x1440), (CGSize{5120, 1440}));
}
