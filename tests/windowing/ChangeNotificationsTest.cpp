#include "windowing/ChangeNotifications.h"

#include "tests/windowing/ServiceBench.h"

#include <gtest/gtest.h>

#include <string>

namespace kova {
namespace {

TEST(ChangeNotifications, EachWaitingObjectIsNotifiedOnceUnlessItCancels) {
    ServiceBench bench;
    bench.desktop.open("Mail", {});
    ChangeNotifications& changes = *bench.changes;
    std::string calls;
    const auto runPosted = [&] { bench.desktop.queue().advance(Seconds(0)); };
    const auto count = changes.reliableCount();
    ASSERT_TRUE(count);

    auto first = changes.notifyWhenChanged(*count, [&] { calls += "first "; });
    auto second = changes.notifyWhenChanged(*count, [&] { calls += "second "; });
    auto canceled = changes.notifyWhenChanged(*count, [&] { calls += "canceled "; });
    canceled = {};
    runPosted();
    EXPECT_EQ(calls, "");
    bench.desktop.setTitle("Mail", "Inbox");
    EXPECT_EQ(calls, "") << "callbacks run on the main queue";
    runPosted();
    EXPECT_EQ(calls, "first second ");
    bench.desktop.setTitle("Mail", "Mail");
    runPosted();
    EXPECT_EQ(calls, "first second ");

    // An outdated count is notified at once, and the objects that wait for the next change continue to wait.
    calls.clear();
    first = changes.notifyWhenChanged(*changes.reliableCount(), [&] { calls += "first "; });
    second = changes.notifyWhenChanged(*count, [&] {
        calls += "second ";
        second = {};
    });
    runPosted();
    EXPECT_EQ(calls, "second ");
    bench.desktop.setTitle("Mail", "Inbox");
    runPosted();
    EXPECT_EQ(calls, "second first ");

    // A callback cancels another one that is due at the same time.
    calls.clear();
    first = changes.notifyWhenChanged(*count, [&] { second = {}; });
    second = changes.notifyWhenChanged(*count, [&] { calls += "second "; });
    runPosted();
    EXPECT_EQ(calls, "");
}

/// On a desktop like this one, a request may read events, which must not happen in the middle of an operation. A
/// request without a callback only cancels.
struct CountingDesktop final : DesktopChangeServicing {
    std::optional<std::uint64_t> changeCount() const override { return 7; }
    void notifyWhenChanged(std::uint64_t, std::function<void()> callback) override {
        callback ? ++requests : ++cancellations;
    }
    int requests = 0;
    int cancellations = 0;
};

TEST(ChangeNotifications, DroppingASubscriptionNeverRequestsANotification) {
    CountingDesktop desktop;
    ChangeNotifications changes(desktop);
    Subscription first = changes.notifyWhenChanged(7, [] {});
    Subscription second = changes.notifyWhenChanged(7, [] {});
    const int requests = desktop.requests;
    first = {};
    EXPECT_EQ(desktop.requests, requests);
    EXPECT_EQ(desktop.cancellations, 0) << "the second subscription still waits";
    second = {};
    EXPECT_EQ(desktop.requests, requests);
    EXPECT_EQ(desktop.cancellations, 1);
}

} // namespace
} // namespace kova
