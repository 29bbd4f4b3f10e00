// What the server announces, and when the connection is listened to.
#include "platform/x11/X11Parts.h"

#include <algorithm>

namespace kova {

using namespace x11;

namespace {

/// How long a window that was placed is looked after.
constexpr Seconds kPlacingTime{1.0};
/// How long the connection goes unwatched at most while the next poll has something to find in any case: until that
/// poll, which reads for itself, as a rule.
constexpr Seconds kRest{0.55};

} // namespace

bool X11Desktop::readEvents() {
    EventEffects effects;
    {
        const MutexLock lock(parts_->mutex);
        effects = parts_->drain(xcb_poll_for_event);
    }
    parts_->settle(std::move(effects));
    if (parts_->connection->isLost() && !parts_->isLost.exchange(true)) {
        parts_->changes.note();
        parts_->changes.callBackIfDue();
    }
    return !parts_->isLost;
}

void X11Desktop::listen(Watch watch, std::function<void()> lost) {
    parts_->whenLost = [this, lost = std::move(lost)] {
        if (!readEvents()) lost();
    };
    parts_->watch.begin(watch, [parts = parts_.get()] { parts->readAndRest(); });
    parts_->input.listen(watch);
}

/// Reads what has come and then either watches for more or looks again a little later.
void X11Desktop::Parts::readAndRest() {
    bool rests = false;
    {
        const MutexLock lock(mutex);
        const auto before = changes.count();
        unsettled.add(drain(xcb_poll_for_event));
        rests = changes.count() != before;
    }
    settle({});
    if (connection->isLost()) {
        watch.stop();
        return whenLost();
    }
    {
        const MutexLock lock(mutex);
        // Only one thread can read. To watch what another reads would be to wake up for nothing, over and over.
        watch.setRestsForPoll(isPollReading);
        rests = isPollReading || (rests && mayRest());
    }
    rests ? watch.rest(kRest) : watch.resume();
}

/// Not while a window is being placed: what it does then is answered at once.
bool X11Desktop::Parts::mayRest() const {
    if (queue.uptime() - lastPlacing < kPlacingTime) return false;
    return !changes.isAwaited() && !keyboard.kept(queue.uptime()) && asked.empty() && !displays.isAsking() &&
           !hider.isAnyLeaving() && !hider.isAnyReturning();
}

/// Takes in what has come while nothing watched.
void X11Desktop::Parts::catchUp() {
    if (watch.isLookDue(queue.uptime())) unsettled.add(drain(xcb_poll_for_event));
}

EventEffects X11Desktop::Parts::drain(xcb_generic_event_t* (*next)(xcb_connection_t*)) {
    EventEffects effects;
    while (const XReply<xcb_generic_event_t> event{next(connection->get())}) {
        // Type 0 is the error of a request without a reply: a window that had gone.
        if (event->response_type == 0) continue;
        effects.askScreenPower |= screenPower.isHint(*event);
        effects.askScale |= displays.isScaleHint(*event);
        effects.add(model.apply(*event));
    }
    if (effects.changed) changes.note();
    return effects;
}

/// What only the main thread does about events.
void X11Desktop::Parts::settle(EventEffects effects) {
    bool displaysChanged = false;
    {
        const MutexLock lock(mutex);
        effects.add(std::exchange(unsettled, {}));
        // Sending, and looking for answers, also reads what else the server has said meanwhile, for which nothing would
        // wake this thread.
        for (bool again = true; again;) {
            displaysChanged |= actOn(effects);
            again = std::exchange(mustFlush, false);
            again |= hider.hasUnsent();
            if (again) {
                hider.sendUnmaps();
                connection->flush();
            }
            effects = drain(xcb_poll_for_queued_event);
            again |= effects.changed || effects.isForMainThread();
        }
    }
    if (displaysChanged) {
        changes.note();
        screenObservers.notify();
    }
    changes.callBackIfDue();
}

/// True when the displays are others now.
bool X11Desktop::Parts::actOn(const EventEffects& effects) {
    if (std::exchange(model.hasChangedHands, false)) {
        hider.managerChanged();
        askActiveWindow();
        input.managerChanged();
    }
    hider.follow(effects.returning);
    takeReplies();
    const bool areDisplaysTold = displays.advance(effects);
    if (effects.askActiveWindow && !input.isOpen()) askActiveWindow();
    if (effects.askScreenPower) askScreenPower();
    for (const xcb_window_t window : effects.redecorated) askDecorations(window);
    for (const xcb_window_t window : effects.restated) {
        ClientWindow* client = model.client(window);
        if (client && client->placedAt && queue.uptime() - *client->placedAt < kPlacingTime) askState(*client);
    }
    mustFlush |= displays.hasUnsent();
    const bool displaysChanged = (areDisplaysTold || effects.panelsChanged) && displays.arrange(model);
    if (displaysChanged) input.displaysChanged();
    input.windowsChanged(effects.changed);
    return displaysChanged;
}

} // namespace kova
