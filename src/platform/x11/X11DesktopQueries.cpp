// Queries whose replies the main thread does not wait for, and the functions that handle the replies.
#include "platform/x11/FocusRequests.h"
#include "platform/x11/FrameRequests.h"
#include "platform/x11/X11Parts.h"

#include <algorithm>

namespace kova {

using namespace x11;

void X11Desktop::Parts::takeReplies() {
    const xcb_window_t active = model.activeWindow;
    while (!asked.empty() && asked.front().collect(*connection)) {
        PendingReplies answered = std::move(asked.front());
        asked.pop_front();
        answered.take();
    }
    if (model.activeWindow != active) changes.note();
}

void X11Desktop::Parts::askActiveWindow() {
    inputIsLocked();
    if (input.isOpen() && model.windowManager().isPresent) return input.askActiveWindow();
    mustFlush = true;
    if (!model.windowManager().isPresent) return queryFocus(asked.emplace_back(), *connection, model);
    asked.emplace_back().add(connection->askProperty(connection->root(), connection->atoms()[Atom::netActiveWindow], 1),
                             [this](const void* reply) {
                                 mutex.assertHeld();
                                 const auto windows = numbersIn(
                                     viewOf(static_cast<const xcb_get_property_reply_t*>(reply)), XCB_ATOM_WINDOW);
                                 takeActiveWindow(windows.empty() ? kNoWindow : windows[0]);
                             });
}

/// The focus was requested for the window. It counts as focused from now on, so that the next command acts on it.
void X11Desktop::Parts::expectFocus(xcb_window_t window) {
    if (model.windowManager().isPresent) {
        keyboard.noteGiven(window, queue.uptime());
        countAsActive(keyboard.reported());
    } else {
        changes.note();
        askActiveWindow(); // the server refuses the focus to a window that is not on the screen
    }
}

/// Ignored without a window manager: then _NET_ACTIVE_WINDOW is left over from one that has ended.
void X11Desktop::Parts::takeActiveWindow(xcb_window_t reported) {
    if (!model.windowManager().isPresent) return;
    giveFocusBack(reported);
    countAsActive(reported);
}

void X11Desktop::Parts::countAsActive(xcb_window_t reported) {
    const Seconds now = queue.uptime();
    xcb_window_t window = keyboard.focused(reported, now);
    const ClientWindow* given = window != reported ? model.client(window) : nullptr;
    const bool isReturning = given && given->iconification.isAskedBackWithin(kTimeToFocus, now);
    if (given && (isReturning || !model.isMinimized(*given))) {
        later(kTimeToFocus, [this] {
            mutex.assertHeld();
            askActiveWindow(); // the window may have been refused the focus
        });
    } else {
        window = reported;
    }
    if (std::exchange(model.activeWindow, window) != window) changes.note();
}

/// A window manager may focus a window that is only restored from the minimized state. Returns the focus to the window
/// that had it before; until then `active` does not count as focused, since the user did not choose it.
void X11Desktop::Parts::giveFocusBack(xcb_window_t active) {
    const ClientWindow* taker = model.client(active);
    const ClientWindow* owner = taker ? model.parentOf(*taker) : nullptr;
    const auto kept = keyboard.toGiveBack(active, owner ? owner->window : kNoWindow, queue.uptime());
    if (kept && requests.activated()) return keyboard.noteGivenBack(*requests.activated(), active, queue.uptime());
    const ClientWindow* client = kept ? model.client(*kept) : nullptr;
    if (!client) return;
    constexpr Seconds kTimeToMinimize{1.0};
    const bool isLeaving = client->iconification.isAskedToLeaveWithin(kTimeToMinimize, queue.uptime());
    if (isLeaving || model.isMinimized(*client)) return;
    requests.activate(*client);
    keyboard.noteGivenBack(*kept, active, queue.uptime());
    sendSoon();
}

/// Queries the decorations at once instead of at the next poll: a window that is being placed must be placed again with
/// its new decorations.
void X11Desktop::Parts::askDecorations(xcb_window_t window) {
    const ClientWindow* framed = model.client(window);
    if (!framed) return;
    mustFlush = true;
    PendingReplies& questions = asked.emplace_back();
    const auto cookie = connection->askProperty(window, connection->atoms()[Atom::netFrameExtents], 4);
    questions.add(cookie, [this, window, sequence = cookie.sequence](const void* reply) {
        mutex.assertHeld();
        ClientWindow* client = model.client(window);
        const auto* extents = static_cast<const xcb_get_property_reply_t*>(reply);
        if (client) model.takeDecorations(*client, viewOf(extents), sequence);
    });
    if (framed->topLevel != kNoWindow && framed->topLevel != window) askFrame(questions, *connection, model, *framed);
}

/// Queries the state at once for the verification of a placement: a window that has just entered full screen must not
/// count as one that refused the size.
void X11Desktop::Parts::askState(ClientWindow& client) {
    mustFlush = true;
    ++client.openStateQuestions;
    PendingReplies& questions = asked.emplace_back();
    for (const PropertyRule& rule : model.rules()) {
        if (rule.staleBit != stale::state) continue;
        const auto cookie = connection->askProperty(client.window, rule.property, rule.lengthInWords);
        const bool isLast = rule.property == connection->atoms()[Atom::wmState];
        questions.add(cookie, [this, &rule, isLast, window = client.window, sequence = cookie.sequence](const void* r) {
            mutex.assertHeld();
            ClientWindow* known = model.client(window);
            if (!known) return;
            model.takeState(*known, rule, viewOf(static_cast<const xcb_get_property_reply_t*>(r)), sequence);
            if (isLast) known->openStateQuestions = std::max(0, known->openStateQuestions - 1);
        });
    }
}

void X11Desktop::Parts::askPointer() {
    if (std::exchange(isPointerAsked, true)) return;
    mustFlush = true;
    asked.emplace_back().add(xcb_query_pointer(connection->get(), connection->root()), [this](const void* reply) {
        mutex.assertHeld();
        isPointerAsked = false;
        const auto* pointer = static_cast<const xcb_query_pointer_reply_t*>(reply);
        if (pointer && pointer->same_screen) model.pointer = {pointer->root_x, pointer->root_y};
    });
}

void X11Desktop::Parts::askScreenPowerAgain() {
    {
        const MutexLock lock(mutex);
        askScreenPower();
    }
    settle({});
}

/// Queries whether the screens are off, if there is an observer.
void X11Desktop::Parts::askScreenPower() {
    if (!screenPower.isObserved()) return;
    mustFlush = true;
    screenPower.ask(asked.emplace_back());
}

} // namespace kova
