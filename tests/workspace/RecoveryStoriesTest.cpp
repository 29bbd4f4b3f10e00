// What the window server does to windows during sleep, a lock or a session switch, and how KOVA restores the windows.
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

using enum SystemActivityEvent;

/// Mail and Notes side by side.
class Recovery : public ::testing::Test {
  protected:
    Recovery() {
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
        picture = desk.tiles();
    }
    Scenario desk;
    std::string picture;
};

TEST_F(Recovery, WindowsReappearOneByOneAndEachIsPutBackOnce) {
    desk.sleep();
    desk.desktop.loseWindow("Mail");
    desk.desktop.userMoves("Notes", makeRect(5, 5, 640, 480));
    desk.advance(Seconds(60)).wake().advance(Seconds(3));
    EXPECT_EQ(desk.tiles().find("Notes 15,15 1254x1382"), 0u) << desk.tiles();
    const int writes = desk.desktop.window("Mail").frameWriteCount;
    desk.desktop.userMoves("Mail", makeRect(5, 5, 640, 480));
    desk.desktop.loseWindow("Mail", false);
    desk.settle();
    desk.expectTiles(picture);
    EXPECT_GT(desk.desktop.window("Mail").frameWriteCount, writes);
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(20)), 0)
        << "many polls have listed the windows, but each is put back only once";
}

TEST_F(Recovery, AMissingWindowLosesItsTileAfterTenSecondsOrAtOnceIfItReturnedAndVanishedAgain) {
    desk.sleep();
    desk.desktop.loseWindow("Mail");
    desk.wake().advance(Seconds(9));
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 2u);
    desk.advance(Seconds(2));
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 1u);

    desk.desktop.loseWindow("Mail", false);
    desk.arrange().sleep();
    for (const char* label : {"Mail", "Notes"}) desk.desktop.loseWindow(label);
    desk.wake().advance(Seconds(1));
    desk.desktop.loseWindow("Notes", false);
    desk.advance(Seconds(1));
    desk.desktop.loseWindow("Notes");
    desk.advance(Seconds(1));
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 1u)
        << "Notes had returned before it vanished; Mail is still awaited";
    desk.desktop.loseWindow("Mail", false);
    desk.advance(Seconds(12));
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 1u);
}

TEST_F(Recovery, StackedWindowsAreAwaitedAfterAllFrontWindowsReturned) {
    desk.opens("Maps").settle();
    const auto tile = desk.controller().tiles().front();
    const std::string waiting = desk.desktop.labelOfID(*tile.windowID);
    ASSERT_TRUE(desk.controller().perform(command::Place{desk.desktop.windowIDOf("Maps"), tile.target}));
    desk.settle();
    picture = desk.tiles();
    ASSERT_NE(picture.find(" + " + waiting), std::string::npos);
    desk.sleep();
    desk.desktop.loseWindow(waiting);
    desk.wake().advance(Seconds(5));
    desk.desktop.loseWindow(waiting, false);
    desk.advance(Seconds(10)).settle();
    desk.expectTiles(picture);
}

TEST_F(Recovery, ASecondSleepKeepsTheMissingWindows) {
    desk.sleep();
    desk.desktop.loseWindow("Mail");
    desk.wake().advance(Seconds(5)).sleep().advance(Seconds(100)).wake().advance(Seconds(5));
    desk.desktop.loseWindow("Mail", false);
    desk.settle();
    desk.expectTiles(picture);
}

TEST_F(Recovery, ALockThatAPollNoticesBeforeItIsAnnouncedKeepsTheMissingWindows) {
    desk.sleep();
    desk.desktop.loseWindow("Mail");
    desk.wake().advance(Seconds(3));
    desk.desktop.setLocked(true);
    desk.advance(Seconds(1)).simulate(screenDidLock).advance(Seconds(60)).simulate(screenDidUnlock).advance(Seconds(3));
    desk.desktop.loseWindow("Mail", false);
    desk.settle();
    desk.expectTiles(picture);
}

TEST_F(Recovery, AWindowWithANewIdentifierIsRecognized) {
    desk.zoom();
    const std::string zoomed = desk.desktop.focusedLabel();
    const std::string zoomedPicture = desk.desktop.picture();
    desk.sleep();
    desk.desktop.renumber("Mail");
    desk.desktop.renumber("Notes");
    desk.wake().settle();
    EXPECT_EQ(desk.desktop.picture(), zoomedPicture) << "the window in focus mode keeps the display";
    EXPECT_EQ(desk.desktop.labelOfID((*desk.state().focusMode)->windowID), zoomed);
    desk.zoom();
    desk.expectTiles(picture);
    desk.undo(); // reverts the arrangement: its snapshot has the new ids
    EXPECT_TRUE(desk.state().assignedWindowIDs->empty());
}

