#include "app/AppDelegate.h"
#include "persistence/MemoryPreferencesStore.h"
#include "platform/simulated/SimulatedDesktop.h"

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

TEST(AppDelegate, StartsAndStopsTheWorkspaceOnceEach) {
    SimulatedDesktop desktop;
    CountingStore preferences;
    desktop.addDisplay({.name = "A", .size = {1920, 1080}});
    const auto polls = [&] { return desktop.pollingQueue().jobsBegun(); };
    {
        AppDelegate delegate(servicesOf(desktop, preferences));
        delegate.stopWorkspace();
        EXPECT_EQ(preferences.synchronizations, 0); // there was nothing to stop
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
    EXPECT_EQ(preferences.synchronizations, 2); // its end stops it
    desktop.queue().advance(Seconds(30));
    EXPECT_EQ(desktop.queue().pendingCount(), 0U);
}

TEST(AppDelegate, WatchesTheHandWhileTheWorkspaceIsStarted) {
    SimulatedDesktop desktop;
    MemoryPreferencesStore preferences;
    desktop.addDisplay({.name = "A", .size = {2560, 1440}});
    AppDelegate delegate(servicesOf(desktop, preferences), {&desktop, &desktop});
    auto& workspace = delegate.workspace();
    (void)workspace.selectLayout(displayID(desktop.screens().front()),
                                 DisplayLayoutSelection::layout("jarvis.dual-split"));
    EXPECT_TRUE(desktop.handles().empty());
    desktop.launch("Mail");
    desktop.open("Mail", {.frame = makeRect(100, 100, 500, 400)});
    for (int round = 0; round < 2; ++round) {
        delegate.startWorkspace();
        desktop.queue().advance(Seconds(1));
        EXPECT_EQ(desktop.handles().size(), 1U);
        desktop.pressAt({300, 110});
        desktop.queue().runDue();
        desktop.moveHand({400, 200});
        desktop.queue().runDue();
        EXPECT_TRUE(workspace.state().dropTargetSlotID->has_value());
        delegate.stopWorkspace();
        EXPECT_FALSE(workspace.state().dropTargetSlotID->has_value());
        EXPECT_TRUE(desktop.handles().empty());
        desktop.letGo();
        desktop.queue().advance(Seconds(30));
        EXPECT_EQ(desktop.queue().pendingCount(), 0U);
        desktop.moveByHand("Mail", makeRect(100, 100, 500, 400));
    }
    EXPECT_EQ(desktop.brokenPromises(), std::vector<std::string>{});
}

} // namespace
} // namespace kova
