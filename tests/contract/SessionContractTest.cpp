#include "tests/contract/SessionContract.h"

#include <vector>

namespace kova::contract {
namespace {

using Event = SystemActivityEvent;
using Events = std::vector<Event>;

TEST_P(SessionContract, ActivityEventsAreReportedInTheirOrder) {
    Events told, toldOnce, toldLate;
    bool isInOurCall = false;
    const auto watch = stage().activity().observeSystemActivity([&](Event event) {
        EXPECT_FALSE(isInOurCall) << "called back inside a call";
        told.push_back(event);
    });
    Subscription once;
    once = stage().activity().observeSystemActivity([&](Event event) {
        toldOnce.push_back(event);
        once = Subscription();
    });
    Subscription dropped = stage().activity().observeSystemActivity([&](Event event) { toldLate.push_back(event); });
    stage().runFor(Seconds(0.2));
    EXPECT_TRUE(told.empty()) << "nothing has happened since";
    EXPECT_FALSE(stage().session().isLoginSessionScreenLocked());

    // At the end a sleep with a lock, which outlasts it.
    Events happened = {Event::systemWillSleep, Event::systemDidWake,          Event::screensDidSleep,
                       Event::screensDidWake,  Event::sessionDidResignActive, Event::sessionDidBecomeActive,
                       Event::systemWillSleep, Event::screenDidLock,          Event::systemDidWake};
    std::erase_if(happened, [&](Event event) { return !stage().canUndergo(event); });
    for (std::size_t i = 0; i < happened.size(); ++i) {
        isInOurCall = true;
        stage().simulate(happened[i]);
        isInOurCall = false;
        EXPECT_TRUE(stage().runUntil([&] { return told.size() == i + 1; })) << i;
    }
    EXPECT_EQ(told, happened);
    EXPECT_EQ(toldOnce, Events{Event::systemWillSleep});
    if (!stage().canUndergo(Event::screenDidLock)) return;

    // A query gives the same as the events.
    EXPECT_TRUE(stage().session().isLoginSessionScreenLocked());
    const std::size_t heard = toldLate.size();
    dropped = Subscription();
    stage().simulate(Event::screenDidUnlock);
    EXPECT_TRUE(stage().runUntil([&] { return told.back() == Event::screenDidUnlock; }));
    EXPECT_FALSE(stage().session().isLoginSessionScreenLocked());
    EXPECT_EQ(toldLate.size(), heard);
}

} // namespace
} // namespace kova::contract
