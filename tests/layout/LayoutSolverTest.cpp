#include "tests/layout/Numbers.h"
#include "tests/layout/Trees.h"

#include <gtest/gtest.h>
#ifdef KOVA_HAS_RAPIDCHECK
#include <rapidcheck/gtest.h>
#endif

#include <cmath>
#include <cstdlib>
#include <new>
#include <numeric>
#include <set>

using namespace kova;
using namespace kova::testing;

namespace {

constexpr LayoutMetrics kDefaults{};

std::size_t allocations = 0;

} // namespace

// Counts every allocation of this program, so that a test can check that a solve makes none.
void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size ? size : 1)) return memory;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++allocations;
    return std::malloc(size ? size : 1);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

TEST(LayoutSolver, DividesTheAreaByWeightsMarginsAndGaps) {
    struct Case {
        const char* what;
        LayoutNode tree;
        CGSize area;
        LayoutMetrics metrics;
        std::string expected;
    };
    const LayoutNode rowOfTwo = row({{0.63, tile("a")}, {0.37, tile("b")}});
    const LayoutNode columnOfTwo = column({{1, tile("a")}, {1, tile("b")}});
    const LayoutNode repeatedID = row({{1, tile("a")}, {1, column({{1, tile("b")}, {1, tile("a")}})}});
    const Case cases[] = {
        {"a tile", tile("a"), {2560, 1440}, kDefaults, "a 10,10 2540x1392"},
        {"by weight", rowOfTwo, {2560, 1440}, kDefaults, "a 10,10 1593x1392 | b 1615,10 935x1392"},
        {"footers between rows", columnOfTwo, {2560, 1440}, kDefaults, "a 10,10 2540x676 | b 10,726 2540x676"},
        {"fractional gutter", rowOfTwo, {2560, 1440}, {10, 12.5, {}}, "a 10,10 1592x1392 | b 1615,10 935x1392"},
        {"the sum of gutter and footer is rounded",
         columnOfTwo,
         {100, 158},
         {10, 12.5, {}},
         "a 10,10 80x35 | b 10,86 80x34"},
        {"an area without room for margins and the last footer",
         columnOfTwo,
         {15, 140},
         kDefaults,
         "a 0,0 15x50 | b 0,90 15x50"},
        {"fractional area", rowOfTwo, {1000.7, 500.9}, kDefaults, "a 10,10 610x452 | b 632,10 358x452"},
        {"gaps wider than the area", rowOfTwo, {30, 200}, {10, 12, {}}, "a 10,10 0x152 | b 22,10 0x152"},
        {"an empty split", row({{1, tile("a")}, {1, column({})}}), {52, 138}, kDefaults, "a 10,10 10x90"},
        {"an empty tree", column({}), {100, 100}, kDefaults, ""},
        {"equal ids share the last frame",
         repeatedID,
         {232, 138},
         {10, 12, {}},
         "a 122,75 100x25 | b 122,10 100x25 | a 122,75 100x25"},
        {"minimum tile size",
         row({{9, tile("a")}, {1, tile("b")}}),
         {1000, 700},
         kDefaults,
         "a 10,10 648x652 | b 670,10 320x652"},
        {"an empty area", rowOfTwo, {0, 0}, kDefaults, "a 0,0 0x0 | b 12,0 0x0"},
        {"an infinite and an invalid size", rowOfTwo, {kInfinity, kNaN}, kDefaults, "a 0,0 0x0 | b 12,0 0x0"},
        {"metrics that are not numbers",
         columnOfTwo,
         {100, 128},
         {kNaN, kInfinity, {kNaN, kNaN}},
         "a 0,0 100x36 | b 0,64 100x36"},
    };
    for (const auto& c : cases) EXPECT_EQ(print(solveSlots(c.tree, {}, c.area, c.metrics, 5)), c.expected) << c.what;

    const auto solved = solveSlots(rowOfTwo, {}, {2560, 1440}, kDefaults, 5);
    EXPECT_EQ(solved.slots[1].name, "Name of b");
    EXPECT_EQ(print(solved.slots[0].normalizedFrame),
              print(makeRect(10 / 2560.0, 10 / 1440.0, 1593 / 2560.0, 1392 / 1440.0)));
}

