// Whole sequences of events on a desktop, from the poll to the last verification of a placement.
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

const CGRect kLeftHalf = makeRect(50, 50, 900, 700);
const CGRect kRightHalf = makeRect(1600, 50, 900, 700);

TEST(DesktopStories, AnArrangementPutsTwoWindowsIntoTilesAndUndoRestoresTheirFrames) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Mail", {.frame = kLeftHalf}).opens("Notes", {.frame = kRightHalf});
    const std::string before = desk.desktop.picture();
    desk.arrange();
    desk.expectTiles("Mail 15,15 1254x1382 | Notes 1291,15 1254x1382");
    desk.expectMessage("Windows arranged into zones — Undo is available");
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(60)), 0) << "a window in place is not written again";
    desk.undo();
    EXPECT_EQ(desk.desktop.picture(), before);
    desk.expectMessage("Last window action undone");
}

TEST(DesktopStories, AWindowStaysOnScreenIfItsDisplayIsUnpluggedDuringThePlacement) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").display(1920, 1080).layout("jarvis.dual-split").start();
    desk.opens("Mail", {.frame = makeRect(2700, 100, 800, 600)});
    desk.advance(Seconds(0.5));
    desk.controller().perform(action::Arrange{});
    desk.advance(Seconds(0.1));
    desk.desktop.removeDisplay("B");
    desk.settle();
    EXPECT_TRUE(desk.desktop.isOnSomeDisplay(desk.desktop.window("Mail"))) << desk.desktop.picture();
}

TEST(DesktopStories, UnpluggingADisplayInFocusModeKeepsAllWindowsReachable) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").display(1920, 1080).layout("jarvis.dual-split").start();
    desk.opens("Notes", {.frame = makeRect(2700, 300, 800, 600)})
        .opens("Mail", {.frame = makeRect(2700, 100, 800, 600)});
    desk.arrange().zoom();
    ASSERT_TRUE(desk.wasCarriedOut());
    desk.desktop.removeDisplay("B");
    desk.settle();
    EXPECT_TRUE(desk.desktop.isOnSomeDisplay(desk.desktop.window("Mail"))) << desk.desktop.picture();
    EXPECT_FALSE(*desk.state().focusMode);
}

TEST(DesktopStories, DragsEndWhenCanceledOrWhenFocusModeBegins) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail", {.frame = kLeftHalf}).arrange();
    const std::string arranged = desk.tiles();
    const CGRect before = desk.desktop.window("Mail").frame;
    ASSERT_TRUE(desk.controller().perform(action::BeginWindowDrag{desk.desktop.windowIDOf("Mail"), before}));
    desk.desktop.userMoves("Mail", kRightHalf);
    desk.advance(Seconds(0.6)); // until a poll has seen the window there
    desk.controller().perform(action::CancelWindowDrag{});
    desk.settle().expectTiles(arranged);

    const auto divider = desk.controller().dividers().front();
    ASSERT_TRUE(desk.controller().perform(action::BeginDividerDrag{divider}));
    desk.controller().perform(action::UpdateDividerDrag{divider, 200});
    desk.advance(Seconds(0.1)).zoom();
    desk.controller().perform(action::EndDividerDrag{divider});
    desk.desktop.quit("Mail");
    desk.settle();
    EXPECT_FALSE(*desk.state().focusMode) << "the zoomed window has closed";
}

TEST(DesktopStories, UndoAfterDisplaysWereRearrangedKeepsAllWindowsOnScreen) {
    Scenario desk;
    desk.display(1920, 1080).layout("jarvis.dual-split").display(2560, 1440).layout("jarvis.dual-split").start();
    desk.opens("Mail", {.frame = makeRect(2000, 100, 800, 600)}).arrange();
    desk.desktop.makeFirstDisplay("B");
    desk.settle().undo();
    EXPECT_TRUE(desk.desktop.isOnSomeDisplay(desk.desktop.window("Mail"))) << desk.desktop.picture();
}

TEST(DesktopStories, AnArrangementIsPlannedForTheStateAfterFocusMode) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.quad-grid");
    desk.opens("Viewer", {.frame = makeRect(1500, 800, 900, 600)})
        .opens("Notes", {.frame = makeRect(1500, 50, 900, 600)});
    desk.opens("Mail", {.frame = makeRect(50, 800, 900, 600)}).start().settle();
    const auto before = desk.controller().planArrangement().explanation();
    for (const char* zoomed : {"Mail", "Notes", "Viewer"}) {
        desk.desktop.userFocuses(zoomed);
        desk.zoom();
        ASSERT_TRUE(*desk.state().focusMode);
        EXPECT_EQ(desk.controller().planArrangement().explanation(), before) << zoomed;
        desk.zoom();
    }
}

TEST(DesktopStories, PollsDoNotRepeatRequestsThatAreBeingVerified) {
    // If every poll repeated the request, the window would never reach the last pass, which shows its minimum size.
    Scenario desk;
    desk.desktop.setAnnouncesAllChanges(false);
    desk.display(2560, 1440).layout("jarvis.quad-grid").start();
    desk.opens("Mail", {.frame = kLeftHalf, .unannouncedMinimumSize = CGSize{1400, 500}});
    desk.advance(Seconds(0.95));
    desk.controller().perform(action::Arrange{});
    desk.advance(Seconds(0.64));
    EXPECT_EQ(desk.desktop.window("Mail").frameWriteCount, 4) << "the first write and three passes";
    EXPECT_TRUE(desk.state().observedMinimumSizes->empty());
    desk.advance(Seconds(0.02));
    EXPECT_EQ(desk.state().observedMinimumSizes->size(), 1u);
}

TEST(DesktopStories, WindowsReturnOnDesktopsWhereHidingAnApplicationMinimizesItsWindows) {
    Scenario desk;
    desk.desktop.setHidingStyle(HidingStyle::iconifiesWindows);
    desk.display(2560, 1440).layout("jarvis.dual-split");
    desk.opens("Mail", {.frame = kLeftHalf}).opens("Notes", {.frame = kRightHalf}).arrange();
    desk.desktop.userFocuses("Mail");
    desk.move(WorkspaceDirection::right);
    desk.expectTiles("- | Mail 1291,15 1254x1382 + Notes");
    EXPECT_TRUE(desk.desktop.window("Notes").isMinimized);
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(30)), 0);
    desk.undo();
    desk.expectTiles("Mail 15,15 1254x1382 | Notes 1291,15 1254x1382");
}

} // namespace

} // namespace kova
