// When the desktop is polled, what the result changes, and which results are dropped because they come too late.
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kova {

namespace {

const CGRect kMailFrame = makeRect(100, 100, 700, 500);

/// Actions that are refused without the permission and while the screen is locked.
const std::vector<WorkspaceAction> kRefusedActions = {action::Arrange{},
                                                      action::Focus{WorkspaceDirection::right},
                                                      action::Move{WorkspaceDirection::right},
                                                      action::CycleStack{},
                                                      action::ToggleFocusZoom{},
                                                      action::Undo{}};

TEST(RefreshStories, AnIdleDesktopThatAnnouncesChangesIsNotPolled) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    const int jobs = desk.desktop.pollingQueue().jobsBegun();
    desk.advance(Seconds(600));
    const int jobsWhileIdle = desk.desktop.pollingQueue().jobsBegun();
    EXPECT_LE(jobsWhileIdle, jobs + desk.mostPollsWhileIdle(Seconds(600)));
    desk.desktop.setTitle("Mail", "Inbox (1)");
    desk.advance(Seconds(0.6));
    EXPECT_EQ(desk.desktop.pollingQueue().jobsBegun(), jobsWhileIdle + 1) << "the next tick notices the change";
    EXPECT_EQ(desk.controller().liveWindows().front().title, "Inbox (1)");
}

TEST(RefreshStories, ADesktopWithoutAnnouncementsIsPolledTwiceASecond) {
    Scenario desk;
    desk.desktop.setAnnouncesAllChanges(false);
    desk.display(2560, 1440).opens("Mail").start();
    const int jobs = desk.desktop.pollingQueue().jobsBegun();
    desk.advance(Seconds(10));
    EXPECT_EQ(desk.desktop.pollingQueue().jobsBegun(), jobs + 20);
}

TEST(RefreshStories, TheListHasTheRealFrameOfAWindowThatRoundsItsSize) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Terminal", {.sizeIncrement = {17, 31}}).arrange();
    desk.advance(Seconds(30));
    const ManagedWindow& known = desk.controller().liveWindows().front();
    EXPECT_EQ(known.frame, desk.desktop.window("Terminal").frame);
    EXPECT_EQ(std::fmod(known.frame->size.width, 17), 0);
    const int jobs = desk.desktop.pollingQueue().jobsBegun();
    desk.advance(Seconds(60));
    EXPECT_LE(desk.desktop.pollingQueue().jobsBegun(), jobs + desk.mostPollsWhileIdle(Seconds(60)))
        << "polls are idle again";
}

TEST(RefreshStories, OnlyOnePollRunsAtATimeHoweverSlowItIs) {
    Scenario desk;
    desk.display(2560, 1440).opens("Mail").start();
    desk.desktop.pollingQueue().setJobDuration(Seconds(3));
    desk.desktop.setAnnouncesAllChanges(false);
    const int jobs = desk.desktop.pollingQueue().jobsBegun();
    desk.advance(Seconds(0.5));
    desk.controller().refresh();
    desk.advance(Seconds(2));
    EXPECT_EQ(desk.desktop.pollingQueue().jobsBegun(), jobs + 1);
    EXPECT_EQ(desk.desktop.pollingQueue().jobsWaiting(), 0u);
}

