// Which windows get a tile, which are displaced and how, and how windows that are large or refuse frames affect a
// layout.
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

TEST(PlacementStories, SurplusWindowsAreMinimizedAndTheNextArrangementDoesNotChangeThem) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    for (const char* name : {"Codex", "Mail", "Viewer", "Firefox"}) desk.opens(name);
    desk.arrange();
    desk.expectTiles("Codex 15,15 1254x1382 | Firefox 1291,15 1254x1382");
    EXPECT_TRUE(desk.desktop.window("Mail").isMinimized);
    EXPECT_TRUE(desk.desktop.window("Viewer").isMinimized);
    EXPECT_EQ(desk.state().lastArrangeExplanation->back(), "2 surplus windows minimized; none were closed.");
    EXPECT_EQ(desk.desktop.livingWindows().size(), 4u);
    const std::string before = desk.desktop.picture();
    desk.arrange();
    EXPECT_EQ(desk.desktop.picture(), before) << "a repeated arrangement moves no window";
}

TEST(PlacementStories, AWindowManagerThatPlacesWindowsItselfIsReportedByItsNameOrAfterRefusals) {
    const std::string advice =
        "Only windows that float there can be arranged; use KOVA with a window manager that lets "
        "windows float.";
    Scenario named;
    named.display(2560, 1440).opens("Mail").opens("Notes");
    named.desktop.placeWindowsItself("i3");
    named.arrange().expectMessage("i3 places windows itself, so they stay where it puts them. " + advice);

    Scenario nameless;
    nameless.display(2560, 1440).opens("Mail").opens("Notes");
    nameless.desktop.placeWindowsItself(std::nullopt);
    nameless.arrange().expectMessage("Windows arranged into zones — Undo is available");
    nameless.settle().arrange();
    nameless.expectMessage("No window goes where it is sent: the window manager places them itself. " + advice);

    Scenario obedient; // only one window refuses
    obedient.display(2560, 1440).opens("Mail", {.refusesToMove = true}).opens("Notes");
    obedient.arrange().settle().arrange();
    obedient.expectMessage("Windows arranged into zones — Undo is available");
}

TEST(PlacementStories, ADryRunChangesNothingAndDescribesTheArrangement) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.triple-strip").opens("Mail").opens("Codex").start();
    const std::string before = desk.desktop.picture();
    const auto planned = desk.controller().planArrangement().explanation();
    EXPECT_EQ(desk.settle().desktop.picture(), before);
    desk.arrange();
    EXPECT_EQ(*desk.state().lastArrangeExplanation, planned);
}

TEST(PlacementStories, TheFootersLieBelowTheirTilesAndPrimaryIsTopLeft) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    desk.opens("Codex").opens("Firefox", {.frame = makeRect(1400, 100, 800, 500)});
    desk.opens("Mail", {.frame = makeRect(100, 800, 800, 500)})
        .opens("Viewer", {.frame = makeRect(1400, 800, 800, 500)});
    desk.arrange();
    // Without its margins and the footer of the last row, the display has 1392 points of height. The gap of 12 and the
    // footer of 28 between the rows take 40 of them; each row gets 676.
    desk.expectTiles("Codex 15,15 1254x666 | Firefox 1291,15 1254x666 | "
                     "Mail 15,731 1254x666 | Viewer 1291,731 1254x666");
}

TEST(PlacementStories, AnArrangementShowsMinimizedAndHiddenWindowsFirstAndPlacesThemLater) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Codex", {.isMinimized = true}).opens("Mail").start();
    desk.desktop.userHides("Mail");
    desk.settle();
    desk.desktop.pollingQueue().setJobDuration(Seconds(3)); // a poll would place the windows as well
    ASSERT_TRUE(desk.controller().perform(action::Arrange{}));
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(0.8)), 0);
    EXPECT_FALSE(desk.desktop.window("Codex").isMinimized);
    EXPECT_FALSE(desk.desktop.isHidden("Mail"));
    desk.advance(Seconds(0.1)).expectTiles("Codex 15,15 1254x1382 | Mail 1291,15 1254x1382");
    desk.settle();
}

TEST(PlacementStories, ANewerOperationCancelsTheSecondPassOfAnArrangement) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail", {.isMinimized = true}).start();
    auto& controller = desk.controller();
    controller.perform(action::Arrange{});
    desk.advance(Seconds(0.5));
    controller.perform(action::Undo{});
    desk.settle();
    EXPECT_TRUE(desk.desktop.window("Mail").isMinimized) << "an operation that was undone is not completed afterwards";
    EXPECT_TRUE(desk.state().assignedWindowIDs->empty());
}

