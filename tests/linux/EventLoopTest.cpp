#include "platform/linux/EventLoop.h"
#include "platform/linux/SerialWorkQueue.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <future>
#include <limits>
#include <string>
#include <thread>

namespace kova {
namespace {

using namespace std::chrono_literals;

TEST(EventLoop, RunsPostsInOrderAndTimersWhenTheyAreDue) {
    EventLoop loop;
    std::string order;
    loop.after(Seconds(std::numeric_limits<double>::infinity()), [&] { order += "never "; });
    loop.after(40ms, [&] { loop.quit(7); });
    loop.after(20ms, [&] { order += "20ms "; });
    loop.after(-1s, [&] { order += "past "; });
    loop.post([&] {
        order += "first ";
        loop.post([&] { order += "third "; });
    });
    loop.after(0s, [&] { order += "second "; });
    EXPECT_EQ(loop.run(), 7);
    EXPECT_EQ(order, "past first second third 20ms ");
}

TEST(EventLoop, TimersAreNeverEarlyAndStayCanceled) {
    EventLoop loop;
    const auto start = loop.uptime();
    bool lateRan = false;
    const auto late = loop.after(10ms, [&] { lateRan = true; });
    const auto posted = loop.after(0s, [&] { lateRan = true; });
    posted->cancel();
    std::shared_ptr<ScheduledWork> own;
    own = loop.after(5ms, [&] { own->cancel(); });
    loop.after(30ms, [&] { loop.quit(0); });
    // Keeps the loop busy until the timer `late` is due and queued. Even then the timer can be canceled.
    loop.post([&] {
        while (loop.uptime() - start < 20ms) {
        }
        late->cancel();
    });
    loop.run();
    EXPECT_FALSE(lateRan);
    EXPECT_GE(loop.uptime() - start, 30ms);
    late->cancel(); // no-op after the loop has ended
}

TEST(EventLoop, WatchesADescriptorUntilTheSubscriptionIsDropped) {
    EventLoop loop;
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::string read;
    Subscription watch = loop.watchReadable(ends[0], [&] {
        char byte = 0; // one byte per call: the loop must call again for the other bytes
        if (::read(ends[0], &byte, 1) != 1) return loop.quit(1);
        read += byte;
        if (byte == '.') watch = Subscription();
    });
    ASSERT_EQ(write(ends[1], "abc.rest", 8), 8);
    loop.after(50ms, [&] { loop.quit(0); });
    EXPECT_EQ(loop.run(), 0);
    EXPECT_EQ(read, "abc.");
    // The loop has not closed the descriptor.
    char rest[4];
    EXPECT_EQ(::read(ends[0], rest, 4), 4);
    close(ends[0]);
    close(ends[1]);
}

TEST(EventLoop, EachStopSignalCallsTheStopFunction) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        EventLoop loop;
        loop.onStopSignal([&] { loop.quit(3); });
        loop.post([signal] { kill(getpid(), signal); });
        loop.after(5s, [&] { loop.quit(99); });
        EXPECT_EQ(loop.run(), 3) << signal;
    }
}

TEST(EventLoop, PostsFromManyThreadsAllArrive) {
    EventLoop loop;
    constexpr int kThreads = 4, kPosts = 2000;
    int arrived = 0; // used only by the loop's thread
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < kPosts; ++i) {
                loop.post([&] {
                    if (++arrived == kThreads * kPosts) loop.quit(0);
                });
            }
        });
    }
    loop.run();
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(arrived, kThreads * kPosts);
}

/// The number of times that this thread has waited, and thus given up the processor.
long waitsSoFar() {
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_nvcsw;
}

TEST(EventLoop, DoesNotWakeUpWhileNothingIsDue) {
    EventLoop loop;
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const auto watch = loop.watchReadable(ends[0], [] {});
    loop.onStopSignal([] {});
    loop.after(1h, [] {});
    long before = 0, after = 0;
    loop.after(20ms, [&] { before = waitsSoFar(); });
    loop.after(620ms, [&] {
        after = waitsSoFar();
        loop.quit(0);
    });
    loop.run();
    EXPECT_LE(after - before, 2);
    close(ends[0]);
    close(ends[1]);
}

TEST(SerialWorkQueue, RunsJobsInOrderAndDropsUnstartedJobsAtItsEnd) {
    std::string order;
    std::promise<void> begun, release;
    {
        SerialWorkQueue queue("a name that is longer than it may be");
        for (char c = 'a'; c < 'f'; ++c) queue.post([&order, c] { order += c; });
        queue.post([&] {
            begun.set_value();
            release.get_future().wait();
            order += '!';
        });
        begun.get_future().wait();
        queue.post([&] { order += "too late"; });
        // The destructor begins while the job still runs, and waits for the job.
        std::thread([&] {
            std::this_thread::sleep_for(50ms);
            release.set_value();
        }).detach();
    }
    EXPECT_EQ(order, "abcde!");
    const SerialWorkQueue neverUsed("idle");
}

} // namespace
} // namespace kova