TEST(RefreshStories, WorkAwaitsAPollThatBeginsAfterTheLastChange) {
    Scenario desk;
    desk.display(2560, 1440).opens("Mail").start().settle();
    std::vector<std::string> order;
    const auto awaits = [&](const std::string& name) {
        return desk.controller().awaitCurrent([&desk, &order, name] {
            order.push_back(name + " " + std::to_string(desk.controller().liveWindows().size()));
        });
    };
    // A poll is awaited without a change only on a desktop whose announcements can get lost.
    EXPECT_EQ(awaits("unchanged"), desk.desktop.longestIdleTime().has_value());
    desk.settle();
    order.clear();

    desk.desktop.pollingQueue().setJobDuration(Seconds(0.05));
    desk.controller().refresh(); // does not see the window that opens next
    desk.advance(Seconds(0.01));
    desk.opens("Notes");
    EXPECT_TRUE(awaits("first") && awaits("second"));
    desk.advance(Seconds(0.15));
    EXPECT_EQ(order, (std::vector<std::string>{"first 2", "second 2"}));

    desk.desktop.pollingQueue().setJobDuration(Seconds(3));
    order.clear();
    desk.opens("Codex");
    EXPECT_TRUE(awaits("slow"));
    desk.advance(RefreshCycle::kLongestWait);
    EXPECT_EQ(order, std::vector<std::string>{"slow 2"}) << "the work waits for a slow poll only for a limited time";

    order.clear();
    desk.opens("Firefox");
    EXPECT_TRUE(awaits("asleep"));
    desk.sleep();
    EXPECT_EQ(order.size(), 1u) << "no poll will come, so the work runs at once and is refused";
    desk.desktop.pollingQueue().setJobDuration(Seconds(0));
    desk.wake().settle();
}

TEST(RefreshStories, TheResultOfAPollFromBeforeAStopOrASleepIsDropped) {
    Scenario desk;
    desk.display(2560, 1440).start();
    desk.desktop.pollingQueue().setJobDuration(Seconds(0.4));
    desk.opens("Mail");
    desk.controller().refresh();
    desk.advance(Seconds(0.1));
    desk.controller().stop();
    desk.controller().start(false);
    desk.desktop.close("Mail");
    desk.advance(Seconds(0.35));
    EXPECT_TRUE(desk.controller().liveWindows().empty()) << "the old poll saw a window that has closed";
    desk.settle();

    desk.desktop.open("Mail");
    desk.controller().refresh();
    desk.advance(Seconds(0.1)).sleep();
    desk.advance(Seconds(5));
    EXPECT_TRUE(desk.controller().liveWindows().empty());
    desk.wake().settle();
    EXPECT_EQ(desk.controller().liveWindows().size(), 1u);
}

TEST(RefreshStories, OnlyVisibleChangesRepublishTheWindows) {
    Scenario desk;
    desk.display(2560, 1440).opens("Mail", {.frame = kMailFrame}).start();
    int published = 0;
    const auto subscription = desk.controller().state().windows.observe([&](const auto&) { ++published; });
    desk.desktop.userMoves("Mail", makeRect(300, 300, 700, 500));
    desk.settle();
    EXPECT_EQ(published, 0) << "the window only moved";
    EXPECT_EQ(desk.controller().liveWindows().front().frame, makeRect(300, 300, 700, 500));
    desk.desktop.userMinimizes("Mail");
    desk.settle();
    EXPECT_EQ(published, 1);
}

TEST(RefreshStories, WithdrawingThePermissionEmptiesTheTilesAndGrantingItDoesNotArrange) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    desk.desktop.setTrusted(false);
    desk.settle();
    EXPECT_EQ(*desk.state().permissionState, AccessibilityPermissionState::denied);
    EXPECT_TRUE(desk.state().windows->empty());
    EXPECT_TRUE(desk.state().assignedWindowIDs->empty());
    for (const auto& action : kRefusedActions) {
        desk.advance(Seconds(5)).perform(action);
        EXPECT_FALSE(desk.wasCarriedOut());
        desk.expectMessage("Accessibility permission is required");
    }
    desk.desktop.setTrusted(true);
    desk.settle();
    EXPECT_TRUE(desk.state().assignedWindowIDs->empty()) << "arranging on launch is off";
}

void prepareArrangingOnLaunch(Scenario& desk) {
    WorkspaceProfile profile;
    profile.autoArrangeOnLaunch = true;
    profile.layoutID = "jarvis.dual-split";
    desk.preferences.setValue("KOVA.workspaceProfile.v1", PreferenceData{encodeWorkspaceProfile(profile)});
    desk.display(2560, 1440).opens("Mail").opens("Notes");
}

