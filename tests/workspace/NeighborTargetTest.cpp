#include "workspace/NeighborTarget.h"

#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace kova;

namespace {

using enum WorkspaceDirection;

/// Two columns of two tiles each, in screen space (y up).
std::map<TileTarget, CGRect> quad() {
    return {{"lower-left", makeRect(0, 0, 100, 100)},
            {"lower-right", makeRect(100, 0, 100, 100)},
            {"upper-left", makeRect(0, 100, 100, 100)},
            {"upper-right", makeRect(100, 100, 100, 100)}};
}

TEST(NeighborTarget, PrefersTheTileStraightAhead) {
    const CGRect source = makeRect(10, 10, 80, 80);
    EXPECT_EQ(neighborTarget(source, right, quad()), "lower-right");
    EXPECT_EQ(neighborTarget(source, up, quad()), "upper-left");
    EXPECT_EQ(neighborTarget(source, left, quad()), std::nullopt);
    EXPECT_EQ(neighborTarget(source, down, quad()), std::nullopt);
    EXPECT_EQ(neighborTarget(quad().at("upper-right"), left, quad()), "upper-left");
}

TEST(NeighborTarget, MultipliesTheDistanceAcrossTheDirectionByTwoAndAQuarter) {
    const auto frames = [](double aside) {
        return std::map<TileTarget, CGRect>{{"ahead", makeRect(325, 0, 0, 0)}, {"aside", makeRect(100, aside, 0, 0)}};
    };
    EXPECT_EQ(neighborTarget(CGRect{}, right, frames(99)), "aside");
    EXPECT_EQ(neighborTarget(CGRect{}, right, frames(-99)), "aside");
    EXPECT_EQ(neighborTarget(CGRect{}, right, frames(101)), "ahead");
    EXPECT_EQ(neighborTarget(CGRect{}, right, frames(100)), "ahead") << "a tie goes to the smaller key";
}

TEST(NeighborTarget, ATileAtMostOnePointAwayInTheDirectionIsNoNeighbor) {
    const std::map<TileTarget, CGRect> one{{"near", makeRect(1, 0, 0, 0)}};
    EXPECT_EQ(neighborTarget(CGRect{}, right, one), std::nullopt);
    const std::map<TileTarget, CGRect> more{{"near", makeRect(1.5, 0, 0, 0)}};
    EXPECT_EQ(neighborTarget(CGRect{}, right, more), "near");
}

TEST(NeighborTarget, NoTileOfASpanIsANeighborOfTheSpan) {
    struct Case {
        CGSize minimumSize; // of a window that spans two tiles of the grid
        std::size_t from;   // index of the tile into which the window is put first
        WorkspaceDirection direction;
        std::vector<std::size_t> to; // indices of the nearest tiles; the one with the smaller id is chosen
    };
    const Case cases[] = {
        {{2300, 400}, 0, up, {}},       {{2300, 400}, 0, left, {2}},    {{2300, 400}, 0, right, {3}},
        {{2300, 400}, 0, down, {2, 3}}, {{400, 1300}, 1, right, {}},    {{400, 1300}, 1, up, {0}},
        {{400, 1300}, 1, down, {2}},    {{400, 1300}, 1, left, {0, 2}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(describe(c.direction)) + " from " + std::to_string(c.from));
        Scenario desk;
        desk.display(2560, 1440).layout("jarvis.quad-grid").opens("Mail", {.minimumSize = c.minimumSize}).arrange();
        const auto& controller = desk.controller();
        const auto tiles = controller.tiles();
        const WindowID mail = desk.desktop.windowIDOf("Mail");
        ASSERT_TRUE(desk.controller().perform(command::Place{mail, tiles[c.from].target}));
        desk.settle();
        ASSERT_EQ(controller.assignments().targetsOf(mail).size(), 2u);
        desk.move(c.direction);
        EXPECT_EQ(desk.wasCarriedOut(), !c.to.empty());
        if (c.to.empty()) {
            desk.expectMessage("No zone " + std::string(describe(c.direction)) + " of the focused window");
        } else {
            const auto expected = std::min(tiles[c.to.front()].target, tiles[c.to.back()].target);
            EXPECT_EQ(controller.assignments().targetOf(mail), expected);
        }
    }
}

} // namespace
