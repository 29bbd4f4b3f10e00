#include "platform/x11/ScreenPowerNotices.h"

namespace kova::x11 {

Subscription ScreenPowerNotices::observe(std::function<void(SystemActivityEvent)> observer) {
    wereScreensOff_ = false;
    return observers_.add(std::move(observer));
}

void ScreenPowerNotices::query(PendingReplies& batch) {
    power_.query(batch, [this] { follow(); });
}

/// Observers are notified later, without the lock, since they may read and write windows.
void ScreenPowerNotices::follow() {
    const bool areOff = power_.state().areScreensOff;
    if (std::exchange(wereScreensOff_, areOff) != areOff) {
        const auto event = areOff ? SystemActivityEvent::screensDidSleep : SystemActivityEvent::screensDidWake;
        queue_.post(lifetime_.guard([this, event] { observers_.notify(event); }));
    }
    if (nextQuery_) std::exchange(nextQuery_, nullptr)->cancel();
    if (const auto pause = pauseBeforeNextQuery(power_.state()))
        nextQuery_ = queue_.after(*pause, lifetime_.guard(queryAgain_));
}

} // namespace kova::x11
