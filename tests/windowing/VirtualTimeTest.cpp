#include "platform/simulated/VirtualTime.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

TEST(VirtualTime, WorkSeesTheMomentAtWhichItWasDue) {
    VirtualMainQueue queue;
    const Seconds start = queue.uptime();
    std::string story;
    const auto tell = [&](std::string name) {
        return [&, name] {
            const auto passed = std::chrono::round<std::chrono::milliseconds>(queue.uptime() - start).count();
            story += name + "@" + std::to_string(passed) + " ";
        };
    };
    queue.after(Seconds(0.3), tell("late"));
    queue.after(Seconds(0.1), [&] {
        tell("early")();
        queue.post(tell("posted"));
        queue.after(Seconds(0.2), tell("later"));
    });
    queue.after(Seconds(0.2), tell("cancelled"))->cancel();
    queue.post(tell("now"));
    queue.after(Seconds(-1), tell("overdue"));
    for (int i = 0; i < 2; ++i) queue.advance(Seconds(0.1));
    EXPECT_EQ(story, "now@0 overdue@0 early@100 posted@100 ");
    EXPECT_EQ(queue.pendingCount(), 2u);
    queue.advance(Seconds(0.1));
    EXPECT_EQ(story, "now@0 overdue@0 early@100 posted@100 late@300 later@300 ")
        << "three tenths are not 0.30000000000000004";
    EXPECT_EQ(queue.pendingCount(), 0u);
}

TEST(VirtualTime, WorkersFinishAfterTheirTimeAndOneAfterTheOther) {
    VirtualMainQueue queue;
    VirtualWorkQueue worker(queue);
    worker.setJobDuration(Seconds(0.2));
    std::string story;
    for (const std::string name : {"a", "b"}) {
        worker.post([&, name] {
            story += name + " begins ";
            worker.spend(Seconds(0.1));
            queue.post([&, name] { story += name + " answers "; });
        });
    }
    queue.advance(Seconds(0.299));
    EXPECT_EQ(story, "a begins ");
    queue.advance(Seconds(0.001));
    EXPECT_EQ(story, "a begins a answers b begins ");
    queue.advance(Seconds(0.3));
    EXPECT_EQ(story, "a begins a answers b begins b answers ");
}

TEST(VirtualTime, EndlessWorkFailsInsteadOfHanging) {
    VirtualMainQueue queue;
    std::function<void()> again = [&] { queue.post(again); };
    queue.post(again);
    EXPECT_THROW(queue.runDue(), std::logic_error);
}

} // namespace

} // namespace kova
