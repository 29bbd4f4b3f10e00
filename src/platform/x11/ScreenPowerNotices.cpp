#include "platform/x11/ScreenPowerNotices.h"

namespace kova::x11 {

Subscription ScreenPowerNotices::observe(std::function<void(SystemActivityEvent)> observer) {
    wereScreensOff_ = false;
    return observers_.add(std::move(observer));
}

void ScreenPowerNotices::ask(PendingReplies& questions) {
    power_.ask(questions, [this] { follow(); });
}

/// Observers are notified later, without the lock, since they may read and write windows.
void ScreenPowerNotices::follow() {
    const bool areOff = power_.state().areScreensOff;
    if (std::exchange(wereScreensOff_, areOff) != areOff) {
        const auto event = areOff ? SystemActivityEvent::screensDidSleep : SystemActivityEvent::screensDidWake;
        queue_.post(lifetime_.guard([this, event] { observers_.notify(event); }));
    }
    if (look_) std::exchange(look_, nullptr)->cancel();
    if (const auto pause = pauseBeforeLook(power_.state())) look_ = queue_.after(*pause, lifetime_.guard(askAgain_));
}

} // namespace kova::x11
