#include "tests/contract/SessionContract.h"

#include <vector>

namespace kova::contract {
namespace {

using Event = SystemActivityEvent;
using Events = std::vector<Event>;

TEST_P(SessionContract, ActivityEventsAreReportedInTheirOrder) {
    Events reported, reportedOnce, reportedUntilDropped;
    bool isInsideCall = false;
    const auto watch = stage().activity().observeSystemActivity([&](Event event) {
        EXPECT_FALSE(isInsideCall) << "the observer was called inside `simulate`";
        reported.push_back(event);
    });
    Subscription once;
    once = stage().activity().observeSystemActivity([&](Event event) {
        reportedOnce.push_back(event);
        once = Subscription();
    });
    Subscription droppedLater =
        stage().activity().observeSystemActivity([&](Event event) { reportedUntilDropped.push_back(event); });
    stage().runFor(Seconds(0.2));
    EXPECT_TRUE(reported.empty()) << "an event was reported although nothing has happened";
    EXPECT_FALSE(stage().session().isLoginSessionScreenLocked());

    // In the last three events, the screen is locked during sleep and stays locked after waking.
    Events events = {Event::systemWillSleep, Event::systemDidWake,          Event::screensDidSleep,
                     Event::screensDidWake,  Event::sessionDidResignActive, Event::sessionDidBecomeActive,
                     Event::systemWillSleep, Event::screenDidLock,          Event::systemDidWake};
    std::erase_if(events, [&](Event event) { return !stage().canSimulate(event); });
    for (std::size_t i = 0; i < events.size(); ++i) {
        isInsideCall = true;
        stage().simulate(events[i]);
        isInsideCall = false;
        EXPECT_TRUE(stage().runUntil([&] { return reported.size() == i + 1; })) << i;
    }
    EXPECT_EQ(reported, events);
    EXPECT_EQ(reportedOnce, Events{Event::systemWillSleep});
    if (!stage().canSimulate(Event::screenDidLock)) return;

    // A query returns the state that the events reported.
    EXPECT_TRUE(stage().session().isLoginSessionScreenLocked());
    const std::size_t reportedBefore = reportedUntilDropped.size();
    droppedLater = Subscription();
    stage().simulate(Event::screenDidUnlock);
    EXPECT_TRUE(stage().runUntil([&] { return reported.back() == Event::screenDidUnlock; }));
    EXPECT_FALSE(stage().session().isLoginSessionScreenLocked());
    EXPECT_EQ(reportedUntilDropped.size(), reportedBefore);
}

} // namespace
} // namespace kova::contract
