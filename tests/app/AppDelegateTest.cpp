#include "app/AppDelegate.h"
#include "app/FirstSteps.h"
#include "persistence/MemoryPreferencesStore.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

class CountingStore final : public MemoryPreferencesStore {
  public:
    void synchronize() override { ++synchronizations; }
    int synchronizations = 0;
};

WorkspaceServices servicesOf(SimulatedDesktop& desktop, PreferencesStore& preferences) {
    return {desktop, desktop, desktop, desktop, desktop, preferences, desktop.queue(), desktop.pollingQueue(), desktop};
}

TEST(AppDelegate, StartsTheWorkspaceOnceAndStopsItOnce) {
    SimulatedDesktop desktop;
    CountingStore preferences;
    desktop.addDisplay({.name = "A", .size = {1920, 1080}});
    const auto polls = [&] { return desktop.pollingQueue().jobsBegun(); };
    {
        AppDelegate delegate(servicesOf(desktop, preferences));
        delegate.stopWorkspace();
        EXPECT_EQ(preferences.synchronizations, 0) << "the workspace was not started";
        desktop.queue().advance(Seconds(2));
        EXPECT_EQ(polls(), 0);

        delegate.startWorkspace();
        delegate.startWorkspace();
        desktop.queue().advance(Seconds(0.1));
        EXPECT_EQ(polls(), 1);
        EXPECT_TRUE(delegate.workspace().isRunning());

        delegate.stopWorkspace();
        delegate.stopWorkspace();
        EXPECT_EQ(preferences.synchronizations, 1);
        EXPECT_FALSE(delegate.workspace().isRunning());

        delegate.startWorkspace();
        EXPECT_TRUE(delegate.workspace().isRunning());
    }
    EXPECT_EQ(preferences.synchronizations, 2); // the destructor stops the workspace
    desktop.queue().advance(Seconds(30));
    EXPECT_EQ(desktop.queue().pendingCount(), 0U);
}

/// A started workspace with two windows in two tiles, and a simulated pointer.
class SystemActivity : public ::testing::Test {
  protected:
    SystemActivity() {
        desktop.addDisplay({.name = "A", .size = {2560, 1440}});
        advance(0);
        (void)workspace.perform(action::SelectLayout{displayID(desktop.screens().front()),
                                                     DisplayLayoutSelection::layout("jarvis.dual-split")});
        for (const char* name : {"Mail", "Notes"}) {
            desktop.launch(name);
            desktop.open(name);
        }
    }
    ~SystemActivity() override {
        delegate.stopWorkspace();
        EXPECT_EQ(desktop.violations(), std::vector<std::string>{});
    }
    void startAndArrange() {
        delegate.startWorkspace();
        advance(0.5);
        workspace.perform(action::Arrange{});
        advance(3);
    }
    void advance(double seconds) { desktop.queue().advance(Seconds(seconds)); }
    void simulate(const std::vector<SystemActivityEvent>& events) {
        for (const auto event : events) desktop.simulate(event);
        advance(0);
    }
    /// Drags a window over the other tile and back. True if a drop target was published. The test fails if the drop
    /// target was published more than once, which happens if events arrive twice.
    bool monitorsThePointer() {
        const auto& window = desktop.window("Mail");
        const CGPoint title = {minX(window.frame) + 200, minY(window.frame) + 5};
        int targets = 0;
        const auto count = workspace.state().dropTarget.observe([&](const auto& slot) { targets += slot ? 1 : 0; });
        desktop.pressAt(title);
        advance(0.02);
        desktop.movePointer({title.x < 1280 ? 2000.0 : 500.0, 700}); // over the other tile
        advance(0.02);
        desktop.movePointer(title);
        desktop.releaseButton(ShiftKey::up);
        advance(3);
        EXPECT_LE(targets, 1);
        return targets > 0;
    }

    SimulatedDesktop desktop;
    MemoryPreferencesStore preferences;
    AppDelegate delegate{
        servicesOf(desktop, preferences),
        {.pointer = &desktop, .dividerHandles = &desktop, .systemActivity = {&desktop}, .keys = &desktop.keyboard()}};
    WorkspaceController& workspace = delegate.workspace();
};

using enum SystemActivityEvent;

TEST_F(SystemActivity, TheWorkspaceIsSuspendedWhileAnyOfFourConditionsHolds) {
    const std::vector<std::pair<std::vector<SystemActivityEvent>, bool>> steps = {
        {{systemWillSleep}, true},
        {{systemWillSleep}, true},
        {{screensDidSleep}, true},
        {{screenDidLock}, true},
        {{systemDidWake}, true},
        {{screensDidWake}, true},
        {{screensDidWake}, true},
        {{screenDidUnlock}, false},
        {{screenDidUnlock, systemDidWake}, false},
        {{sessionDidResignActive, systemWillSleep, systemDidWake}, true},
        {{sessionDidBecomeActive}, false},
        {{screensDidSleep, screensDidSleep, screensDidWake}, false},
    };
    startAndArrange();
    for (std::size_t i = 0; i < steps.size(); ++i) {
        simulate(steps[i].first);
        EXPECT_EQ(delegate.isWorkspaceSuspended(), steps[i].second) << i;
        const int polls = desktop.pollingQueue().jobsBegun();
        desktop.setTitle("Mail", "Mail " + std::to_string(i));
        advance(1);
        EXPECT_EQ(desktop.pollingQueue().jobsBegun() > polls, !steps[i].second) << i;
    }
}