TEST(LayoutSolver, TilesGrowToTheMinimumSizesOfTheirWindows) {
    const LayoutNode tree = row({{1, tile("a")}, {1, column({{1, tile("b")}, {1, tile("c")}})}});
    struct Case {
        const char* what;
        TileMinimumSizes minimums;
        std::string expected, unsatisfied;
    };
    const Case cases[] = {
        {"the tile grows to the minimum width and the insets; the minimum height does not fit",
         {{"c", {690, 500}}},
         "a 10,10 468x652 | b 490,10 700x306 | c 490,356 700x306",
         "c "},
        {"a minimum that fits on both axes",
         {{"c", {690, 382}}},
         "a 10,10 468x652 | b 490,10 700x220 | c 490,270 700x392",
         ""},
        {"a tile that is half a point too small is large enough",
         {{"c", {699.5, 1}}},
         "a 10,10 459x652 | b 481,10 709x306 | c 481,356 709x306",
         ""},
        {"a minimum that does not fit beside the others",
         {{"a", {900, 100}}},
         "a 10,10 584x652 | b 606,10 584x306 | c 606,356 584x306",
         "a "},
        {"no such tile", {{"z", {1, 1}}}, "a 10,10 584x652 | b 606,10 584x306 | c 606,356 584x306", "z "},
        {"a minimum that is not a number is never satisfied",
         {{"b", {kNaN, 10}}},
         "a 10,10 584x652 | b 606,10 584x306 | c 606,356 584x306",
         "b "},
        {"an infinite minimum is never satisfied",
         {{"b", {kInfinity, 10}}, {"a", {700, 1}}},
         "a 10,10 584x652 | b 606,10 584x306 | c 606,356 584x306",
         "a b "},
        {"negative minimums count as 0",
         {{"b", {-kInfinity, -5}}},
         "a 10,10 584x652 | b 606,10 584x306 | c 606,356 584x306",
         ""},
    };
    for (const auto& c : cases) {
        const auto solved = solveSlots(tree, c.minimums, {1200, 700}, kDefaults, 5);
        std::string unsatisfied;
        for (const auto& id : solved.unsatisfiedTileIDs) unsatisfied += id.text() + " ";
        EXPECT_EQ(print(solved), c.expected) << c.what;
        EXPECT_EQ(unsatisfied, c.unsatisfied) << c.what;
    }
    const auto nothing = solveSlots(column({}), {{"z", {1, 1}}}, {100, 100}, kDefaults, 5);
    EXPECT_TRUE(nothing.slots.empty());
    EXPECT_EQ(nothing.unsatisfiedTileIDs, std::set<SlotID>{"z"})
        << "unknown ids of a tree without tiles are reported, too";
}

TEST(LayoutSolver, DividersAreListedDepthFirst) {
    const LayoutNode tree = column({{1, row({{1, tile("a")}, {1, tile("b")}, {1, tile("c")}})},
                                    {1, tile("d")},
                                    {2, row({{1, column({{1, tile("e")}, {1, tile("f")}})}, {1, tile("g")}})}});
    // Has as many splits as the tree above, but the last one is in another place, so its id must be computed again.
    const LayoutNode other = column({{1, row({{1, row({{1, tile("a")}, {1, tile("b")}})}, {1, tile("c")}})},
                                     {1, tile("d")},
                                     {1, row({{1, tile("e")}, {1, tile("f")}})}});
    LayoutSolver solver;
    SolvedLayout solved;
    for (const auto& each : {other, tree}) {
        solver.solve(each, {{"c", {400, 0}}}, {1020, 1200}, {10, 12, {100, 60}}, 5, solved);
    }
    std::vector<std::string> dividers;
    for (const auto& divider : solved.dividers) dividers.push_back(print(divider));
    const std::vector<std::string> expected{
        "root.0:0 293,10 12x268 lengths 283 283 410 minimums 100 100 410",
        "root.0:1 588,10 12x268 lengths 283 283 410 minimums 100 100 410",
        "root:0 10,278 1000x40 lengths 268 268 536 minimums 60 60 160",
        "root:1 10,586 1000x40 lengths 268 268 536 minimums 60 60 160",
        "root.2.0:0 10,874 494x40 lengths 248 248 minimums 60 60",
        "root.2:0 504,626 12x536 lengths 494 494 minimums 100 100",
    };
    EXPECT_EQ(dividers, expected);
}

