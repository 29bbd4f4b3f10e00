// Stacked windows: how they come forward, and how they return to their tiles after layouts with fewer tiles.
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace kova {

namespace {

using enum WorkspaceDirection;

void userDrops(Scenario& desk, const char* label, CGPoint onDesktop, action::DropMode dropMode) {
    using Movement = action::WindowDragKind;
    const auto& window = desk.desktop.window(label);
    ASSERT_TRUE(desk.controller().perform(action::BeginWindowDrag{desk.desktop.windowIDOf(label), window.frame}));
    desk.desktop.userMoves(label, makeRect(onDesktop.x - 100, onDesktop.y - 20, 700, 500));
    desk.controller().perform(action::EndWindowDrag{{onDesktop.x, 1440 - onDesktop.y}, Movement::move, dropMode});
}

/// One way in which a front window leaves its tile, and the tiles after that.
struct Leaving {
    const char* how;
    std::function<void(Scenario&)> leave;
    const char* tiles;
    const char* tilesWhenOff; // without the setting `bringsNextForward`
};

TEST(StackStories, TheNextStackedWindowComesForwardInWhateverWayTheFrontWindowLeaves) {
    using action::DropMode;
    const Leaving ways[] = {
        {"closed", [](Scenario& desk) { desk.desktop.close("Codex"); },
         "- | Mail 866,15 829x1382 | Viewer 1717,15 828x1382", "- | - + Mail | Viewer 1717,15 828x1382"},
        {"quit", [](Scenario& desk) { desk.desktop.quit("Codex"); },
         "- | Mail 866,15 829x1382 | Viewer 1717,15 828x1382", "- | - + Mail | Viewer 1717,15 828x1382"},
        {"moved", [](Scenario& desk) { desk.move(right); },
         "- | Mail 866,15 829x1382 | Codex 1717,15 828x1382 + Viewer",
         "- | - + Mail | Codex 1717,15 828x1382 + Viewer"},
        {"dropped",
         [](Scenario& desk) {
             userDrops(desk, "Codex", {300, 300}, DropMode::intoTile);
         },
         "Codex 15,15 829x1382 | Mail 866,15 829x1382 | Viewer 1717,15 828x1382",
         "Codex 15,15 829x1382 | - + Mail | Viewer 1717,15 828x1382"},
        {"floated",
         [](Scenario& desk) {
             userDrops(desk, "Codex", {300, 300}, DropMode::floating);
         },
         "- | Mail 866,15 829x1382 | Viewer 1717,15 828x1382", "- | - + Mail | Viewer 1717,15 828x1382"},
    };
    for (const auto style : {HidingStyle::hidesApplication, HidingStyle::iconifiesWindows}) {
        for (const bool isOn : {true, false}) {
            for (const auto& way : ways) {
                Scenario desk;
                desk.desktop.setHidingStyle(style);
                desk.display(2560, 1440).layout("jarvis.triple-strip");
                desk.opens("Viewer", {.frame = makeRect(1800, 50, 600, 800)}).opens("Mail").opens("Codex").arrange();
                desk.controller().perform(action::Switch{action::Setting::bringsNextForward, isOn});
                desk.desktop.userFocuses("Codex");
                desk.move(right).expectTiles("- | Codex 866,15 829x1382 + Mail | Viewer 1717,15 828x1382");
                way.leave(desk);
                desk.settle().expectTiles(isOn ? way.tiles : way.tilesWhenOff);
                EXPECT_EQ(desk.desktop.isOnScreen(desk.desktop.window("Mail")), isOn) << way.how;
            }
        }
    }
}

TEST(StackStories, AnArrangementRightAfterAMoveCountsTheNextStackedWindowAsShown) {
    for (const auto style : {HidingStyle::hidesApplication, HidingStyle::iconifiesWindows}) {
        std::string pictures[2];
        for (const bool isAtOnce : {false, true}) {
            Scenario desk;
            desk.desktop.setHidingStyle(style);
            desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Viewer").arrange();
            const auto left = desk.controller().tiles().front().target;
            desk.opens("Codex").settle();
            desk.controller().perform(command::Place{desk.desktop.windowIDOf("Codex"), left});
            desk.settle().desktop.userFocuses("Codex");
            desk.settle();
            EXPECT_TRUE(desk.controller().perform(action::Move{right}));
            if (!isAtOnce) desk.settle();
            EXPECT_TRUE(desk.controller().perform(action::Arrange{}));
            pictures[isAtOnce] = desk.settle().tiles();
        }
        EXPECT_EQ(pictures[1], pictures[0]);
    }
}

TEST(StackStories, AStackedWindowThatTheUserJustShowedTakesPartInAnArrangement) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.layout("jarvis.focus-single");
    for (const char* label : {"Codex", "Mail"}) {
        if (desk.desktop.isHidden(label)) desk.desktop.userHides(label, false);
    }
    desk.controller().perform(action::Arrange{}); // before a poll has seen the change
    desk.settle();
    for (const char* label : {"Codex", "Mail"}) {
        EXPECT_TRUE(desk.controller().assignments().isInAnyTile(desk.desktop.windowIDOf(label))) << desk.tiles();
    }
    EXPECT_NE(desk.desktop.isHidden("Codex"), desk.desktop.isHidden("Mail"));
}

TEST(StackStories, MovingAWindowAroundAGridAndBackRestoresTheFirstArrangement) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    for (const char* name : {"Codex", "Firefox", "Mail", "Viewer"}) desk.opens(name);
    desk.arrange().desktop.userFocuses("Codex");
    const std::string start = desk.desktop.picture();
    desk.move(right).move(left);
    EXPECT_EQ(desk.desktop.picture(), start);
    desk.move(right).move(down).move(left).move(up);
    EXPECT_EQ(desk.desktop.picture(), start);
    for (int step = 0; step < 6; ++step) desk.undo();
    EXPECT_EQ(desk.desktop.picture(), start);
}