TEST_F(SystemActivity, ThePointerIsMonitoredOnlyWhileTheScreenCanBeSeenAndDividerHandlesStay) {
    startAndArrange();
    EXPECT_EQ(desktop.handles().size(), 1U);
    EXPECT_TRUE(monitorsThePointer());
    simulate({screensDidSleep, screenDidLock});
    EXPECT_EQ(desktop.handles().size(), 1U);
    EXPECT_FALSE(monitorsThePointer());
    simulate({screensDidWake});
    EXPECT_FALSE(monitorsThePointer());
    simulate({screenDidUnlock, screenDidUnlock});
    EXPECT_TRUE(monitorsThePointer());
    EXPECT_EQ(desktop.handles().size(), 1U);
}

TEST_F(SystemActivity, TheOverlayIsShownFromStartToStopAndRefreshedOnResume) {
    const auto contents = [&] {
        OverlayContents now;
        delegate.overlay().update(now, kEveryOverlaySection);
        return now;
    };
    EXPECT_EQ(contents(), OverlayContents{});
    startAndArrange();
    const OverlayContents shown = contents();
    EXPECT_EQ(shown.displays.size(), 1U);
    EXPECT_EQ(shown.tiles.size(), 2U);
    EXPECT_EQ(shown.dividers.size(), 1U);
    // The suspension ends the drag of a window.
    const CGRect frame = desktop.window("Mail").frame;
    desktop.pressAt({minX(frame) + 200, minY(frame) + 5});
    advance(0.02);
    desktop.movePointer({minX(frame) + 260, minY(frame) + 105});
    advance(0.02);
    EXPECT_TRUE(contents().drag);
    simulate({screenDidLock});
    desktop.releaseButton();
    EXPECT_FALSE(contents().drag);
    EXPECT_TRUE(contents().isSuspended);
    EXPECT_EQ(contents().displays, shown.displays) << "the suspension does not change the overlay";
    EXPECT_EQ(contents().tiles.size(), 2U);
    OverlaySections refreshed = 0;
    delegate.overlay().watch([&](OverlaySections sections) { refreshed |= sections; });
    simulate({screensDidSleep});
    EXPECT_EQ(refreshed, 0U) << "a second reason changes nothing";
    simulate({screensDidWake, screenDidUnlock});
    for (const auto section : {OverlaySection::displays, OverlaySection::tiles, OverlaySection::dividers}) {
        EXPECT_TRUE(holds(refreshed, section)) << static_cast<int>(section);
    }
    delegate.stopWorkspace();
    EXPECT_EQ(contents(), OverlayContents{});
    delegate.startWorkspace();
    advance(1);
    EXPECT_EQ(contents().tiles.size(), 2U) << "the contents are computed again";
    delegate.overlay().watch({});
}

TEST_F(SystemActivity, ShortcutsAreReleasedWhileTheScreenCannotBeSeen) {
    const KeyCombination right{124, modifierFlag::control | modifierFlag::option};
    const auto isGrabbed = [&] { return desktop.keyboard().claimed().contains(right); };
    const auto pressChangesLayout = [&] {
        const auto layout = [&] { return workspace.resolvedLayout(displayID(desktop.screens().front()))->id; };
        const std::string before = layout();
        desktop.keyboard().press(right.keyCode, right.modifierFlags);
        advance(1);
        return layout() != before;
    };
    EXPECT_FALSE(isGrabbed());
    startAndArrange();
    EXPECT_TRUE(isGrabbed() && pressChangesLayout());
    simulate({screenDidLock, screensDidSleep});
    EXPECT_FALSE(isGrabbed() || pressChangesLayout());
    simulate({screensDidWake});
    EXPECT_FALSE(isGrabbed());
    simulate({screenDidUnlock});
    EXPECT_TRUE(isGrabbed() && pressChangesLayout());
    delegate.stopWorkspace();
    EXPECT_FALSE(isGrabbed() || pressChangesLayout());
}

