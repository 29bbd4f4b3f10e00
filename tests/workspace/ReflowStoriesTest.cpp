// Although some windows refuse frames, every desktop settles, and windows that fit do not overlap.
#include "tests/harness/Scenario.h"
#include "workspace/ReflowPolicy.h"

#include <gtest/gtest.h>

#include <random>

namespace kova {

namespace {

TEST(ReflowPolicy, AllowsOneReflowPerSecondOnEachDisplayAndThreeForEachWindow) {
    ReflowPolicy policy;
    EXPECT_EQ(policy.nextReflow("D", "a", Seconds(10)), Seconds(10));
    policy.noteReflow("D", "a", Seconds(10));
    EXPECT_EQ(policy.nextReflow("D", "b", Seconds(10.4)), Seconds(11));
    EXPECT_EQ(policy.nextReflow("E", "a", Seconds(10.4)), Seconds(10.4));
    policy.noteReflow("D", "a", Seconds(11));
    policy.noteReflow("D", "a", Seconds(12));
    EXPECT_EQ(policy.nextReflow("D", "a", Seconds(90)), std::nullopt);
    policy.resetCounts();
    EXPECT_EQ(policy.nextReflow("D", "a", Seconds(90)), Seconds(90));
}

TEST(ReflowStories, ReflowsEndForAWindowThatAlwaysTakesMoreThanItsTile) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid").opens("Codex");
    desk.opens("Mail", {.unannouncedMinimumSize = {{2400, 300}}}).opens("Notes").opens("Viewer").arrange();
    desk.advance(Seconds(10));
    const auto notice = *desk.state().placementNotice;
    ASSERT_TRUE(notice) << "the window claimed a span";
    EXPECT_EQ(notice->applicationName, "Mail");
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(120)), 0);
}

TEST(ReflowStories, ASpanEndsWhenItsWindowFitsIntoOneTile) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid").opens("Mail", {.minimumSize = {{2500, 300}}}).arrange();
    desk.expectTiles("Mail 15,15 2530x666 | (Mail) | - | -");
    desk.desktop.setMinimumSize("Mail", {2450, 300});
    desk.settle().expectTiles("Mail 15,15 2530x666 | (Mail) | - | -");
    desk.desktop.setMinimumSize("Mail", {600, 300});
    desk.settle().expectTiles("Mail 15,15 1254x666 | - | - | -");
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(60)), 0);
}

std::vector<CGRect> tiledFrames(Scenario& desk) {
    std::vector<CGRect> frames;
    for (const auto& tile : desk.controller().tiles()) {
        if (!tile.windowID) continue;
        const auto& window = desk.desktop.window(desk.desktop.labelOfID(*tile.windowID));
        if (desk.controller().assignments().targetOf(*tile.windowID) != tile.target || window.isMinimized) continue;
        frames.push_back(desk.desktop.frameForWindowService(window));
    }
    return frames;
}

TEST(ReflowStories, EveryArrangementSettlesAndWindowsThatFitDoNotOverlap) {
    const std::vector<std::string> layouts = {"jarvis.command-center", "jarvis.dual-split", "jarvis.triple-strip",
                                              "jarvis.quad-grid",      "jarvis.six-grid",   "jarvis.triple-stack"};
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const auto upTo = [&](int limit) { return static_cast<double>(random() % static_cast<unsigned>(limit + 1)); };
        Scenario desk;
        desk.display(2560, 1440).layout(layouts[random() % layouts.size()]);
        bool allAcceptFrames = true;
        for (int i = 0; i < 5; ++i) {
            WindowTraits traits;
            const auto kind = random() % 5;
            if (kind == 1) traits.minimumSize = CGSize{200 + upTo(350), 100 + upTo(100)};
            if (kind == 2) traits.unannouncedMinimumSize = CGSize{200 + upTo(350), 100 + upTo(100)};
            if (kind == 3) traits.sizeIncrement = {5 + upTo(15), 5 + upTo(25)};
            if (kind == 4) {
                traits.refusesToMove = random() % 2 == 0;
                traits.refusesToResize = !traits.refusesToMove;
                allAcceptFrames = false;
            }
            desk.opens("App" + std::to_string(i), traits);
        }
        desk.arrange().advance(Seconds(30));
        EXPECT_EQ(desk.framesWrittenWithin(Seconds(60)), 0) << desk.desktop.picture();
        if (!allAcceptFrames) continue; // windows that refuse to move may overlap
        const auto frames = tiledFrames(desk);
        for (std::size_t a = 0; a < frames.size(); ++a) {
            for (std::size_t b = a + 1; b < frames.size(); ++b) {
                EXPECT_EQ(intersectionArea(frames[a], frames[b]), 0) << desk.desktop.picture();
            }
        }
    }
}

} // namespace

} // namespace kova
