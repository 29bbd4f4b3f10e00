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

TEST(AppDelegate, StartsAndStopsTheWorkspaceOnceEach) {
    SimulatedDesktop desktop;
    CountingStore preferences;
    desktop.addDisplay({.name = "A", .size = {1920, 1080}});
    const auto polls = [&] { return desktop.pollingQueue().jobsBegun(); };
    {
        AppDelegate delegate(
            {desktop, desktop, desktop, desktop, desktop, preferences, desktop.queue(), desktop.pollingQueue()});
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

} // namespace
} // namespace kova
