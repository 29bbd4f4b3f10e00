#include "tests/layout/Numbers.h"
#include "tests/layout/Trees.h"

#include <gtest/gtest.h>
#ifdef KOVA_HAS_RAPIDCHECK
#include <rapidcheck/gtest.h>
#endif

#include <cmath>
#include <numeric>

using namespace kova;
using namespace kova::testing;

namespace {

using Lengths = std::vector<double>;

void expectNear(const Lengths& actual, const Lengths& expected, const char* what) {
    ASSERT_EQ(actual.size(), expected.size()) << what;
    for (std::size_t i = 0; i < actual.size(); ++i)
        EXPECT_NEAR(actual[i], expected[i], 1e-6) << what << ", branch " << i;
}

} // namespace

TEST(DistributeLengths, SharesTheLengthByWeightsAndMinimums) {
    struct Case {
        const char* what;
        Lengths weights, minimums;
        double available;
        Lengths expected;
    };
    const Case cases[] = {
        {"no branches", {}, {}, 100, {}},
        {"by weight", {0.63, 0.37}, {0, 0}, 2528, {1592.64, 935.36}},
        {"minimums that do not fit together are ignored", {1, 1}, {400, 400}, 700, {350, 350}},
        {"a branch at its minimum leaves the remaining length to the other", {0.9, 0.1}, {0, 300}, 1000, {700, 300}},
        {"a branch at its minimum can leave another one less than its minimum",
         {8, 1, 1},
         {0, 120, 100},
         1000,
         {780, 120, 100}},
        {"later passes divide the remaining length", {6, 3, 1}, {0, 280, 200}, 1000, {520, 280, 200}},
        {"minimums that just fit", {1, 9}, {500, 500}, 1000, {500, 500}},
        {"weights of 0, below 0 or NaN count as the weight floor", {0, -1, kNaN}, {0, 0, 0}, 300, {100, 100, 100}},
        {"a missing weight counts as the weight floor", {1}, {0, 0}, 1000, {1000 / 1.000001, 0.001 / 1.000001}},
        {"infinite weights take the whole length", {kInfinity, 1, kInfinity}, {0, 0, 0}, 100, {50, 0, 50}},
        {"a minimum of NaN counts as 0", {1, 1}, {kNaN, 60}, 100, {40, 60}},
        {"an infinite minimum never fits", {1, 3}, {kInfinity, 60}, 100, {25, 75}},
        {"no length and no minimums", {1, 1}, {0, 0}, 0, {0, 0}},
        {"no minimums and a negative length", {1, 3}, {}, -100, {-25, -75}},
        {"an infinite length counts as 0", {1, 1}, {0, 0}, kInfinity, {0, 0}},
    };
    for (const auto& c : cases) expectNear(distributeLengths(c.weights, c.minimums, c.available), c.expected, c.what);
}

TEST(RoundLengths, GivesMissingPointsToTheLargestFractions) {
    struct Case {
        const char* what;
        Lengths lengths;
        double available;
        Lengths expected;
    };
    const double third = 100.0 / 3;
    const Case cases[] = {
        {"the larger fraction gets the point", {1592.64, 935.36}, 2528, {1593, 935}},
        {"of equal fractions the first branch gets the point", {third, third, third}, 100, {34, 33, 33}},
        {"of nearly equal fractions the first branch gets the point", {10.5, 10.5 + 5e-10, 9}, 30, {11, 10, 9}},
        {"of two branches with nearly equal fractions the first one gets the point",
         {10.5, 10.5 + 5e-10},
         21,
         {11, 10}},
        {"a fraction larger by more than the tolerance gets the point", {10.5, 10.5 + 5e-9, 9}, 30, {10, 11, 9}},
        {"more missing points than branches", {1.2, 1.4}, 7, {3, 4}},
        {"a half of the available length is rounded up", {1, 1}, 2.5, {2, 1}},
        {"two lengths that are too long together stay", {300, 300}, 500, {300, 300}},
        {"three lengths that are too long together are rounded down", {300.5, 300.6, 2}, 500, {300, 300, 2}},
        {"negative lengths count as 0", {-5, 10}, 10, {0, 10}},
        {"lengths that are not finite count as 0", {kNaN, kInfinity, 3}, 3, {0, 0, 3}},
        {"very many missing points", {0, 0, 0}, 1e12, {333333333334, 333333333333, 333333333333}},
        {"no branches", {}, 10, {}},
    };
    for (const auto& c : cases) EXPECT_EQ(roundLengths(c.lengths, c.available), c.expected) << c.what;
}

