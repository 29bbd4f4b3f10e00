// Applications that are launched into a tile, and the arrangement after the start of the agent.
#include "tests/harness/Scenario.h"
#include "tests/workspace/Pictures.h"

#include "layout/LayoutCoding.h"

#include <gtest/gtest.h>

#include <functional>

namespace kova {

namespace {

const SlotID kLeft = "focus-main";
const SlotID kRight = "secondary-1";

class Launching : public ::testing::Test {
  protected:
    Launching() {
        desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail", {.frame = makeRect(50, 50, 900, 700)});
        desk.arrange();
        desk.expectTiles(kMailAlone);
    }
    void launch(const LaunchableApplication& application, const SlotID& slot, const char* display = "A") {
        EXPECT_TRUE(desk.controller().perform(action::LaunchApplication{application, desk.displayIDOf(display), slot}));
    }
    std::size_t waiting() { return desk.state().pendingLaunches->size(); }

    static constexpr const char* kMailAlone = "Mail 15,15 1254x1382 | -";
    static constexpr const char* kMailAndNotes = "Mail 15,15 1254x1382 | Notes 1291,15 1254x1382";
    Scenario desk;
};

TEST_F(Launching, TheFirstWindowIsPutIntoTheTile) {
    launch(
        desk.desktop.install("Notes", {.startsAfter = Seconds(1), .windowCount = 2, .window = {.frame = kSomewhere}}),
        kRight);
    desk.advance(Seconds(1.2));
    desk.expectTiles(kMailAlone);
    EXPECT_EQ(waiting(), 1u);
    desk.settle().expectTiles(kMailAndNotes);
    EXPECT_EQ(waiting(), 0u);
    desk.expectMessage("");
    EXPECT_EQ(desk.desktop.window("Notes 2").frame, kSomewhere) << "only the first window goes into the tile";
    desk.undo();
    EXPECT_TRUE(desk.desktop.isOnScreen(desk.desktop.window("Notes"))) << "a launch adds no undo step";
}

TEST_F(Launching, AWindowThatFloatsByCommandIsNotPutIntoTheTile) {
    const auto notes = desk.desktop.install("Notes", {.startsAfter = Seconds(1), .window = {.frame = kSomewhere}});
    desk.opens("Notes", {.frame = kSomewhere}).settle().perform(command::Float{desk.desktop.windowIDOf("Notes")});
    launch(notes, kRight);
    desk.settle();
    EXPECT_TRUE(desk.state().floatingWindowIDs->contains(desk.desktop.windowIDOf("Notes")));
    EXPECT_EQ(desk.desktop.window("Notes").frame, kSomewhere);
}

TEST_F(Launching, AWindowThatThePointerHoldsIsPutIntoTheTileAfterItsRelease) {
    const auto notes = desk.desktop.install("Notes", {.startsAfter = Seconds(1), .window = {.frame = kSomewhere}});
    desk.opens("Notes", {.frame = kSomewhere}).settle();
    desk.perform(action::PressWindow{desk.desktop.windowIDOf("Notes")});
    launch(notes, kRight);
    desk.settle().expectTiles(kMailAlone);
    desk.perform(action::ReleaseWindow{}).expectTiles(kMailAndNotes);
}

TEST_F(Launching, AnExistingWindowWithoutATileIsPutIntoTheTile) {
    struct Case {
        const char* how;
        std::function<void(SimulatedDesktop&)> before;
    };
    const Case cases[] = {
        {"open", [](auto&) {}},
        {"minimized", [](auto& desktop) { desktop.userMinimizes("Notes"); }},
        {"hidden", [](auto& desktop) { desktop.userHides("Notes"); }},
        {"beside a full-screen window",
         [](auto& desktop) {
             desktop.close("Notes");
             desktop.setFullScreen(desktop.open("Notes"), true);
             desktop.open("Notes");
         }},
    };
    const auto notes = desk.desktop.install("Notes");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.how);
        desk.opens("Notes", {.frame = kSomewhere});
        c.before(desk.desktop);
        desk.settle();
        launch(notes, kRight);
        desk.settle();
        EXPECT_NE(desk.tiles().find("1291,15 1254x1382"), std::string::npos) << desk.tiles();
        EXPECT_NE(desk.desktop.focusedLabel().find("Notes"), std::string::npos) << desk.desktop.focusedLabel();
        desk.desktop.quit("Notes");
        desk.settle().expectTiles(kMailAlone);
    }
}

