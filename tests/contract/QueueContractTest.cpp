#include "tests/contract/QueueContract.h"

#include <atomic>
#include <limits>
#include <thread>

namespace kova::contract {
namespace {

TEST_P(QueueContract, PostsRunInTheirOrderAndADelayOfNothingIsAPost) {
    std::string story;
    const auto tell = [&](char letter) { return [&story, letter] { story += letter; }; };
    queue().post(tell('a'));
    queue().after(Seconds(0), tell('b'));
    queue().post([&] {
        story += 'c';
        queue().post(tell('f'));
        queue().after(Seconds(-5), tell('g'));
    });
    queue().after(Seconds(-std::numeric_limits<double>::infinity()), tell('d'));
    queue().post(tell('e'));
    EXPECT_EQ(story, "") << "the task ran inside the call";
    runUntilToldAtLeast(story, 7);
    EXPECT_EQ(story, "abcdefg");
}

TEST_P(QueueContract, DelaysEndInTheOrderInWhichTheyAreDueAndNeverEarly) {
    std::string story;
    const Seconds start = queue().uptime();
    const auto at = [&](double delay, char letter) {
        return queue().after(Seconds(delay), [&story, &queue = queue(), start, delay, letter] {
            EXPECT_GE(queue.uptime() - start, Seconds(delay - 1e-6)) << letter;
            story += letter;
        });
    };
    at(std::numeric_limits<double>::infinity(), 'x');
    at(1e12, 'x');
    at(0.12, 'd');
    at(0.04, 'a');
    at(0.08, 'b'); // dropping the handle changes nothing
    at(0.08, 'c');
    // No work runs while other work is running; then the work that was due first runs first.
    queue().post([&] { stage().beBusyFor(Seconds(0.2)); });
    runUntilToldAtLeast(story, 4);
    EXPECT_EQ(story, "abcd");
    const auto wallBefore = queue().now();
    stage().runFor(Seconds(0.1));
    EXPECT_TRUE(queue().now() > wallBefore);
    EXPECT_EQ(story, "abcd");
}

TEST_P(QueueContract, CancelledWorkDoesNotStart) {
    std::string story;
    const auto tell = [&](char letter) { return [&story, letter] { story += letter; }; };
    const auto posted = queue().after(Seconds(0), tell('x')), delayed = queue().after(Seconds(0.02), tell('x')),
               overdue = queue().after(Seconds(0.01), tell('x'));
    posted->cancel();
    delayed->cancel();
    delayed->cancel();
    queue().post([&] {
        stage().beBusyFor(Seconds(0.05));
        overdue->cancel(); // due already, and queued
        story += 'a';
    });
    std::shared_ptr<ScheduledWork> own;
    own = queue().after(Seconds(0.06), [&] {
        own->cancel();
        story += 'b';
    });
    // What the work holds may go with the handle.
    auto held = std::make_shared<int>(1);
    auto keeper = queue().after(Seconds(0.07), [held] { *held += 1; });
    runUntilToldAtLeast(story, 2);
    stage().runFor(Seconds(0.1));
    EXPECT_EQ(story, "ab");
    EXPECT_EQ(*held, 2);
    keeper->cancel(); // harmless when it has run
    keeper.reset();
    stage().runFor(Seconds(0.05));
    EXPECT_EQ(held.use_count(), 1) << "work that has run is destroyed";
}

TEST_P(QueueContract, PostsFromOtherThreadsKeepTheirOrder) {
    std::string story;
    std::thread poster([&] {
        for (char letter = 'a'; letter <= 'j'; ++letter) queue().post([&story, letter] { story += letter; });
    });
    poster.join();
    runUntilToldAtLeast(story, 10);
    EXPECT_EQ(story, "abcdefghij");
}

TEST_P(QueueContract, AWorkerDoesOneJobAfterTheOtherAndDropsTheRestAtItsEnd) {
    std::string story; // of the main queue
    std::atomic<int> inside = 0, done = 0;
    auto worker = stage().worker();
    for (char letter = 'a'; letter <= 'e'; ++letter) {
        worker->post([&, letter] {
            EXPECT_EQ(++inside, 1) << "two jobs at once";
            if (letter == 'e') worker->post([&] { queue().post([&] { story += 'z'; }); });
            queue().post([&story, letter] { story += letter; });
            --inside;
            ++done;
        });
    }
    runUntilToldAtLeast(story, 6);
    EXPECT_EQ(story, "abcdez") << "a job may post another";
    EXPECT_EQ(done, 5);

    // A worker that ends waits for the job that runs, and for no other.
    std::atomic<int> afterTheEnd = 0;
    worker->post([] {});
    worker.reset();
    stage().runFor(Seconds(0.05));
    auto other = stage().worker();
    std::atomic<bool> hasEnded = false;
    for (int i = 0; i < 100; ++i) {
        other->post([&] {
            if (hasEnded) ++afterTheEnd;
        });
    }
    other.reset();
    hasEnded = true;
    stage().runFor(Seconds(0.1));
    EXPECT_EQ(afterTheEnd, 0);
}

} // namespace
} // namespace kova::contract