TEST(LayoutTree, UsableWeightOverridesReplaceTheWeightsOfASplit) {
    const LayoutNode tree = row({{1, tile("a")}, {0, tile("b")}, {3, column({{1, tile("c")}, {1, tile("d")}})}});
    const auto weights = [&tree](const LayoutWeightOverrides& overrides) {
        const auto root = std::get<LayoutSplit>(applyingWeightOverrides(tree, overrides));
        std::vector<double> all;
        for (const auto& branch : root.branches) all.push_back(branch.weight);
        for (const auto& branch : std::get<LayoutSplit>(root.branches[2].node).branches) all.push_back(branch.weight);
        return all;
    };
    using Weights = std::vector<double>;
    EXPECT_EQ(weights({}), (Weights{1, 0.000001, 3, 1, 1}));
    EXPECT_EQ(weights({{{"root", {5, 6, 7}}, {"root.2", {1180, 1e-9}}}}), (Weights{5, 6, 7, 1180, 0.000001}));
    EXPECT_EQ(weights({{{"root", {2, 1}}, {"root.2", {2, 4}}}}), (Weights{1, 0.000001, 3, 2, 4}))
        << "two weights for three branches";
    for (const double unusable : {0.0, -1.0, kNaN, kInfinity}) {
        EXPECT_EQ(weights({{{"root", {5, unusable, 7}}, {"root.1", {9, 9}}}}), (Weights{1, 0.000001, 3, 1, 1}))
            << unusable;
    }
    EXPECT_EQ(splitID({}), "root");
    EXPECT_EQ(splitID(std::vector{1, 0, 12}), "root.1.0.12");
    EXPECT_EQ(tileCount(tree), 4U);
}

#ifdef KOVA_HAS_RAPIDCHECK
namespace {

/// Computes each node's frame by the rules for layouts and compares the solved layout with it.
struct SplitChecker {
    const TileMinimumSizes& minimums;
    const LayoutMetrics& metrics;
    const SolvedLayout& solved;
    double inset;
    std::size_t nextTile = 0;
    std::size_t nextDivider = 0;

    void check(const LayoutNode& node, const CGRect& area, const std::string& id) {
        if (const auto* leaf = std::get_if<LayoutTile>(&node)) {
            RC_ASSERT(solved.slots.at(nextTile).id == leaf->id);
            RC_ASSERT(solved.frames.at(nextTile++) == area);
            const auto minimum = minimums.find(leaf->id);
            const bool holds =
                minimum == minimums.end() || (minimum->second.width - 0.5 <= area.size.width - 2 * inset &&
                                              minimum->second.height - 0.5 <= area.size.height - 2 * inset);
            RC_ASSERT(solved.unsatisfiedTileIDs.contains(leaf->id) == !holds);
            return;
        }
        const auto& split = std::get<LayoutSplit>(node);
        if (split.branches.empty()) return;
        const bool across = split.axis == LayoutAxis::horizontal;
        const double gap = across ? metrics.columnGutter : metrics.columnGutter + 28;
        const double length = across ? area.size.width : area.size.height;
        const double gaps = gap * static_cast<double>(split.branches.size() - 1);
        const double freeLength = std::max(length - gaps, 0.0);
        const auto lengths = lengthsOf(id, split.branches.size(), freeLength);
        const double sum = std::accumulate(lengths.begin(), lengths.end(), 0.0);
        RC_ASSERT(sum + gaps == std::max(length, gaps));
        std::vector<double> weights, needs;
        for (const auto& branch : split.branches) {
            weights.push_back(branch.weight);
            needs.push_back(neededLength(branch.node, split.axis, minimums, metrics, inset));
        }
        RC_ASSERT(lengths == roundLengths(distributeLengths(weights, needs, freeLength), freeLength));
        const double needed = std::accumulate(needs.begin(), needs.end(), gaps);
        double cursor = across ? area.origin.x : area.origin.y;
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            RC_ASSERT(lengths[i] >= 0 && lengths[i] == std::floor(lengths[i]));
            const LayoutNode& branch = split.branches[i].node;
            if (needed <= length) RC_ASSERT(lengths[i] >= std::floor(needs[i]));
            check(branch,
                  across ? makeRect(cursor, area.origin.y, lengths[i], area.size.height)
                         : makeRect(area.origin.x, cursor, area.size.width, lengths[i]),
                  id + "." + std::to_string(i));
            cursor += lengths[i];
            if (i + 1 == lengths.size()) continue;
            const auto& divider = solved.dividers.at(nextDivider++);
            RC_ASSERT(divider.splitID == id && divider.boundaryIndex == static_cast<int>(i) &&
                      divider.axis == split.axis);
            RC_ASSERT(divider.branchMinimumLengths == needs);
            RC_ASSERT(divider.frame == (across ? makeRect(cursor, area.origin.y, gap, area.size.height)
                                               : makeRect(area.origin.x, cursor, area.size.width, gap)));
            cursor += gap;
        }
    }