TEST_F(Launching, TheNewWindowDisplacesTheFrontWindowButNoOtherWindowOfItsApplication) {
    desk.opens("Notes", {.frame = kSomewhere}).arrange();
    desk.expectTiles(kMailAndNotes);
    launch(desk.desktop.install("Notes", {.opensWhenRunning = true}), kLeft);
    desk.settle().expectTiles("Notes 2 15,15 1254x1382 + Mail | Notes 1291,15 1254x1382");
    EXPECT_TRUE(desk.desktop.isHidden("Mail"));
}

TEST_F(Launching, ASecondLaunchIntoATileReplacesTheFirst) {
    const auto slow = desk.desktop.install("Maps", {.startsAfter = Seconds(2), .window = {.frame = kSomewhere}});
    launch(slow, kRight);
    launch(desk.desktop.install("Notes"), kRight);
    EXPECT_EQ(waiting(), 1u);
    desk.advance(Seconds(6)).expectTiles(kMailAndNotes);
    EXPECT_EQ(desk.desktop.window("Maps").frame, kSomewhere);
}

TEST_F(Launching, TwoTilesThatAwaitOneApplicationGetOneWindowEachInTheOrderOfTheirTargets) {
    desk.desktop.quit("Mail");
    const auto notes = desk.desktop.install("Notes", {.windowCount = 3, .window = {.frame = kSomewhere}});
    launch(notes, kRight);
    launch(notes, kLeft);
    desk.advance(Seconds(5)).expectTiles("Notes 15,15 1254x1382 | Notes 2 1291,15 1254x1382");
    EXPECT_EQ(desk.desktop.window("Notes 3").frame, kSomewhere);
}

TEST_F(Launching, AWindowWithoutABundleIdentifierIsRecognizedByItsProcess) {
    desk.desktop.launch("Script", {.hasBundleIdentifier = false});
    desk.desktop.open("Script", {.frame = kSomewhere});
    launch(desk.desktop.install("Notes", {.hasBundleIdentifier = false}), kRight);
    desk.settle().expectTiles(kMailAndNotes);
    EXPECT_EQ(desk.desktop.window("Script").frame, kSomewhere);
}

TEST_F(Launching, AFailureIsReportedAndTheTileStopsWaiting) {
    const auto broken = desk.desktop.install("Broken", {.fails = "Broken cannot be started: it is broken"});
    launch(broken, kRight);
    desk.advance(Seconds(1));
    desk.expectMessage("Broken cannot be started: it is broken");
    EXPECT_EQ(waiting(), 0u);
    // A late failure does not affect an application that was launched into the tile meanwhile.
    launch(broken, kRight);
    launch(desk.desktop.install("Notes", {.startsAfter = Seconds(1)}), kRight);
    desk.settle().expectTiles(kMailAndNotes);

    desk.desktop.setTrusted(false);
    desk.settle();
    EXPECT_FALSE(desk.controller().perform(action::LaunchApplication{broken, desk.displayIDOf("A"), kRight}));
    desk.expectMessage("Accessibility permission is required");
    EXPECT_EQ(waiting(), 0u);
}

