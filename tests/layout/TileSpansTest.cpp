#include "layout/TileSpans.h"
#include "layout/LayoutCatalogue.h"
#include "tests/layout/Numbers.h"

#include <gtest/gtest.h>
#ifdef KOVA_HAS_RAPIDCHECK
#include <rapidcheck/gtest.h>
#endif

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

using namespace kova;

namespace {

using Slots = std::vector<TileSlot>;
using Occupied = std::set<SlotID>;

constexpr CGSize kDisplay{1000, 1000};

std::string ids(const std::optional<TileSpan>& span) {
    if (!span) return "none";
    std::string out;
    for (const auto& slot : span->slots) out += (out.empty() ? "" : " ") + slot.id.text();
    return out;
}

TileSlot slot(SlotID id, double x, double y, double width, double height) {
    return {std::move(id), "", makeRect(x, y, width, height)};
}

} // namespace

#ifdef KOVA_HAS_RAPIDCHECK
namespace {

/// Tries all subsets of the slots: returns the valid one with the anchor that is first in the order of preference.
std::optional<TileSpan> bestOfAllSubsets(const Slots& slots, std::size_t anchor, double inset, CGSize minimum,
                                         const Occupied& occupied) {
    struct Candidate {
        TileSpan span;
        int occupiedCount = 0;
        double area = 0, distance = 0;
        std::string joined;
    };
    const auto precedes = [](const Candidate& a, const Candidate& b) {
        if (a.span.slots.size() != b.span.slots.size()) return a.span.slots.size() < b.span.slots.size();
        if (a.occupiedCount != b.occupiedCount) return a.occupiedCount < b.occupiedCount;
        if (std::abs(a.area - b.area) > 0.000001) return a.area < b.area;
        if (std::abs(a.distance - b.distance) > 0.000001) return a.distance < b.distance;
        return a.joined < b.joined;
    };
    std::optional<Candidate> best;
    for (std::uint32_t subset = 0; subset < 1U << slots.size(); ++subset) {
        if (!(subset >> anchor & 1)) continue;
        Candidate candidate;
        CGRect whole = slots[anchor].normalizedFrame;
        for (std::size_t i = 0; i < slots.size(); ++i) {
            if (!(subset >> i & 1)) continue;
            candidate.span.slots.push_back(slots[i]);
            whole = unionOf(whole, slots[i].normalizedFrame);
            candidate.occupiedCount += static_cast<int>(occupied.count(slots[i].id));
            candidate.joined += slots[i].id.text() + '\0';
        }
        bool clean = true;
        for (std::size_t i = 0; i < slots.size(); ++i) {
            clean = clean && (subset >> i & 1 || intersectionArea(whole, slots[i].normalizedFrame) <= 0.000001);
        }
        const bool fits = minimum.width <= std::max(0.0, whole.size.width * kDisplay.width - 2 * inset) + 0.001 &&
                          minimum.height <= std::max(0.0, whole.size.height * kDisplay.height - 2 * inset) + 0.001;
        if (!clean || !fits) continue;
        candidate.joined.pop_back();
        candidate.span.normalizedFrame = whole;
        candidate.area = whole.size.width * whole.size.height;
        const CGPoint middle = center(whole), anchorMiddle = center(slots[anchor].normalizedFrame);
        candidate.distance = std::hypot(middle.x - anchorMiddle.x, middle.y - anchorMiddle.y);
        if (!best || precedes(candidate, *best)) best = std::move(candidate);
    }
    return best ? std::optional(best->span) : std::nullopt;
}

/// Cuts a rectangle repeatedly in two, at multiples of a twelfth; leaves out some of the pieces.
void cut(const CGRect& whole, int depth, Slots& out) {
    const bool across = *rc::gen::arbitrary<bool>();
    const double length = across ? whole.size.width : whole.size.height;
    const int steps = static_cast<int>(std::lround(length * 12));
    if (depth == 0 || steps < 2 || out.size() >= 12) {
        if (*rc::gen::inRange(0, 8) > 0)
            out.push_back(slot("", minX(whole), minY(whole), whole.size.width, whole.size.height));
        return;
    }
    const double part = *rc::gen::inRange(1, steps) / 12.0;
    cut(across ? makeRect(minX(whole), minY(whole), part, whole.size.height)
               : makeRect(minX(whole), minY(whole), whole.size.width, part),
        depth - 1, out);
    cut(across ? makeRect(minX(whole) + part, minY(whole), length - part, whole.size.height)
               : makeRect(minX(whole), minY(whole) + part, whole.size.width, length - part),
        depth - 1, out);
}

/// Arbitrary slots: overlapping, touching or without area, on a coarse raster so that edges often coincide, some
/// shifted by less than the tolerance of overlaps.
Slots scattered() {
    Slots out;
    const int count = *rc::gen::inRange(2, 9);
    const auto raster = [](int from, int to) { return *rc::gen::inRange(from, to) / 6.0; };
    const auto nudge = [] { return *rc::gen::element(0.0, 0.0, 0.0, 1e-7, -1e-7); };
    for (int i = 0; i < count; ++i) {
        out.push_back(slot("", raster(0, 6) + nudge(), raster(0, 6) + nudge(), raster(0, 3), raster(0, 3)));
    }
    return out;
}

} // namespace

