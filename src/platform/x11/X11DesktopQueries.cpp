// Queries whose replies the main thread does not wait for, and the functions that handle the replies.
#include "platform/x11/FocusRequests.h"
#include "platform/x11/FrameRequests.h"
#include "platform/x11/X11Parts.h"

#include <algorithm>

namespace kova {

using namespace x11;

void X11Desktop::Parts::takeReplies() {
    const xcb_window_t active = model.activeWindow;
    while (!pendingReplies.empty() && pendingReplies.front().collect(*connection)) {
        PendingReplies batch = std::move(pendingReplies.front());
        pendingReplies.pop_front();
        batch.take();
    }
    if (model.activeWindow != active) changes.note();
}

void X11Desktop::Parts::queryActiveWindow() {
    assertInputMutexHeld();
    if (input.isOpen() && model.windowManager().isPresent) return input.queryActiveWindow();
    mustFlush = true;
    if (!model.windowManager().isPresent) return queryFocus(pendingReplies.emplace_back(), *connection, model);
    pendingReplies.emplace_back().add(
        connection->requestProperty(connection->root(), connection->atoms()[Atom::netActiveWindow], 1),
        [this](const void* reply) {
            mutex.assertHeld();
            const auto windows =
                numbersIn(viewOf(static_cast<const xcb_get_property_reply_t*>(reply)), XCB_ATOM_WINDOW);
            takeActiveWindow(windows.empty() ? kNoWindow : windows[0]);
        });
}

/// Call when the focus was requested for the window. The window counts as focused from now on, so that the next command
/// acts on it.
void X11Desktop::Parts::expectFocus(xcb_window_t window) {
    if (model.windowManager().isPresent) {
        focusKeeper.noteFocusRequested(window, queue.uptime());
        setActiveWindow(focusKeeper.reported());
    } else {
        changes.note();
        queryActiveWindow(); // the server refuses the focus to a window that is not on the screen
    }
}

/// The report comes from the input connection. The request of another program that caused the report may still be
/// unread on the desktop's own connection, so that connection is read first.
void X11Desktop::Parts::takeActiveWindowOfInput(xcb_window_t reported) {
    if (focusKeeper.kept(queue.uptime())) {
        pendingEffects.add(drain(xcb_poll_for_event));
        sendSoon(); // handles the effects
    }
    takeActiveWindow(reported);
}

/// Without a window manager the report is ignored: then _NET_ACTIVE_WINDOW is left over from a window manager that has
/// ended.
void X11Desktop::Parts::takeActiveWindow(xcb_window_t reported) {
    if (!model.windowManager().isPresent) return;
    returnFocus(reported);
    setActiveWindow(reported);
}

void X11Desktop::Parts::setActiveWindow(xcb_window_t reported) {
    const Seconds now = queue.uptime();
    xcb_window_t window = focusKeeper.effectiveFocus(reported, now);
    const ClientWindow* focusRequestedFor = window != reported ? model.client(window) : nullptr;
    const bool isReturning =
        focusRequestedFor && focusRequestedFor->iconification.isRestoreRequestedWithin(kTimeToFocus, now);
    if (focusRequestedFor && (isReturning || !model.isMinimized(*focusRequestedFor))) {
        later(kTimeToFocus, [this] {
            mutex.assertHeld();
            queryActiveWindow(); // the server or the window manager may have refused the focus to the window
        });
    } else {
        window = reported;
    }
    if (std::exchange(model.activeWindow, window) != window) changes.note();
}

/// A window manager may focus a window that KOVA only restores from the minimized state. Returns the focus to the
/// window that had the focus before. Until then `active` does not count as focused, since the user did not choose it.
void X11Desktop::Parts::returnFocus(xcb_window_t active) {
    const ClientWindow* focused = model.client(active);
    const ClientWindow* parent = focused ? model.parentOf(*focused) : nullptr;
    const auto kept = focusKeeper.windowToRefocus(active, parent ? parent->window : kNoWindow, queue.uptime());
    if (kept && requests.windowToActivate())
        return focusKeeper.noteRefocused(*requests.windowToActivate(), active, queue.uptime());
    const ClientWindow* client = kept ? model.client(*kept) : nullptr;
    if (!client) return;
    constexpr Seconds kTimeToMinimize{1.0};
    const bool isLeaving = client->iconification.isMinimizeRequestedWithin(kTimeToMinimize, queue.uptime());
    if (isLeaving || model.isMinimized(*client)) return;
    requests.activate(*client);
    focusKeeper.noteRefocused(*kept, active, queue.uptime());
    sendSoon();
}

/// Queries the decorations at once instead of at the next poll: a window that is being placed must be placed again with
/// its new decorations.
void X11Desktop::Parts::queryDecorations(xcb_window_t window) {
    const ClientWindow* framed = model.client(window);
    if (!framed) return;
    mustFlush = true;
    PendingReplies& batch = pendingReplies.emplace_back();
    const auto cookie = connection->requestProperty(window, connection->atoms()[Atom::netFrameExtents], 4);
    batch.add(cookie, [this, window, sequence = cookie.sequence](const void* reply) {
        mutex.assertHeld();
        ClientWindow* client = model.client(window);
        const auto* extents = static_cast<const xcb_get_property_reply_t*>(reply);
        if (client) model.takeDecorations(*client, viewOf(extents), sequence);
    });
    if (framed->topLevel != kNoWindow && framed->topLevel != window) requestFrame(batch, *connection, model, *framed);
}

/// Queries the state at once for the verification of a placement: a window that has just entered full screen must not
/// count as one that refused the size.
void X11Desktop::Parts::queryState(ClientWindow& client) {
    mustFlush = true;
    ++client.pendingStateRequests;
    PendingReplies& batch = pendingReplies.emplace_back();
    for (const PropertyRule& rule : model.rules()) {
        if (rule.staleBit != stale::state) continue;
        const auto cookie = connection->requestProperty(client.window, rule.property, rule.lengthInWords);
        const bool isLast = rule.property == connection->atoms()[Atom::wmState];
        batch.add(cookie, [this, &rule, isLast, window = client.window, sequence = cookie.sequence](const void* r) {
            mutex.assertHeld();
            ClientWindow* known = model.client(window);
            if (!known) return;
            model.takeState(*known, rule, viewOf(static_cast<const xcb_get_property_reply_t*>(r)), sequence);
            if (isLast) known->pendingStateRequests = std::max(0, known->pendingStateRequests - 1);
        });
    }
}

void X11Desktop::Parts::queryPointer() {
    if (std::exchange(isPointerQueryPending, true)) return;
    mustFlush = true;
    pendingReplies.emplace_back().add(xcb_query_pointer(connection->get(), connection->root()),
                                      [this](const void* reply) {
                                          mutex.assertHeld();
                                          isPointerQueryPending = false;
                                          const auto* pointer = static_cast<const xcb_query_pointer_reply_t*>(reply);
                                          if (pointer && pointer->same_screen)
                                              model.pointer = {pointer->root_x, pointer->root_y};
                                      });
}

void X11Desktop::Parts::queryScreenPowerAgain() {
    {
        const MutexLock lock(mutex);
        queryScreenPower();
    }
    handleEffects({});
}

/// Queries whether the screens are off, if there is an observer.
void X11Desktop::Parts::queryScreenPower() {
    if (!screenPower.isObserved()) return;
    mustFlush = true;
    screenPower.query(pendingReplies.emplace_back());
}

} // namespace kova