    std::vector<double> lengthsOf(const std::string& splitID, std::size_t count, double freeLength) const {
        if (count == 1) return {freeLength};
        for (const auto& divider : solved.dividers) {
            if (divider.splitID == splitID) return divider.branchLengths;
        }
        RC_FAIL("no divider of " + splitID);
    }
};

} // namespace

RC_GTEST_PROP(LayoutSolver, TilesAndGapsFillTheirSplits, ()) {
    int tiles = 0;
    const auto weights = rc::gen::map(rc::gen::inRange(1, 500), [](int w) { return w / 100.0; });
    const LayoutNode tree = randomTree(weights, 3, tiles);
    const double inset = *rc::gen::inRange(0, 8);
    const LayoutMetrics metrics{
        static_cast<double>(*rc::gen::inRange(0, 20)),
        static_cast<double>(*rc::gen::inRange(0, 30)),
        {static_cast<double>(*rc::gen::inRange(0, 400)), static_cast<double>(*rc::gen::inRange(0, 300))}};
    TileMinimumSizes minimums;
    for (int i = 0; i < tiles; i += *rc::gen::inRange(1, 4)) {
        minimums[SlotID("t" + std::to_string(i))] = {*rc::gen::inRange(0, 900) / 2.0, *rc::gen::inRange(0, 700) / 2.0};
    }
    const CGSize area{static_cast<double>(*rc::gen::inRange(100, 6000)),
                      static_cast<double>(*rc::gen::inRange(100, 3000))};

    const auto solved = solveSlots(tree, minimums, area, metrics, inset);
    RC_ASSERT(solved.slots.size() == static_cast<std::size_t>(tiles));
    const double margin = metrics.outerMargin;
    SplitChecker checker{minimums, metrics, solved, inset};
    checker.check(tree, makeRect(margin, margin, area.width - 2 * margin, area.height - 2 * margin - 28), "root");
    RC_ASSERT(checker.nextDivider == solved.dividers.size());
}

