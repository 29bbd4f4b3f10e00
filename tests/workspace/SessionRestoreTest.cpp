#include "workspace/SessionRestore.h"

#include "persistence/MemoryPreferencesStore.h"
#include "platform/simulated/VirtualTime.h"

#include <gtest/gtest.h>

using namespace kova;

namespace {

ManagedWindow windowOf(const WindowID& id, pid_t process, bool isVisible = true) {
    ManagedWindow window;
    window.id = id;
    window.processIdentifier = process;
    window.isVisible = isVisible;
    return window;
}

struct SessionRestoreTest : testing::Test {
    VirtualMainQueue queue;
    MemoryPreferencesStore store;
    SessionRestore restore{queue, store, [] { return std::optional<WorkspaceSession>(); }};

    std::set<WindowID> returned(const std::vector<ManagedWindow>& live, const std::set<WindowID>& atTheirFrames,
                                Seconds now) {
        return restore.takeReturned(
            live, [](const auto&) { return true; },
            [&](const ManagedWindow& window, const auto&) { return atTheirFrames.contains(window.id); }, now);
    }
};

TEST_F(SessionRestoreTest, AStoredSessionIsRestoredOnce) {
    WorkspaceSession session;
    session.floatingWindowIDs = {"mail"};
    SessionRestore former(queue, store, [&] { return std::optional(session); });
    former.save();
    SessionRestore next(queue, store, [&] { return std::optional(session); });
    EXPECT_TRUE(next.isUnread());
    EXPECT_EQ(next.takeStored()->floatingWindowIDs, session.floatingWindowIDs);
    EXPECT_FALSE(next.isUnread() || next.takeStored());
    EXPECT_EQ(restore.takeStored(), WorkspaceSession{}) << "no session was stored";
}

TEST_F(SessionRestoreTest, TheWaitForWindowsEndsAtItsTimeout) {
    restore.await({"mail", "notes"}, Seconds{0});
    EXPECT_TRUE(restore.isWaiting());
    EXPECT_EQ(restore.awaited({windowOf("mail", 1)}, Seconds{9}), std::set<WindowID>{"notes"});
    restore.rename("notes", "notes2");
    EXPECT_EQ(restore.awaited({}, Seconds{9}), std::set<WindowID>{"notes2"});
    EXPECT_TRUE(restore.awaited({}, Seconds{10}).empty());
    EXPECT_FALSE(restore.isWaiting());
}

TEST_F(SessionRestoreTest, TheWindowsOfAnApplicationReturnTogether) {
    (void)restore.beginReturns(Seconds{0});
    for (const auto& id : std::vector<WindowID>{"a1", "a2", "b"}) restore.expectReturn(id, makeRect(0, 0, 10, 10));
    const std::vector live{windowOf("a1", 1), windowOf("a2", 1), windowOf("b", 2)};
    EXPECT_EQ(returned(live, {"a1", "b"}, Seconds{1}), std::set<WindowID>{"b"}) << "a2 has not returned to its frame";
    EXPECT_TRUE(restore.isReturning("a1") && !restore.isReturning("b"));
    EXPECT_EQ(returned(live, {"a1"}, Seconds{3}), std::set<WindowID>{"a1"}) << "the timeout has passed without a2";
    EXPECT_FALSE(restore.hasReturns());
}

TEST_F(SessionRestoreTest, TheStartTimeOfAProcessIsReadAgainOnlyAfterItWasDropped) {
    int reads = 0;
    const auto read = [&](pid_t) { return std::optional("start " + std::to_string(++reads)); };
    EXPECT_EQ(restore.processStart(7, read), "start 1");
    EXPECT_EQ(restore.processStart(7, read), "start 1");
    restore.keepProcesses({});
    EXPECT_EQ(restore.processStart(7, read), "start 2") << "the id may belong to another process by now";
}

} // namespace