TEST_F(Launching, ATileWaitsForTwentySeconds) {
    const auto tilesWithLaunchTakingTime = [this](Seconds delay) {
        desk.advance(Seconds(60)); // until polls are idle
        launch(desk.desktop.install("Late", {.startsAfter = delay, .opensAfter = Seconds(0)}), kRight);
        desk.advance(Seconds(19));
        EXPECT_EQ(waiting(), 1u);
        desk.advance(Seconds(1.6));
        EXPECT_EQ(waiting(), 0u) << "the time is over although no other event occurred";
        desk.settle();
        const std::string tiles = desk.tiles();
        if (desk.desktop.isRunning("Late")) desk.desktop.quit("Late");
        desk.advance(Seconds(30));
        desk.desktop.uninstall("Late");
        return tiles;
    };
    EXPECT_EQ(tilesWithLaunchTakingTime(Seconds(19.2)), "Mail 15,15 1254x1382 | Late 1291,15 1254x1382");
    EXPECT_EQ(tilesWithLaunchTakingTime(Seconds(20.3)), kMailAlone);
    EXPECT_EQ(tilesWithLaunchTakingTime(Seconds(40)), kMailAlone);
    const int before = desk.desktop.pollingQueue().jobsBegun();
    desk.advance(Seconds(60));
    EXPECT_LE(desk.desktop.pollingQueue().jobsBegun(), before + desk.mostPollsWhileIdle(Seconds(60)))
        << "polls are idle again";
}

TEST_F(Launching, ALaunchWaitsForADisconnectedDisplayOrAMissingTile) {
    desk.display(1920, 1080).layout("jarvis.dual-split");
    const auto notes = desk.desktop.install("Notes", {.window = {.frame = kSomewhere}});
    launch(notes, kRight, "B");
    desk.desktop.removeDisplay("B");
    desk.advance(Seconds(5)).expectTiles(kMailAlone);
    EXPECT_EQ(waiting(), 1u);
    desk.display(1920, 1080, "B").settle();
    desk.expectTiles("Mail 15,15 1254x1382 | - || - | Notes 3531,15 934x1022");

    desk.desktop.quit("Notes");
    launch(notes, kRight);
    desk.layout("jarvis.focus-single", "A").advance(Seconds(21));
    EXPECT_EQ(waiting(), 0u);
    EXPECT_EQ(desk.desktop.window("Notes").frame, kSomewhere);
}

