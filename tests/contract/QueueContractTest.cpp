#include "tests/contract/QueueContract.h"

#include <atomic>
#include <limits>
#include <thread>

namespace kova::contract {
namespace {

TEST_P(QueueContract, PostsAndWorkWithADelayOfZeroOrLessRunInTheOrderOfTheCalls) {
    std::string log;
    const auto append = [&](char letter) { return [&log, letter] { log += letter; }; };
    queue().post(append('a'));
    queue().after(Seconds(0), append('b'));
    queue().post([&] {
        log += 'c';
        queue().post(append('f'));
        queue().after(Seconds(-5), append('g'));
    });
    queue().after(Seconds(-std::numeric_limits<double>::infinity()), append('d'));
    queue().post(append('e'));
    EXPECT_EQ(log, "") << "work ran inside the call that posted it";
    runUntilLength(log, 7);
    EXPECT_EQ(log, "abcdefg");
}

TEST_P(QueueContract, DelayedWorkRunsInTheOrderOfItsDueTimesAndNeverEarly) {
    std::string log;
    const Seconds start = queue().uptime();
    const auto at = [&](double delay, char letter) {
        return queue().after(Seconds(delay), [&log, &queue = queue(), start, delay, letter] {
            EXPECT_GE(queue.uptime() - start, Seconds(delay - 1e-6)) << letter;
            log += letter;
        });
    };
    at(std::numeric_limits<double>::infinity(), 'x');
    at(1e12, 'x');
    at(0.12, 'd');
    at(0.04, 'a');
    at(0.08, 'b'); // dropping the returned handle does not cancel the work
    at(0.08, 'c');
    // After this work, the four timers a to d are overdue. They run in the order of their due times.
    queue().post([&] { stage().beBusyFor(Seconds(0.2)); });
    runUntilLength(log, 4);
    EXPECT_EQ(log, "abcd");
    const auto wallBefore = queue().now();
    stage().runFor(Seconds(0.1));
    EXPECT_TRUE(queue().now() > wallBefore);
    EXPECT_EQ(log, "abcd");
}

TEST_P(QueueContract, CanceledWorkDoesNotStart) {
    std::string log;
    const auto append = [&](char letter) { return [&log, letter] { log += letter; }; };
    const auto posted = queue().after(Seconds(0), append('x')), delayed = queue().after(Seconds(0.02), append('x')),
               overdue = queue().after(Seconds(0.01), append('x'));
    posted->cancel();
    delayed->cancel();
    delayed->cancel();
    queue().post([&] {
        stage().beBusyFor(Seconds(0.05));
        overdue->cancel(); // already due and queued, but not started
        log += 'a';
    });
    std::shared_ptr<ScheduledWork> own;
    own = queue().after(Seconds(0.06), [&] {
        own->cancel();
        log += 'b';
    });
    // The queue does not keep work that has run: when the returned handle is dropped, the captured objects are freed.
    auto captured = std::make_shared<int>(1);
    auto handle = queue().after(Seconds(0.07), [captured] { *captured += 1; });
    runUntilLength(log, 2);
    stage().runFor(Seconds(0.1));
    EXPECT_EQ(log, "ab");
    EXPECT_EQ(*captured, 2);
    handle->cancel(); // no-op, since the work has run
    handle.reset();
    stage().runFor(Seconds(0.05));
    EXPECT_EQ(captured.use_count(), 1) << "work that has run was not destroyed";
}

TEST_P(QueueContract, PostsFromOtherThreadsKeepTheirOrder) {
    std::string log;
    std::thread poster([&] {
        for (char letter = 'a'; letter <= 'j'; ++letter) queue().post([&log, letter] { log += letter; });
    });
    poster.join();
    runUntilLength(log, 10);
    EXPECT_EQ(log, "abcdefghij");
}

TEST_P(QueueContract, AWorkerRunsOneJobAtATimeAndDropsPendingJobsWhenItIsDestroyed) {
    std::string log; // written on the main queue
    std::atomic<int> inside = 0, done = 0;
    auto worker = stage().makeWorker();
    for (char letter = 'a'; letter <= 'e'; ++letter) {
        worker->post([&, letter] {
            EXPECT_EQ(++inside, 1) << "two jobs at once";
            if (letter == 'e') worker->post([&] { queue().post([&] { log += 'z'; }); });
            queue().post([&log, letter] { log += letter; });
            --inside;
            ++done;
        });
    }
    runUntilLength(log, 6);
    EXPECT_EQ(log, "abcdez") << "a job may post another job";
    EXPECT_EQ(done, 5);

    // The destructor of a worker waits for the running job and drops all other jobs.
    std::atomic<int> ranAfterTheEnd = 0;
    worker->post([] {});
    worker.reset();
    stage().runFor(Seconds(0.05));
    auto other = stage().makeWorker();
    std::atomic<bool> hasEnded = false;
    for (int i = 0; i < 100; ++i) {
        other->post([&] {
            if (hasEnded) ++ranAfterTheEnd;
        });
    }
    other.reset();
    hasEnded = true;
    stage().runFor(Seconds(0.1));
    EXPECT_EQ(ranAfterTheEnd, 0);
}

} // namespace
} // namespace kova::contract