TEST(PlacementStories, TheSecondPassDoesNotRevertChangesByTheUser) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail", {.isMinimized = true}).start();
    desk.desktop.userFocuses("Codex");
    desk.controller().perform(action::Arrange{});
    desk.advance(Seconds(0.3));
    desk.controller().perform(action::Move{WorkspaceDirection::right});
    desk.settle();
    desk.expectTiles("- | Codex 1291,15 1254x1382 + Mail");
    EXPECT_FALSE(desk.desktop.isHidden("Codex"));
    EXPECT_FALSE(desk.desktop.isOnScreen(desk.desktop.window("Mail"))) << "a stacked window is hidden";
}

TEST(PlacementStories, AChangeOfLayoutDoesNotHideAFullScreenWindow) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.desktop.setFullScreen("Mail", true);
    desk.advance(Seconds(1));
    desk.layout("jarvis.focus-single");
    EXPECT_FALSE(desk.desktop.isHidden("Mail"));
}

TEST(PlacementStories, ADisplacedWindowIsHiddenWithItsApplicationUnlessTheApplicationHasAnotherTile) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.triple-strip");
    desk.opens("Mail", {.frame = makeRect(50, 50, 600, 800)}).opens("Mail", {.frame = makeRect(900, 50, 600, 800)});
    desk.opens("Viewer", {.frame = makeRect(1800, 50, 600, 800)}).arrange();
    desk.expectTiles("Mail 15,15 829x1382 | Mail 2 866,15 829x1382 | Viewer 1717,15 828x1382");
    desk.desktop.userFocuses("Mail 2");
    desk.move(WorkspaceDirection::right);
    desk.expectMessage("Moved Mail to the right zone");
    desk.expectTiles("Mail 15,15 829x1382 | - | Mail 2 1717,15 828x1382 + Viewer");
    EXPECT_TRUE(desk.desktop.isHidden("Viewer"));

    desk.desktop.userFocuses("Mail");
    desk.move(WorkspaceDirection::right).move(WorkspaceDirection::right);
    desk.expectTiles("- | - | Mail 1717,15 828x1382 + Mail 2 + Viewer");
    EXPECT_TRUE(desk.desktop.window("Mail 2").isMinimized) << "the application has another tile";
    EXPECT_FALSE(desk.desktop.isHidden("Mail"));
}

TEST(PlacementStories, AnAnnouncedMinimumEnlargesTheTile) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Codex", {.minimumSize = {{1700, 400}}}).opens("Mail").arrange();
    desk.expectTiles("Codex 15,15 1700x1382 | Mail 1737,15 808x1382");
    EXPECT_EQ(*desk.state().placementNotice, std::nullopt);
}

TEST(PlacementStories, AWindowTooLargeForItsTileClaimsTheNeighborWithANotice) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    desk.opens("Codex", {.minimumSize = {{2300, 400}}}).opens("Mail").arrange();
    desk.expectTiles("Codex 15,15 2530x666 | (Codex) | Mail 15,731 1254x666 | -");
    const auto notice = *desk.state().placementNotice;
    ASSERT_TRUE(notice);
    EXPECT_EQ(notice->additionalTileCount, 1);
    EXPECT_EQ(notice->applicationName, "Codex");
    EXPECT_EQ(notice->claimedFrame, makeRect(10, 1440 - 10 - 676, 2540, 676)) << "the frame is in screen space";
}

TEST(PlacementStories, AWindowThatRefusesToShrinkGetsTheRoomThatItNeeds) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Codex").opens("Mail", {.unannouncedMinimumSize = {{1500, 300}}}).arrange();
    desk.expectTiles("Codex 15,15 1008x1382 | Mail 1045,15 1500x1382");
    EXPECT_EQ(desk.state().observedMinimumSizes->begin()->second, (CGSize{1500, 0}))
        << "only in the direction in which the window refused";
    EXPECT_EQ(desk.state().profile->applicationMinimumSizes.at("sim.mail"), (CGSize{1500, 0}));
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(60)), 0) << "the desktop has settled";
}