TEST_F(Recovery, ANewIdentifierIsRecognizedOnlyIfExactlyOneWindowHasTheTitleAndSize) {
    struct Case {
        const char* what;
        std::function<void(SimulatedDesktop&)> happens;
        std::size_t assigned;
    };
    const std::vector<Case> cases = {
        {"moved by the desktop",
         [](auto& desktop) {
             const CGRect frame = desktop.window("Mail").frame;
             desktop.userMoves("Mail", makeRect(900, 300, frame.size.width, frame.size.height));
         },
         2},
        {"moved and resized", [](auto& desktop) { desktop.userMoves("Mail", makeRect(900, 300, 500, 400)); }, 1},
        {"with another title", [](auto& desktop) { desktop.setTitle("Mail", "Drafts"); }, 1},
        {"another window has the same title and size",
         [](auto& desktop) { desktop.setTitle(desktop.open("Mail", {.frame = desktop.window("Mail").frame}), "Mail"); },
         1},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        Scenario other;
        other.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
        other.sleep();
        each.happens(other.desktop);
        other.desktop.renumber("Mail");
        other.wake();
        other.advance(Seconds(12));
        EXPECT_EQ(other.state().assignedWindowIDs->size(), each.assigned);
    }
}

TEST_F(Recovery, WhileSuspendedEveryCommandIsRefusedWithAReason) {
    auto& kova = desk.controller();
    const auto divider = kova.dividers().front();
    desk.zoom();
    const std::string pictureBefore = desk.desktop.picture();
    desk.advance(Seconds(3)).simulate(screensDidSleep);
    EXPECT_TRUE(*desk.state().isSuspended);
    const auto tile = kova.tiles().front();
    const std::vector<std::pair<const char*, std::function<bool()>>> commands = {
        {"arrange", [&] { return kova.perform(action::Arrange{}); }},
        {"focus", [&] { return kova.perform(action::Focus{WorkspaceDirection::right}); }},
        {"move", [&] { return kova.perform(action::Move{WorkspaceDirection::right}); }},
        {"cycle", [&] { return kova.perform(action::CycleStack{}); }},
        {"zoom", [&] { return kova.perform(action::ToggleFocusZoom{}); }},
        {"undo", [&] { return kova.perform(action::Undo{}); }},
        {"layout", [&] { return kova.perform(action::CycleLayout{}); }},
        {"inset", [&] { return kova.perform(action::SetTileInset{20}); }},
        {"sizes", [&] { return kova.perform(action::ResetLayoutSizes{}); }},
        {"divider", [&] { return kova.perform(action::ResetDivider{divider}); }},
        {"drag", [&] { return kova.perform(action::BeginDividerDrag{divider}); }},
        {"launch",
         [&] {
             return kova.perform(
                 action::LaunchApplication{desk.desktop.install("Codex"), tile.displayID, tile.slot.id});
         }},
    };
    for (const auto& [name, command] : commands) {
        desk.advance(Seconds(5));
        EXPECT_FALSE(command()) << name;
        desk.expectMessage("Suspended while the screen is asleep, locked or another user's");
    }
    EXPECT_FALSE(kova.perform(action::BeginWindowDrag{desk.desktop.windowIDOf("Mail"), makeRect(0, 0, 100, 100)}));
    desk.advance(Seconds(60));
    EXPECT_EQ(desk.desktop.picture(), pictureBefore);
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(60)), 0);
    desk.simulate(screensDidWake).settle();
    EXPECT_FALSE(*desk.state().isSuspended);
    EXPECT_TRUE(kova.perform(action::Undo{}));
}

TEST_F(Recovery, SuspensionEndsDragsAndVerifications) {
    auto& kova = desk.controller();
    const auto divider = kova.dividers().front();
    for (const bool isAnnounced : {true, false}) { // if not announced, a poll notices the lock
        SCOPED_TRACE(isAnnounced);
        ASSERT_TRUE(kova.perform(action::BeginDividerDrag{divider}));
        kova.perform(action::UpdateDividerDrag{divider, 300});
        desk.advance(Seconds(0.1));
        desk.desktop.takeJournal();
        if (isAnnounced) {
            desk.sleep();
        } else {
            desk.desktop.setLocked(true);
        }
        desk.advance(Seconds(5));
        kova.perform(action::UpdateDividerDrag{divider, 500});
        kova.perform(action::EndDividerDrag{divider});
        desk.advance(Seconds(5));
        EXPECT_EQ(desk.desktop.takeJournal(), "");
        EXPECT_TRUE(desk.state().profile->layoutWeightsByDisplay.empty());
        if (isAnnounced) {
            desk.wake();
        } else {
            desk.desktop.setLocked(false);
        }
        desk.settle();
        desk.expectTiles(picture);
    }
}

TEST_F(Recovery, EndsInTimeEvenWithoutThePermission) {
    desk.desktop.setTrusted(false);
    desk.settle().sleep().wake().advance(Seconds(12));
    const int before = desk.desktop.pollingQueue().jobsBegun();
    desk.advance(Seconds(30));
    // A Mac does not announce the grant of the permission, so KOVA polls it twice a second.
    const int polls = desk.desktop.announcesWithoutRequest() ? 0 : 60;
    EXPECT_EQ(desk.desktop.pollingQueue().jobsBegun() - before, polls) << "no window is awaited any more";
}

TEST_F(Recovery, StoppingWhileSuspendedEndsFocusMode) {
    desk.zoom().sleep().stop();
    EXPECT_FALSE(desk.state().focusMode->has_value());
    EXPECT_FALSE(*desk.state().isSuspended);
    desk.start().settle();
    desk.expectTiles(picture);
}

} // namespace
} // namespace kova