#ifdef KOVA_HAS_RAPIDCHECK
RC_GTEST_PROP(DistributeLengths, KeepsMinimumsThatFitAndRoundsToTheWholeLength, ()) {
    const auto count = *rc::gen::inRange<std::size_t>(1, 12);
    const auto weights =
        *rc::gen::container<Lengths>(count, rc::gen::map(rc::gen::inRange(1, 1000), [](int w) { return w / 100.0; }));
    const auto minimums =
        *rc::gen::container<Lengths>(count, rc::gen::map(rc::gen::inRange(0, 400), [](int m) { return m / 2.0; }));
    const double available = *rc::gen::inRange(0, 3000);
    const auto lengths = distributeLengths(weights, minimums, available);
    RC_ASSERT(std::abs(std::accumulate(lengths.begin(), lengths.end(), 0.0) - available) < 1e-6);
    const bool fits = std::accumulate(minimums.begin(), minimums.end(), 0.0) <= available;
    const double share = available / std::accumulate(weights.begin(), weights.end(), 0.0);
    double unpinnedShare = -1; // points per weight, the same for all branches above their minimum
    for (std::size_t i = 0; i < count; ++i) {
        if (!fits) {
            RC_ASSERT(std::abs(lengths[i] - share * weights[i]) < 1e-6);
            continue;
        }
        RC_ASSERT(lengths[i] >= minimums[i]);
        if (lengths[i] < minimums[i] + 1e-6) continue;
        if (unpinnedShare >= 0) RC_ASSERT(std::abs(lengths[i] / weights[i] - unpinnedShare) < 1e-6);
        unpinnedShare = lengths[i] / weights[i];
    }
    const auto rounded = roundLengths(lengths, available);
    RC_ASSERT(std::accumulate(rounded.begin(), rounded.end(), 0.0) == available);
    for (std::size_t i = 0; i < count; ++i) {
        RC_ASSERT(rounded[i] == std::floor(rounded[i]));
        RC_ASSERT(std::abs(rounded[i] - lengths[i]) <= 1);
    }
}
#endif

TEST(DraggedWeights, MoveTheBoundaryWithinTheMinimums) {
    struct Case {
        const char* what;
        Lengths lengths, minimums;
        int boundary;
        double translation;
        std::optional<Lengths> expected;
    };
    const Case cases[] = {
        {"moves the boundary", {600, 600}, {320, 320}, 0, -100, {{500, 700}}},
        {"stops at the minimum of the branch after the boundary", {600, 600}, {320, 320}, 0, 500, {{880, 320}}},
        {"stops at the minimum of the branch before the boundary", {600, 600}, {320, 400}, 0, -500, {{320, 880}}},
        {"branches away from the boundary keep their lengths",
         {200, 300, 400, 0},
         {0, 0, 0, 0},
         1,
         150,
         {{200, 450, 250, 0.000001}}},
        {"minimums that leave one position", {300, 300}, {300, 300}, 0, 40, {{300, 300}}},
        {"minimums that leave no position", {300, 300}, {320, 320}, 0, 10, std::nullopt},
        {"a branch of length 0 has a weight above 0", {50, 50}, {0, 0}, 0, 80, {{100, 0.000001}}},
        {"an infinite drag stops at the minimum", {600, 600}, {320, 320}, 0, kInfinity, {{880, 320}}},
        {"no boundary before the first branch", {1, 1}, {0, 0}, -1, 0, std::nullopt},
        {"no boundary after the last branch", {1, 1}, {0, 0}, 1, 0, std::nullopt},
        {"too few minimums", {1, 1}, {0}, 0, 0, std::nullopt},
        {"a minimum that is not a number", {1, 1}, {kNaN, 0}, 0, 0, std::nullopt},
        {"a drag that is not a number", {1, 1}, {0, 0}, 0, kNaN, std::nullopt},
    };
    for (const auto& c : cases) {
        const LayoutDivider divider{"root", c.boundary, LayoutAxis::horizontal, {}, c.lengths, c.minimums};
        EXPECT_EQ(draggedWeights(divider, c.translation), c.expected) << c.what;
    }
}
