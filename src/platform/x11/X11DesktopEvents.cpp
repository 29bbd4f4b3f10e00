// Handles the events of the server, and decides when the connection is watched.
#include "platform/x11/X11Parts.h"

#include <algorithm>
#include <optional>

namespace kova {

using namespace x11;

namespace {

/// For this long after a placement, events are read after a short pause only, and changed states are queried at once.
constexpr Seconds kPlacingTime{1.0};
/// The pause after a placement. The server sends an event for each placed window; with the pause the main thread wakes
/// up once for all these events.
constexpr Seconds kPlacingPause{0.005};
/// How long the connection is not watched after an event shows that the next poll will find changes. The poll normally
/// comes earlier and ends the pause.
constexpr Seconds kPause{0.55};

} // namespace

bool X11Desktop::readEvents() {
    EventEffects effects;
    {
        const MutexLock lock(parts_->mutex);
        effects = parts_->drain(xcb_poll_for_event);
    }
    parts_->handleEffects(std::move(effects));
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
    parts_->watch.begin(watch, [parts = parts_.get()] { parts->readAndPause(); });
    parts_->input.listen(watch);
}

/// Reads events, and then either watches for more or reads again after a pause.
void X11Desktop::Parts::readAndPause() {
    const bool wasPaused = watch.isPaused();
    bool hasChanged = false;
    {
        const MutexLock lock(mutex);
        const auto before = changes.count();
        pendingEffects.add(drain(xcb_poll_for_event));
        hasChanged = changes.count() != before;
    }
    isReadingEvents = true;
    handleEffects({});
    isReadingEvents = false;
    if (connection->isLost()) {
        watch.stop();
        return whenLost();
    }
    std::optional<Seconds> pause;
    {
        const MutexLock lock(mutex);
        // While a poll reads the connection on its own thread, watching would wake this thread again and again although
        // nothing is left to read.
        watch.setPausedForPoll(isPollReading);
        if (isPollReading) {
            pause = kPause;
        } else if (hasChanged && mayPause()) {
            pause = !isPlacing() ? std::optional(kPause) : wasPaused ? std::nullopt : std::optional(kPlacingPause);
        }
    }
    pause ? watch.pause(*pause) : watch.resume();
}

bool X11Desktop::Parts::isPlacing() const {
    return queue.uptime() - lastPlacing < kPlacingTime;
}

/// False while events must be handled at once, and while replies are awaited.
bool X11Desktop::Parts::mayPause() const {
    return !changes.isAwaited() && !focusKeeper.kept(queue.uptime()) && pendingReplies.empty() &&
           !displays.isReading() && !hider.isAnyHidePending() && !hider.isAnyRestoreDue();
}

/// Call when frames of windows were requested. No-op during `readAndPause`, which decides about a pause at its end: the
/// watch cannot be started again before its own call of `readAndPause` has returned.
void X11Desktop::Parts::pauseAfterPlacing() {
    if (isReadingEvents || watch.isPaused()) return;
    bool pauses = false;
    {
        const MutexLock lock(mutex);
        pauses = isPlacing() && mayPause();
    }
    if (pauses) watch.pause(kPlacingPause);
}

/// Reads events that arrived during a pause.
void X11Desktop::Parts::catchUp() {
    if (watch.isReadDue(queue.uptime())) pendingEffects.add(drain(xcb_poll_for_event));
}

EventEffects X11Desktop::Parts::drain(xcb_generic_event_t* (*next)(xcb_connection_t*)) {
    EventEffects effects;
    while (const XReply<xcb_generic_event_t> event{next(connection->get())}) {
        // Type 0 is the error of a request without a reply: the window of the request was destroyed.
        if (event->response_type == 0) continue;
        effects.mustQueryScreenPower |= screenPower.isHint(*event);
        effects.mustQueryScale |= displays.isScaleHint(*event);
        noteFocusRequestOfAnotherProgram(*event);
        effects.add(model.apply(*event));
    }
    if (effects.changed) changes.note();
    return effects;
}

/// Notes that another program has requested the focus for a window. KOVA's own requests do not arrive here, since only
/// the window manager gets them. A request by an application for its own window is ignored: a restored application may
/// request the focus for itself.
void X11Desktop::Parts::noteFocusRequestOfAnotherProgram(const xcb_generic_event_t& event) {
    constexpr std::uint32_t kFromApplication = 1;
    if ((event.response_type & 0x7F) != XCB_CLIENT_MESSAGE) return;
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
    if (message.type != connection->atoms()[Atom::netActiveWindow] || message.format != 32) return;
    if (message.data.data32[0] != kFromApplication) focusKeeper.noteRequestOfAnotherProgram(message.window);
}

/// Handles `effects` and all pending effects.
void X11Desktop::Parts::handleEffects(EventEffects effects) {
    bool displaysChanged = false;
    {
        const MutexLock lock(mutex);
        effects.add(std::exchange(pendingEffects, {}));
        // Flushing and collecting replies also read events. The descriptor does not become readable for these events.
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

/// True if the displays have changed.
bool X11Desktop::Parts::actOn(const EventEffects& effects) {
    assertInputMutexHeld();
    if (std::exchange(model.hasManagerChanged, false)) {
        hider.managerChanged();
        queryActiveWindow();
        input.managerChanged();
    }
    hider.follow(effects.returning);
    takeReplies();
    const bool areDisplaysReported = displays.advance(effects);
    if (effects.mustQueryActiveWindow && !input.isOpen()) queryActiveWindow();
    if (effects.mustQueryScreenPower) queryScreenPower();
    for (const xcb_window_t window : effects.redecorated) queryDecorations(window);
    for (const xcb_window_t window : effects.stateChanged) {
        ClientWindow* client = model.client(window);
        if (client && client->placedAt && queue.uptime() - *client->placedAt < kPlacingTime) queryState(*client);
    }
    mustFlush |= displays.hasUnsent();
    const bool displaysChanged = (areDisplaysReported || effects.panelsChanged) && displays.arrange(model);
    if (displaysChanged) input.displaysChanged();
    input.windowsChanged(effects.changed);
    return displaysChanged;
}

} // namespace kova