TEST(StackStories, WindowsDisplacedByASpanReturnToTheirTiles) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    desk.opens("Mail", {.frame = makeRect(50, 800, 900, 500)}).opens("Notes", {.frame = makeRect(1400, 800, 900, 500)});
    desk.opens("Codex", {.minimumSize = {{2300, 400}}}).arrange();
    const std::string start = "Codex 15,15 2530x666 | (Codex) | Mail 15,731 1254x666 | Notes 1291,731 1254x666";
    desk.expectTiles(start);
    desk.move(down).expectTiles("- | - | Codex 15,731 2530x666 + Mail + Notes | (Codex)");
    desk.move(up).expectTiles(start);
    desk.move(down).cycleStack();
    EXPECT_TRUE(desk.desktop.isOnScreen(desk.desktop.window("Notes"))) << "the window's tile is free: " << desk.tiles();
}

TEST(StackStories, TheWindowBehindOneThatClosedDuringFocusModeComesForwardWhenFocusModeEnds) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.triple-strip").opens("Viewer").opens("Mail").opens("Codex").arrange();
    desk.desktop.userFocuses("Codex");
    desk.move(right).expectTiles("- | Codex 866,15 829x1382 + Mail | Viewer 1717,15 828x1382");
    desk.desktop.userFocuses("Viewer");
    desk.zoom();
    desk.desktop.close("Codex");
    desk.settle();
    EXPECT_FALSE(desk.desktop.isOnScreen(desk.desktop.window("Mail")));
    desk.zoom().expectTiles("- | Mail 866,15 829x1382 | Viewer 1717,15 828x1382");
}

std::size_t shownCount(Scenario& desk) {
    const auto windows = desk.desktop.livingWindows();
    return static_cast<std::size_t>(std::count_if(
        windows.begin(), windows.end(), [&](const auto* window) { return desk.desktop.isOnScreen(*window); }));
}

TEST(LayoutCycle, CyclingThroughAllLayoutsRestoresTheFirstArrangement) {
    for (const auto style : {HidingStyle::hidesApplication, HidingStyle::iconifiesWindows}) {
        Scenario desk;
        desk.desktop.setHidingStyle(style);
        desk.display(2560, 1440).layout("jarvis.quad-grid");
        for (const char* name : {"Codex", "Firefox", "Mail", "Mail"}) desk.opens(name);
        desk.arrange();
        const std::string start = desk.desktop.picture();
        for (std::size_t step = 0; step < desk.controller().catalogue().size(); ++step) {
            ASSERT_TRUE(desk.controller().perform(action::CycleLayout{}));
            desk.settle();
            EXPECT_EQ(shownCount(desk), std::min<std::size_t>(4, desk.controller().tiles().size())) << desk.tiles();
        }
        EXPECT_EQ(desk.desktop.picture(), start);
        for (int step = 0; step < 5; ++step) desk.undo();
        EXPECT_EQ(shownCount(desk), std::min<std::size_t>(4, desk.controller().tiles().size())) << desk.tiles();
        desk.layout("jarvis.quad-grid");
        EXPECT_EQ(desk.desktop.picture(), start) << "layout changes that were undone have no effect on later changes";
    }
}

TEST(LayoutCycle, ChangesByTheUserDuringTheCycleAreKept) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    desk.opens("Viewer", {.frame = makeRect(1400, 800, 900, 500)})
        .opens("Mail", {.frame = makeRect(50, 800, 900, 500)});
    desk.opens("Firefox", {.frame = makeRect(1400, 50, 900, 500)})
        .opens("Codex", {.frame = makeRect(50, 50, 900, 500)});
    desk.arrange().layout("jarvis.dual-split");
    desk.expectTiles("Codex 15,15 1254x1382 + Mail | Firefox 1291,15 1254x1382 + Viewer");
    desk.desktop.userFocuses("Codex");
    desk.move(right).layout("jarvis.quad-grid");
    desk.expectTiles(
        "Firefox 15,15 1254x666 | Codex 1291,15 1254x666 | Mail 15,731 1254x666 | Viewer 1291,731 1254x666");

    desk.layout("jarvis.focus-single");
    desk.cycleStack();
    desk.desktop.close(desk.desktop.focusedLabel());
    desk.settle().layout("jarvis.quad-grid");
    EXPECT_EQ(shownCount(desk), 3u) << "the windows that the user cycled through have their tiles again: "
                                    << desk.tiles();
}

} // namespace

} // namespace kova