TEST_F(Launching, TheTimeoutIsSuspendedWhileTheScreenIsLockedOrAsleep) {
    using Change = std::function<void(Scenario&)>;
    const struct {
        const char* how;
        Change away, back;
    } cases[] = {
        {"asleep", [](Scenario& d) { d.sleep(); }, [](Scenario& d) { d.wake(); }},
        {"locked, seen by a poll", [](Scenario& d) { d.desktop.setLocked(true); },
         [](Scenario& d) { d.desktop.setLocked(false); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.how);
        const auto notes = desk.desktop.install("Notes", {.startsAfter = Seconds(3), .window = {.frame = kSomewhere}});
        launch(notes, kRight);
        desk.advance(Seconds(1));
        c.away(desk);
        desk.advance(Seconds(300));
        EXPECT_EQ(desk.desktop.window("Notes").frame, kSomewhere);
        c.back(desk);
        desk.settle().expectTiles(kMailAndNotes);
        desk.desktop.quit("Notes");
        desk.advance(Seconds(20)).expectTiles(kMailAlone);
        desk.desktop.uninstall("Notes");
    }
    launch(desk.desktop.install("Late", {.startsAfter = Seconds(400)}), kRight);
    desk.advance(Seconds(15)).sleep().advance(Seconds(300)).wake().advance(Seconds(4));
    EXPECT_EQ(waiting(), 1u);
    desk.advance(Seconds(2));
    EXPECT_EQ(waiting(), 0u) << "the remaining part of the 20 s is over";
    desk.advance(Seconds(120));
}

TEST(LaunchingOnANamelessDisplay, TheTileIsFoundAfterTheDisplayChangedItsSize) {
    Scenario desk;
    desk.desktop.addDisplay({.name = "VM", .size = {1920, 1080}, .origin = CGPoint{0, 0}, .canTellUUID = false});
    desk.layout("jarvis.dual-split", "VM").opens("Mail").arrange();
    const auto notes = desk.desktop.install("Notes", {.startsAfter = Seconds(4)});
    EXPECT_TRUE(desk.controller().perform(action::LaunchApplication{notes, desk.displayIDOf("VM"), kRight}));
    desk.advance(Seconds(1)).desktop.resizeDisplay("VM", {2560, 1440});
    desk.advance(Seconds(8)).expectTiles("Mail 15,15 1254x1382 | Notes 1291,15 1254x1382");
    EXPECT_TRUE(desk.state().pendingLaunches->empty());
    const auto broken = desk.desktop.install("Broken", {.fails = "Broken is broken", .startsAfter = Seconds(2)});
    EXPECT_TRUE(desk.controller().perform(action::LaunchApplication{broken, desk.displayIDOf("VM"), kRight}));
    desk.advance(Seconds(1)).desktop.resizeDisplay("VM", {1920, 1080});
    desk.advance(Seconds(3));
    EXPECT_TRUE(desk.state().pendingLaunches->empty());
}

TEST_F(Launching, PlacingTheWindowEndsFocusMode) {
    launch(desk.desktop.install("Notes", {.startsAfter = Seconds(3)}), kRight);
    desk.desktop.userFocuses("Mail");
    desk.zoom();
    ASSERT_TRUE(desk.wasCarriedOut());
    desk.advance(Seconds(5)).expectTiles(kMailAndNotes);
    EXPECT_FALSE(*desk.state().focusMode);
}

TEST_F(Launching, NothingIsPlacedOnceManagementHasEnded) {
    launch(desk.desktop.install("Notes", {.window = {.frame = kSomewhere}}), kRight);
    desk.stop();
    EXPECT_EQ(desk.desktop.window("Notes").frame, kSomewhere);
    EXPECT_EQ(waiting(), 0u);
}

/// A stored profile in which arranging after the start is switched on.
PreferenceData arrangingProfile() {
    WorkspaceProfile profile;
    profile.layoutID = "jarvis.dual-split";
    Scenario desk;
    desk.preferences.setValue("KOVA.workspaceProfile.v1", PreferenceData{encodeWorkspaceProfile(profile)});
    desk.controller().perform(action::Switch{action::Setting::autoArrangeOnLaunch, true});
    return *desk.preferences.data("KOVA.workspaceProfile.v1");
}

TEST(ArrangingAfterTheStart, DoesNotMoveWindowsThatARuleHasPlaced) {
    Scenario desk;
    desk.preferences.setValue("KOVA.workspaceProfile.v1", arrangingProfile());
    desk.display(2560, 1440).opens("Mail").start().settle();
    desk.expectTiles("Mail 15,15 1254x1382 | -"); // this tile is learned for Mail
    desk.controller().perform(action::AddRule{
        {Uuid::random(), "Mail aside", true, "sim.mail", std::nullopt, std::nullopt, disposition::Tile{kRight}}});
    desk.controller().perform(action::Switch{action::Setting::continuousManagement, true});
    desk.desktop.quit("Mail");
    desk.settle().opens("Mail", {.frame = kSomewhere}).opens("Mail", {.frame = kSomewhere});
    desk.restart().expectTiles("- | Mail 2 1291,15 1254x1382 + Mail");
    desk.undo();
    EXPECT_TRUE(desk.state().profile->autoArrangeOnLaunch) << "undo does not revert a setting";
}

TEST(ArrangingAfterTheStart, HappensOnlyOnceInAProcess) {
    const PreferenceData stored = arrangingProfile();
    Scenario desk;
    desk.preferences.setValue("KOVA.workspaceProfile.v1", stored);
    desk.display(2560, 1440).opens("Mail").start().settle();
    desk.expectTiles("Mail 15,15 1254x1382 | -");
    desk.opens("Notes", {.frame = kSomewhere}).advance(Seconds(30));
    desk.expectTiles("Mail 15,15 1254x1382 | -");
    desk.stop().start().settle();
    desk.expectTiles("Mail 15,15 1254x1382 | -");

    // The user may arrange before the delay has passed.
    Scenario other;
    other.preferences.setValue("KOVA.workspaceProfile.v1", stored);
    other.display(2560, 1440).opens("Mail").controller().start(false);
    other.advance(Seconds(0.1));
    other.controller().perform(action::Arrange{});
    const std::string explained = other.explanation();
    other.opens("Maps", {.frame = kSomewhere}).settle();
    EXPECT_EQ(other.explanation(), explained);
}

} // namespace

} // namespace kova
