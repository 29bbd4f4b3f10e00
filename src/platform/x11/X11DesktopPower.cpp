// When the screens go dark, and when they are lit again.
#include "platform/x11/X11Parts.h"

namespace kova {

using namespace x11;

Subscription X11Desktop::observeSystemActivity(std::function<void(SystemActivityEvent)> observer) {
    auto subscription = parts_->activityObservers.add(std::move(observer));
    {
        const std::lock_guard lock(parts_->mutex);
        // Whoever comes while it is dark hears of it, too.
        parts_->wereScreensOff = false;
        parts_->askScreenPower();
    }
    parts_->sendSoon();
    return subscription;
}

void X11Desktop::Parts::askScreenPower() {
    if (!screenPower.isKnown() || !activityObservers.hasAny()) return;
    mustFlush = true;
    screenPower.ask(asked.emplace_back(), [this] { followScreenPower(); });
}

/// An observer may read and write windows, so it is told later.
void X11Desktop::Parts::followScreenPower() {
    const bool areOff = screenPower.state().areScreensOff;
    if (std::exchange(wereScreensOff, areOff) != areOff) {
        const auto event = areOff ? SystemActivityEvent::screensDidSleep : SystemActivityEvent::screensDidWake;
        queue.post(lifetime.guard([this, event] { activityObservers.notify(event); }));
    }
    if (screenPowerLook) std::exchange(screenPowerLook, nullptr)->cancel();
    const auto pause = pauseBeforeLook(screenPower.state());
    if (!pause) return;
    screenPowerLook = queue.after(*pause, lifetime.guard([this] {
        {
            const std::lock_guard lock(mutex);
            askScreenPower();
        }
        settle({});
    }));
}

} // namespace kova