TEST_F(SystemActivity, ALockedScreenAtTheStartSuspendsUntilTheUnlock) {
    desktop.setLocked(true);
    delegate.startWorkspace();
    EXPECT_TRUE(delegate.isWorkspaceSuspended());
    advance(60);
    EXPECT_TRUE(workspace.liveWindows().empty());
    simulate({screenDidUnlock});
    advance(1);
    EXPECT_EQ(workspace.liveWindows().size(), 2U);

    // A sleep that begins before the workspace stops does not affect the next start. Nor does a session switch while
    // the workspace is stopped.
    simulate({systemWillSleep});
    delegate.stopWorkspace();
    EXPECT_EQ(delegate.systemActivityState(), SystemActivityState{});
    simulate({sessionDidResignActive});
    delegate.startWorkspace();
    EXPECT_FALSE(delegate.isWorkspaceSuspended());
    EXPECT_TRUE(monitorsThePointer());
}

/// As on the Mac, a monitor that is installed without the permission never gets an event, even after the permission is
/// granted.
class SilentWithoutPermission final : public PointerMonitorServicing {
  public:
    explicit SilentWithoutPermission(SimulatedDesktop& desktop) : desktop_(desktop) {}
    Subscription observePointer(std::function<void(const PointerEvent&)> observer) override {
        if (!desktop_.isProcessTrusted()) return {};
        return desktop_.observePointer(std::move(observer));
    }

  private:
    SimulatedDesktop& desktop_;
};

TEST(AppDelegate, InstallsMonitorsWhenThePermissionIsGranted) {
    SimulatedDesktop desktop;
    MemoryPreferencesStore preferences;
    desktop.addDisplay({.name = "A", .size = {2560, 1440}});
    desktop.launch("Mail");
    desktop.open("Mail", {.frame = makeRect(100, 100, 500, 400)});
    desktop.setTrusted(false);
    SilentWithoutPermission pointer(desktop);
    AppDelegate delegate(servicesOf(desktop, preferences), {.pointer = &pointer, .keys = &desktop.keyboard()});
    delegate.startWorkspace();
    desktop.queue().advance(Seconds(2));
    EXPECT_TRUE(desktop.keyboard().claimed().empty());
    desktop.setTrusted(true);
    desktop.queue().advance(Seconds(2));
    EXPECT_FALSE(desktop.keyboard().claimed().empty());
    const CGRect frame = desktop.window("Mail").frame;
    desktop.pressAt({minX(frame) + 200, minY(frame) + 5});
    desktop.queue().runDue();
    desktop.movePointer({1300, 500});
    desktop.queue().runDue();
    EXPECT_TRUE(delegate.workspace().state().dropTarget->has_value());
    desktop.releaseButton();
    delegate.stopWorkspace();
}

TEST(AppDelegate, MonitorsThePointerWhileTheWorkspaceIsStarted) {
    SimulatedDesktop desktop;
    MemoryPreferencesStore preferences;
    desktop.addDisplay({.name = "A", .size = {2560, 1440}});
    AppDelegate delegate(servicesOf(desktop, preferences), {&desktop, &desktop});
    auto& workspace = delegate.workspace();
    (void)workspace.perform(action::SelectLayout{displayID(desktop.screens().front()),
                                                 DisplayLayoutSelection::layout("jarvis.dual-split")});
    EXPECT_TRUE(desktop.handles().empty());
    desktop.launch("Mail");
    desktop.open("Mail", {.frame = makeRect(100, 100, 500, 400)});
    for (int round = 0; round < 2; ++round) {
        delegate.startWorkspace();
        desktop.queue().advance(Seconds(1));
        EXPECT_EQ(desktop.handles().size(), 1U);
        desktop.pressAt({300, 110});
        desktop.queue().runDue();
        desktop.movePointer({400, 200});
        desktop.queue().runDue();
        EXPECT_TRUE(workspace.state().dropTarget->has_value());
        delegate.stopWorkspace();
        EXPECT_FALSE(workspace.state().dropTarget->has_value());
        EXPECT_TRUE(desktop.handles().empty());
        desktop.releaseButton();
        desktop.queue().advance(Seconds(30));
        EXPECT_EQ(desktop.queue().pendingCount(), 0U);
        desktop.userMoves("Mail", makeRect(100, 100, 500, 400));
    }
    EXPECT_EQ(desktop.violations(), std::vector<std::string>{});
}

} // namespace

TEST(FirstSteps, AreShownUntilTheFirstArrangement) {
    Scenario desk;
    desk.display(2560, 1440).opens("Mail").start().settle();
    const auto adviceFor = [&](UserHistory userHistory) { return firstSteps(userHistory, desk.controller()); };
    EXPECT_EQ(adviceFor(UserHistory::existingUser), std::nullopt);
    EXPECT_NE(adviceFor(UserHistory::newUser).value_or("").find("“kova arrange”"), std::string::npos);
    desk.arrange();
    EXPECT_EQ(adviceFor(UserHistory::newUser), std::nullopt);
    Scenario wayland;
    wayland.desktop.setUnavailableReason("This is a Wayland session.");
    wayland.start().settle();
    EXPECT_EQ(firstSteps(UserHistory::newUser, wayland.controller()), std::nullopt);
}

} // namespace kova
