#include "platform/simulated/VirtualTime.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

TEST(VirtualTime, AJobThatReadsTheUptimeGetsTheTimeAtWhichItWasDue) {
    VirtualMainQueue queue;
    const Seconds start = queue.uptime();
    std::string events;
    const auto record = [&](std::string name) {
        return [&, name] {
            const auto passed = std::chrono::round<std::chrono::milliseconds>(queue.uptime() - start).count();
            events += name + "@" + std::to_string(passed) + " ";
        };
    };
    queue.after(Seconds(0.3), record("late"));
    queue.after(Seconds(0.1), [&] {
        record("early")();
        queue.post(record("posted"));
        queue.after(Seconds(0.2), record("later"));
    });
    queue.after(Seconds(0.2), record("canceled"))->cancel();
    queue.post(record("now"));
    queue.after(Seconds(-1), record("overdue"));
    for (int i = 0; i < 2; ++i) queue.advance(Seconds(0.1));
    EXPECT_EQ(events, "now@0 overdue@0 early@100 posted@100 ");
    EXPECT_EQ(queue.pendingCount(), 2u);
    queue.advance(Seconds(0.1));
    EXPECT_EQ(events, "now@0 overdue@0 early@100 posted@100 late@300 later@300 ")
        << "the rounding error of 0.1 + 0.2 does not make “later” late";
    EXPECT_EQ(queue.pendingCount(), 0u);
}

TEST(VirtualTime, JobsOfAWorkerTakeTimeAndRunOneAfterTheOther) {
    VirtualMainQueue queue;
    VirtualWorkQueue worker(queue);
    worker.setJobDuration(Seconds(0.2));
    std::string events;
    for (const std::string name : {"a", "b"}) {
        worker.post([&, name] {
            events += name + " begins ";
            worker.spend(Seconds(0.1));
            queue.post([&, name] { events += name + " ends "; });
        });
    }
    queue.advance(Seconds(0.299));
    EXPECT_EQ(events, "a begins ");
    queue.advance(Seconds(0.001));
    EXPECT_EQ(events, "a begins a ends b begins ");
    queue.advance(Seconds(0.3));
    EXPECT_EQ(events, "a begins a ends b begins b ends ");
}

TEST(VirtualTime, AJobThatPostsItselfForeverFailsInsteadOfHanging) {
    VirtualMainQueue queue;
    std::function<void()> again = [&] { queue.post(again); };
    queue.post(again);
    EXPECT_THROW(queue.runDue(), std::logic_error);
}

} // namespace

} // namespace kova