RC_GTEST_PROP(TileSpans, AgreeWithATrialOfAllSubsets, (bool tidy)) {
    Slots slots;
    if (tidy) {
        cut(makeRect(0, 0, 1, 1), 4, slots);
    } else {
        slots = scattered();
    }
    RC_PRE(slots.size() >= 2U);
    Occupied occupied;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        slots[i].id = SlotID(std::string(1, static_cast<char>('a' + (i * 7) % 26)));
        if (*rc::gen::arbitrary<bool>()) occupied.insert(slots[i].id);
    }
    const auto anchor = *rc::gen::inRange<std::size_t>(0, slots.size());
    const CGSize minimum{static_cast<double>(*rc::gen::inRange(0, 800)),
                         static_cast<double>(*rc::gen::inRange(0, 800))};
    const double inset = *rc::gen::element(0.0, 5.0);

    const auto expected = bestOfAllSubsets(slots, anchor, inset, minimum, occupied);
    const auto actual = TileSpanPolicy::bestSpan(slots, slots[anchor].id, kDisplay, inset, minimum, occupied);
    RC_ASSERT(ids(actual) == ids(expected));
    if (actual) RC_ASSERT(nearlyEqual(actual->normalizedFrame, expected->normalizedFrame, 1e-12));
    RC_TAG(expected ? std::to_string(expected->slots.size()) : "none");
}
#endif

TEST(TileSpans, PreferFewSlotsThenFreeSlotsThenASmallAreaThenAShortDistance) {
    struct Case {
        const char* what;
        Slots slots;
        SlotID anchor;
        CGSize minimum;
        Occupied occupied;
        const char* expected;
    };
    const Slots row{slot("b", 0, 0, 0.3, 1), slot("c", 0.3, 0, 0.4, 1), slot("a", 0.7, 0, 0.3, 1)};
    const Slots quad{slot("q1", 0, 0, 0.5, 0.5), slot("q2", 0.5, 0, 0.5, 0.5), slot("q3", 0, 0.5, 0.5, 0.5),
                     slot("q4", 0.5, 0.5, 0.5, 0.5)};
    const Slots nearlyOverlapping{slot("a", 0, 0, 0.5, 1), slot("b", 0.499999, 0, 0.5, 1)};
    const Slots overlapping{slot("a", 0, 0, 0.5, 1), slot("b", 0.499998, 0, 0.5, 1)};
    const Slots gap{slot("a", 0, 0, 0.4, 1), slot("b", 0.6, 0, 0.4, 1)};
    const Slots marked{slot("a", 0, 0, 0.4, 1), slot("line", 0.8, 0, 0, 1), slot("dot", 0.9, 0.5, 0, 0)};
    const Slots invalidFrame{slot("a", kNaN, 0, 0.5, 1), slot("b", 0.5, 0, 0.5, 1), slot("c", 0, 0, 0.5, 1)};
    const Slots uneven{slot("left", 0, 0, 0.3, 1), slot("mid", 0.3, 0, 0.3, 1), slot("right", 0.6, 0, 0.4, 1)};
    const Slots nearTie{slot("z", 0, 0, 0.3, 1), slot("mid", 0.3, 0, 0.4, 1), slot("a", 0.7, 0, 0.3000008, 1)};
    const Case cases[] = {
        {"one slot is enough", quad, "q2", {490, 490}, {"q2"}, "q2"},
        {"width taken from the neighbor", quad, "q2", {600, 100}, {}, "q1 q2"},
        {"width and height taken from neighbors", quad, "q2", {600, 600}, {}, "q1 q2 q3 q4"},
        {"wider than all slots together", quad, "q2", {991, 100}, {}, "none"},
        {"exceeds the span by less than the tolerance", quad, "q2", {990.0009, 100}, {}, "q1 q2"},
        {"one occupied slot beats two free ones", quad, "q1", {490, 490}, {"q1"}, "q1"},
        {"fewer occupied slots", row, "c", {600, 0}, {"a"}, "b c"},
        {"of equal area and distance, the span whose ids sort first", row, "c", {600, 0}, {}, "b c"},
        {"areas within the tolerance are equal", nearTie, "mid", {600, 0}, {}, "mid a"},
        {"smaller area", uneven, "mid", {500, 0}, {}, "left mid"},
        {"an overlap too small to count", nearlyOverlapping, "a", {}, {}, "a"},
        {"an overlap above the tolerance: only both slots together", overlapping, "a", {}, {}, "a b"},
        {"across a gap", gap, "b", {700, 0}, {}, "a b"},
        {"a line without area can be a side", marked, "a", {600, 0}, {}, "a line"},
        {"a dot can be a side, and the line before it is left out", marked, "a", {850, 0}, {}, "a dot"},
        {"the dot as the anchor", marked, "dot", {0, 0}, {}, "dot"},
        {"an anchor with an invalid frame", invalidFrame, "a", {}, {}, "none"},
        {"an invalid frame does not block others", invalidFrame, "b", {600, 0}, {}, "b c"},
        {"invalid minimums count as 0", quad, "q4", {kNaN, -3}, {}, "q4"},
        {"an infinite minimum counts as 0", quad, "q4", {std::numeric_limits<double>::infinity(), 600}, {}, "q2 q4"},
        {"no such anchor", quad, "q9", {}, {}, "none"},
        {"a single slot", {slot("a", 0, 0, 1, 1)}, "a", {}, {}, "none"},
        {"too many slots", Slots(64, slot("a", 0, 0, 1, 1)), "a", {}, {}, "none"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ids(TileSpanPolicy::bestSpan(c.slots, c.anchor, kDisplay, 5, c.minimum, c.occupied)), c.expected)
            << c.what;
    }
}