TEST(RefreshStories, ArrangingOnLaunchWaitsThreeTenthsOfASecondAndUntilTheScreenIsUnlocked) {
    Scenario desk;
    prepareArrangingOnLaunch(desk);
    desk.desktop.setTrusted(false);
    desk.start();
    desk.desktop.setTrusted(true);
    desk.advance(Seconds(0.25));
    EXPECT_TRUE(desk.state().assignedWindowIDs->empty());
    desk.simulate(SystemActivityEvent::screenDidLock).advance(Seconds(60));
    EXPECT_TRUE(desk.state().assignedWindowIDs->empty()) << "a lock may be reported late";
    desk.simulate(SystemActivityEvent::screenDidUnlock).settle();
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 2u);
    EXPECT_FALSE(*desk.state().canUndo) << "an automatic arrangement is no undo step";
    const std::string arranged = desk.tiles();
    desk.opens("Codex").simulate(SystemActivityEvent::screenDidLock).simulate(SystemActivityEvent::screenDidUnlock);
    desk.settle();
    EXPECT_EQ(desk.tiles(), arranged) << "the arrangement happens only once";
}

TEST(RefreshStories, PlacementsAreKeptWhileTheScreenIsLocked) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    const std::string before = desk.tiles();
    desk.desktop.setLocked(true);
    desk.advance(Seconds(1));
    desk.desktop.userMoves("Mail", makeRect(0, 0, 640, 480)); // as a lock screen may move windows
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(60)), 0);
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 2u);
    const std::string movedTiles = desk.tiles();
    for (const auto& action : kRefusedActions) {
        desk.advance(Seconds(5)).perform(action);
        EXPECT_FALSE(desk.wasCarriedOut());
        desk.expectMessage("The screen is locked");
    }
    auto& kova = desk.controller();
    EXPECT_FALSE(kova.perform(action::CycleLayout{}));
    EXPECT_FALSE(kova.perform(action::ResetLayoutSizes{}));
    EXPECT_FALSE(kova.perform(action::SetTileInset{20}));
    EXPECT_EQ(desk.tiles(), movedTiles);
    desk.desktop.setLocked(false);
    desk.settle();
    desk.expectTiles(before);
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(20)), 0);
}

TEST(RefreshStories, EachWindowIsPutBackOnceAfterSleep) {
    Scenario desk;
    desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes").arrange();
    const std::string before = desk.tiles();
    desk.sleep();
    desk.desktop.userMoves("Notes", makeRect(5, 5, 640, 480));
    desk.advance(Seconds(3600));
    EXPECT_EQ(desk.desktop.describeWindow(desk.desktop.window("Notes")), "Notes 5,5 640x480");
    desk.wake().settle();
    desk.expectTiles(before);
    EXPECT_EQ(desk.framesWrittenWithin(Seconds(20)), 0);
}

TEST(RefreshStories, AStatusMessageStaysForItsFullFourSeconds) {
    Scenario desk;
    desk.display(2560, 1440).start();
    auto& controller = desk.controller();
    controller.perform(action::ShowMessage{"There is no such tile"});
    desk.advance(Seconds(3));
    controller.perform(action::ShowMessage{"There is no such window"});
    desk.advance(Seconds(3.9));
    desk.expectMessage("There is no such window");
    controller.perform(action::ShowMessage{"There is no such window"});
    desk.advance(Seconds(3.9));
    desk.expectMessage("There is no such window");
    desk.advance(Seconds(0.2));
    EXPECT_EQ(*controller.state().lastActionMessage, std::nullopt);
}

TEST(RefreshStories, ThePermissionDialogIsShownOnlyWhenRequested) {
    Scenario desk;
    desk.display(2560, 1440);
    desk.desktop.setTrusted(false);
    desk.controller().start(false);
    EXPECT_EQ(desk.desktop.promptCount(), 0);
    desk.controller().stop();
    desk.desktop.setAnswerToPrompt(true);
    desk.controller().start(true);
    EXPECT_EQ(desk.desktop.promptCount(), 1);
    EXPECT_EQ(*desk.state().permissionState, AccessibilityPermissionState::granted);
}

} // namespace

} // namespace kova