TEST(PlacementStories, AFrameThatAWindowRefusesIsRequestedThreeMoreTimes) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Codex").opens("Mail", {.frame = makeRect(40, 40, 500, 400), .refusesToMove = true}).arrange();
    desk.advance(Seconds(10));
    // The arrangement requests the frame as well. Each request writes it six times: at once, in the four passes of the
    // verification, and to move the window at least inside its tile.
    EXPECT_EQ(desk.desktop.window("Mail").frameWriteCount, (1 + FrameKeeper::kAttempts) * 6);
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(600)), 0);
    desk.desktop.setAnnouncesAllChanges(false);
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(600)), 0) << "later polls do not request the frame either";
}

TEST(PlacementStories, AWindowMovedOffItsTileReturnsAndOtherWindowsGetNoRequest) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    const std::string before = desk.tiles();
    const int writes = desk.desktop.window("Codex").frameWriteCount;
    desk.desktop.userMoves("Mail", makeRect(300, 300, 500, 400));
    desk.settle();
    desk.expectTiles(before);
    EXPECT_EQ(desk.desktop.window("Codex").frameWriteCount, writes);
}

TEST(PlacementStories, WindowsInFullScreenOrOnOtherVirtualDesktopsAreNotArranged) {
    Scenario desk;
    desk.desktop.setSpaceStyle(SpaceStyle::listsAll);
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.desktop.setFullScreen("Codex", true);
    desk.opens("Elsewhere", {.frame = makeRect(10, 10, 640, 480), .virtualDesktop = 3}).opens("Viewer");
    desk.desktop.userFocuses("Mail");
    desk.arrange();
    const auto& assigned = *desk.state().assignedWindowIDs;
    EXPECT_EQ(assigned.at(desk.target("A", "focus-main")), desk.desktop.windowIDOf("Codex"))
        << "the full-screen window keeps its tile";
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Elsewhere")).substr(0, 23), "Elsewhere 10,10 640x480");
    EXPECT_TRUE(desk.desktop.window("Viewer").isMinimized);
    desk.desktop.setFullScreen("Codex", false);
    desk.settle();
    desk.expectTiles("Codex 15,15 1254x1382 | Mail 1291,15 1254x1382");
}

TEST(PlacementStories, AWindowThatClosesBetweenPlanAndPlacementIsSkipped) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Codex", {.vanishesAtWrite = 1}).opens("Mail").arrange();
    desk.expectTiles("- | Mail 1291,15 1254x1382");
}

TEST(PlacementStories, LearnedTilesAreKeptAfterARestart) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Codex").opens("Mail").arrange();
    desk.desktop.userFocuses("Mail");
    for (int i = 0; i < 3; ++i) {
        desk.move(WorkspaceDirection::left);
        desk.desktop.userFocuses("Mail");
    }
    desk.restart();
    desk.arrange();
    desk.expectTiles("Mail 15,15 1254x1382 | Codex 1291,15 1254x1382");
}

TEST(PlacementStories, AnArrangementThatIsUndoneIsNotLearned) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    for (int count = 0; count < 3; ++count) desk.opens("Terminal");
    desk.opens("Mail").arrange();
    const std::string arranged = desk.desktop.picture();
    desk.undo();
    for (int round = 0; round < 5; ++round) {
        desk.arrange();
        EXPECT_EQ(desk.desktop.picture(), arranged) << "several windows of one application keep their places";
        EXPECT_EQ(desk.explanation().find("usually keep"), std::string::npos) << desk.explanation();
        desk.undo();
    }
    for (int round = 0; round < 4; ++round) {
        EXPECT_EQ(desk.arrange().explanation().find("usually keep") != std::string::npos, round == 3) << round;
        EXPECT_EQ(desk.desktop.picture(), arranged);
    }
}

TEST(PlacementStories, TheWindowInUseKeepsATile) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    for (const char* name : {"Console", "Codex", "Firefox", "Mail"}) desk.opens(name);
    desk.start().desktop.userFocuses("Firefox");
    desk.settle().desktop.userFocuses("Console");
    desk.settle().arrange();
    desk.expectTiles("Firefox 15,15 1254x1382 | Console 1291,15 1254x1382");
    desk.arrange().expectTiles("Firefox 15,15 1254x1382 | Console 1291,15 1254x1382");
}

TEST(PlacementStories, WindowsStayOnTheirDisplays) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.display(1920, 1080).layout("jarvis.dual-split");
    desk.opens("Codex", {.frame = makeRect(2700, 60, 800, 600)}).opens("Mail", {.frame = makeRect(50, 60, 800, 600)});
    desk.arrange();
    desk.expectTiles("Mail 15,15 1254x1382 | - || Codex 2575,15 934x1022 | -");
}

} // namespace

} // namespace kova