TEST(TileSpans, AreFoundAmongSixtyThreeSlots) {
    Slots grid;
    for (int y = 0; y < 7; ++y) {
        for (int x = 0; x < 9; ++x) {
            grid.push_back(slot(SlotID(std::to_string(x) + std::to_string(y)), x / 9.0, y / 7.0, 1 / 9.0, 1 / 7.0));
        }
    }
    // Six spans of 3 by 2 slots contain slot 43. Three of them use the occupied row below slot 43. The middle one of
    // the three others is the nearest.
    const auto span = TileSpanPolicy::bestSpan(grid, "43", {1800, 1400}, 0, {500, 300}, {"44", "34", "54"});
    EXPECT_EQ(ids(span), "32 42 52 33 43 53");
    const auto whole = TileSpanPolicy::bestSpan(grid, "43", {1800, 1400}, 0, {1700, 1300}, {});
    EXPECT_EQ(whole->slots, grid);
}

TEST(TileTarget, HasATextOfDisplayAndSlotAndSortsLikeThatText) {
    const DisplayTileTarget tile{"display-0-0-2560x1440", slot("focus-main", 0, 0, 1, 1)};
    EXPECT_EQ(tile.id().text(), "display-0-0-2560x1440::focus-main");
    EXPECT_EQ(TileTarget::from("display-0-0-2560x1440::a::b"), TileTarget("display-0-0-2560x1440", "a::b"));
    EXPECT_EQ(TileTarget::from("display-0-0-2560x1440").slot, "");
    // The second display's id begins with the first one's.
    std::vector<TileTarget> tiles{{"display-0-0-800x600", "b"},
                                  {"display-0-0-800x6000", "a"},
                                  {"display-0-0-800x600", "a"},
                                  {"display-0-0-640x480", "z"}};
    std::vector<std::string> texts;
    std::ranges::transform(tiles, std::back_inserter(texts), &TileTarget::text);
    std::ranges::sort(tiles);
    std::ranges::sort(texts);
    EXPECT_TRUE(std::ranges::equal(tiles, texts, {}, &TileTarget::text));
}

TEST(TileSpans, DistancesAndFitsHaveNarrowTolerances) {
    // The left neighbor is wider than the right one by 0.00001. This difference exceeds the tolerance of distances. The
    // difference of the areas is within its tolerance, because the tiles are flat.
    const Slots slots{slot("b", 0, 0, 0.30001, 0.05), slot("m", 0.30001, 0, 0.39999, 0.05),
                      slot("z", 0.7, 0, 0.3, 0.05)};
    EXPECT_EQ(ids(TileSpanPolicy::bestSpan(slots, "m", kDisplay, 0, {600, 0}, {})), "m z");
    EXPECT_EQ(ids(TileSpanPolicy::bestSpan(slots, "m", kDisplay, 0, {700.0005, 0}, {})), "b m");
    EXPECT_EQ(ids(TileSpanPolicy::bestSpan(slots, "m", kDisplay, 0, {700.05, 0}, {})), "b m z");
}