RC_GTEST_PROP(LayoutSolver, AnyNumbersGiveFiniteFrames, ()) {
    const auto any =
        rc::gen::oneOf(rc::gen::element(kNaN, kInfinity, -kInfinity, 0.0, -0.0, -1.0, 1e308, -1e308, 5e-324, 1.0, 12.5),
                       rc::gen::arbitrary<double>());
    int tiles = 0;
    const LayoutNode tree = randomTree(any, 3, tiles, *rc::gen::element(3, 1000));
    TileMinimumSizes minimums;
    for (int i = 0; i < tiles + 3; ++i) minimums[SlotID("t" + std::to_string(i))] = {*any, *any};
    const LayoutMetrics metrics{*any, *any, {*any, *any}};
    const CGSize area{*any, *any};
    const double inset = *any;

    // A solver and a result that were used for another tree give the same result as new ones.
    LayoutSolver used;
    SolvedLayout solved;
    int others = 0;
    used.solve(randomTree(any, 3, others), minimums, {900, 700}, kDefaults, 5, solved);
    used.solve(tree, minimums, area, metrics, inset, solved);
    RC_ASSERT(solved == solveSlots(tree, minimums, area, metrics, inset));

    RC_ASSERT(solved.slots.size() == static_cast<std::size_t>(tiles));
    for (const auto& frame : solved.frames) RC_ASSERT(isFinite(frame));
    for (const auto& slot : solved.slots) RC_ASSERT(isFinite(slot.normalizedFrame));
    for (const auto& divider : solved.dividers) {
        RC_ASSERT(isFinite(divider.frame));
        if (const auto dragged = draggedWeights(divider, *any)) {
            for (const double weight : *dragged) RC_ASSERT(weight > 0);
        }
    }
}
#endif

namespace {

LayoutNode chain(int levels) {
    LayoutNode node = tile("t0");
    for (int i = 1; i <= levels; ++i) {
        std::vector<LayoutBranch> branches(1, {1, tile(SlotID("t" + std::to_string(i)))});
        branches.push_back({1, std::move(node)});
        node = LayoutSplit{i % 2 ? LayoutAxis::horizontal : LayoutAxis::vertical, std::move(branches)};
    }
    return node;
}

LayoutNode balanced(int tiles, int first = 0, bool across = true) {
    if (tiles == 1) return tile(SlotID("a tile with a long name " + std::to_string(first)));
    std::vector<LayoutBranch> halves{{1, balanced(tiles / 2, first, !across)},
                                     {1.5, balanced(tiles - tiles / 2, first + tiles / 2, !across)}};
    return across ? row(halves) : column(halves);
}

} // namespace

TEST(LayoutSolver, DeepAndWideTreesAreSolvedCompletely) {
    LayoutSolver solver;
    SolvedLayout result;
    for (const auto& tree : {chain(100), chain(1000), balanced(100), balanced(1000)}) {
        solver.solve(tree, {{"t7", {100, 100}}}, {1e6, 1e6}, kDefaults, 5, result);
        EXPECT_EQ(result.slots.size(), tileCount(tree));
        EXPECT_EQ(result.slots.size(), result.dividers.size() + 1);
    }
}

TEST(LayoutSolver, ASolveIntoTheResultOfAnEarlierSolveAllocatesNothing) {
    const LayoutNode tree = balanced(300);
    const LayoutNode dragged = applyingWeightOverrides(tree, {{{"root", {3, 1}}, {"root.1.0", {1, 9}}}});
    TileMinimumSizes minimums{{"a tile that is not in the tree", {1, 1}}};
    for (int i = 0; i < 300; i += 3)
        minimums[SlotID("a tile with a long name " + std::to_string(i))] = {90.0 - i % 70, 40};
    LayoutSolver solver;
    SolvedLayout result;
    for (const double width : {2560.0, 3000.0}) solver.solve(tree, minimums, {width, 1440}, kDefaults, 5, result);
    const auto unsatisfiedBefore = result.unsatisfiedTileIDs.size();
    const std::size_t before = allocations;
    solver.solve(dragged, minimums, {6000, 2000}, kDefaults, 5, result);
    EXPECT_EQ(allocations, before);
    EXPECT_LT(result.unsatisfiedTileIDs.size(), unsatisfiedBefore);
}

TEST(LayoutSolver, AWindowFitsIfAtMostHalfAPointIsMissing) {
    const CGRect frame = makeRect(0, 0, 110, 210); // 100 x 200 within an inset of 5
    EXPECT_TRUE(holdsWindow(frame, {100.5, 200.5}, 5));
    EXPECT_FALSE(holdsWindow(frame, {100.6, 200}, 5));
    EXPECT_FALSE(holdsWindow(frame, {100, 200.6}, 5));
}
