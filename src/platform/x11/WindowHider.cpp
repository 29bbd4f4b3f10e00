#include "platform/x11/WindowHider.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>

namespace kova::x11 {

WindowHider::WindowHider(const XConnection& connection, WindowModel& model, RequestQueue& requests,
                         KeyboardKeeper& keyboard, const MainQueue& clock, std::string file, Later later) :
    connection_(connection),
    model_(model), requests_(requests), keyboard_(keyboard), clock_(clock), later_(std::move(later)),
    record_(std::move(file)) {}

// Requests

void WindowHider::minimize(ClientWindow& client) {
    if (record_.holds(client.window)) {
        if (model_.windowManager().isPresent) {
            record_.remove(client.window);
        } else {
            record_.add({recordOf(client, TakenAway::byUnmapping)});
        }
    }
    takeAway(client);
    for (ClientWindow* dialog : dialogsOf(client)) {
        if (!leavesToManager(*dialog)) takeAway(*dialog);
    }
}

void WindowHider::restore(ClientWindow& client) {
    if (!isApplicationHidden(client.processIdentifier)) {
        bringBack(client);
        if (model_.windowManager().isPresent) return; // it restores dialogs by itself
        for (ClientWindow* dialog : dialogsOf(client)) bringBack(*dialog);
        return;
    }
    if (record_.holds(client.window) || !model_.isMinimized(client)) return;
    record_.add({recordOf(client, TakenAway::byHiding)});
}

bool WindowHider::hide(pid_t process) {
    // A window whose return was just requested reads as minimized until the window manager has handled the request.
    constexpr Seconds kTimeToReturn{1};
    const Seconds now = clock_.uptime();
    std::vector<HiddenWindow> leaving;
    for (const xcb_window_t window : model_.windowsOf(process)) {
        const ClientWindow* client = model_.client(window);
        if (!client || !client->isManaged() || !model_.isOnCurrentDesktop(*client)) continue;
        const bool mayStillReturn =
            model_.windowManager().isPresent && client->iconification.isAskedBackWithin(kTimeToReturn, now);
        if (!model_.isMinimized(*client) || mayStillReturn) leaving.push_back(recordOf(*client, TakenAway::byHiding));
    }
    record_.add(leaving);
    // The record is written first, since the agent may be killed at any moment. Without a window manager the windows
    // are unmapped later, after another write.
    if (model_.windowManager().isPresent) record_.writeFile();
    for (const HiddenWindow& hidden : leaving) {
        if (ClientWindow* client = model_.client(hidden.window)) takeAway(*client);
    }
    return !leaving.empty();
}

bool WindowHider::unhide(pid_t process) {
    const auto coming = record_.takeHidden(process, clock_.uptime());
    for (const xcb_window_t window : coming) bringBack(window);
    return !coming.empty();
}

void WindowHider::bringAllBack() {
    for (const xcb_window_t window : record_.takeAll(clock_.uptime())) bringBack(window);
}

void WindowHider::managerChanged() {
    // The new window manager may not know which windows are hidden.
    for (const xcb_window_t window : record_.takeAll(clock_.uptime())) mapAgain(window);
}

void WindowHider::takeOver(const std::vector<HiddenWindow>& left, bool waitsToSettle) {
    record_.add(left);
    record_.doubtFile();
    record_.writeFile();
    if (!waitsToSettle) return bringAllBack();
    for (const HiddenWindow& taken : left) {
        if (model_.client(taken.window)) continue;
        if (model_.windowManager().isPresent || model_.windowManager().publishesNoClientList) {
            // The window manager does not list it, so nothing else would show it.
            record_.markReturning(taken.window, clock_.uptime());
            bringBack(taken.window);
        } else {
            model_.adoptIconified(taken.window); // without a manager no list but ours
                                                 // has what is not on the screen
        }
    }
}

// Events

void WindowHider::follow(const std::vector<xcb_window_t>& returning) {
    for (const xcb_window_t window : returning) {
        // Skipped if it was requested to leave again since the poll.
        ClientWindow* client = model_.client(window);
        if (!client || client->iconification.isToReturnOnceGone(clock_.uptime())) mapAgain(window);
        if (client) client->iconification.stopReturning();
    }
    if (model_.isSettling()) remindOfReturning();
    record_.followModel(model_, clock_.uptime());
    writeRecordSoon();
}

/// The record is complete before the first window is unmapped.
void WindowHider::sendUnmaps() {
    if (leaving_.empty()) return;
    record_.writeFile();
    for (const xcb_window_t window : std::exchange(leaving_, {})) {
        ClientWindow* client = model_.client(window);
        if (!client || !client->iconification.isUnmapDue()) continue;
        setIconicState(window, XCB_ICCCM_WM_STATE_ICONIC);
        client->iconification.unmapSent(xcb_unmap_window(connection_.get(), window).sequence);
    }
}

// Reading

bool WindowHider::readsAsMinimized(const ClientWindow& client, Seconds now) const {
    return model_.isMinimized(client) && !isBelievedBack(client, now) &&
           !(record_.holds(client.window) && isApplicationHidden(client.processIdentifier));
}

bool WindowHider::isBelievedBack(const ClientWindow& client, Seconds now) const {
    return model_.windowManager().isPresent && client.iconification.isBelievedBack(now);
}

bool WindowHider::isAnyReturning() const {
    const Seconds now = clock_.uptime();
    return std::ranges::any_of(model_.clientOrder(), [&](xcb_window_t window) {
        const ClientWindow* client = model_.client(window);
        return client && client->iconification.isToReturnOnceGone(now);
    });
}

bool WindowHider::isAnyLeaving() const {
    return std::ranges::any_of(record_.all(), [](const HiddenWindow& taken) { return !taken.hasLeftScreen; });
}

// One window

HiddenWindow WindowHider::recordOf(const ClientWindow& client, TakenAway how) const {
    HiddenWindow record;
    record.window = client.window;
    record.processIdentifier = client.processIdentifier;
    record.how = how;
    record.since = clock_.uptime();
    return record;
}

std::vector<ClientWindow*> WindowHider::dialogsOf(const ClientWindow& client) {
    std::vector<ClientWindow*> dialogs;
    for (const xcb_window_t window : model_.dialogsOf(client)) {
        if (ClientWindow* dialog = model_.client(window)) dialogs.push_back(dialog);
    }
    return dialogs;
}

/// Window managers minimize dialogs together with their window. Only KWin leaves the modal ones on the screen.
bool WindowHider::leavesToManager(const ClientWindow& dialog) const {
    const WindowManager& manager = model_.windowManager();
    return manager.isPresent && !(manager.name == "KWin" && dialog.isModal);
}

void WindowHider::takeAway(ClientWindow& client) {
    // A window whose return was requested may read as minimized only because the request is not handled, or its result
    // not read yet. A superfluous request is harmless.
    if (model_.isMinimized(client) && !client.iconification.mayComeBack()) return;
    if (model_.windowManager().isPresent) {
        connection_.sendToWindowManager(client.window, Atom::wmChangeState, {XCB_ICCCM_WM_STATE_ICONIC, 0, 0, 0, 0});
        client.iconification.leave(clock_.uptime());
    } else {
        // The windows of an application that is being hidden are recorded already.
        if (!record_.holds(client.window)) record_.add({recordOf(client, TakenAway::byUnmapping)});
        if (client.iconification.leaveWithNextRequests(clock_.uptime())) leaving_.push_back(client.window);
        hasUnsent_ = true;
    }
}

void WindowHider::bringBack(ClientWindow& client) {
    record_.markReturning(client.window, clock_.uptime());
    // Its iconic state is announced after it was unmapped, and read by the next poll only.
    const TopLevel* top = model_.topLevel(client.topLevel);
    const bool hasJustLeft = client.iconification.isAskedToLeave() && top && !top->isMapped;
    if (model_.isMinimized(client) || hasJustLeft) {
        mapAgain(client.window);
    } else if (client.iconification.mayStillLeave(clock_.uptime())) {
        // Mapping a window that is about to be unmapped has no effect; it is mapped once it was unmapped.
        client.iconification.returnOnceGone();
    }
}

void WindowHider::bringBack(xcb_window_t window) {
    // An unlisted window was unmapped under another window manager, or by a former agent.
    ClientWindow* client = model_.client(window);
    client ? bringBack(*client) : mapAgain(window);
}

void WindowHider::mapAgain(xcb_window_t window) {
    const bool isManaged = model_.windowManager().isPresent;
    if (!isManaged) setIconicState(window, XCB_ICCCM_WM_STATE_NORMAL);
    xcb_map_window(connection_.get(), window);
    hasUnsent_ = true;
    if (isManaged) keyboard_.noteReturning(window, model_.activeWindow, clock_.uptime());
    ClientWindow* client = model_.client(window);
    if (!client) return;
    const TopLevel* top = model_.topLevel(client->topLevel);
    // Some window managers keep a minimized window mapped. Mapping has no effect then; activating restores it.
    const bool isStillMapped = top && top->isMapped && (client->isIconic || client->isHiddenState);
    if (isStillMapped && isManaged) requests_.sendActivation(*client);
    // At once, so that the next request does not use the former state. If it stays iconic, the next poll notices.
    client->isIconic = client->isHiddenState = false;
    client->iconification.comeBack(clock_.uptime(), top && !top->isMapped);
    model_.markStale(*client, stale::state);
}

/// Without a window manager KOVA sets the state, for the window and for a window manager that starts later.
void WindowHider::setIconicState(xcb_window_t window, std::uint32_t state) {
    const xcb_atom_t property = connection_.atoms()[Atom::wmState];
    const std::array<std::uint32_t, 2> values = {state, kNoWindow};
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property, property, 32, 2, values.data());
}

/// Repeats requests, since a window manager that is still starting may miss them.
void WindowHider::remindOfReturning() {
    constexpr Seconds kPause{0.4};
    const Seconds now = clock_.uptime();
    if (now - lastReminder_ < kPause) return;
    lastReminder_ = now;
    for (const HiddenWindow& taken : record_.all()) {
        const ClientWindow* client = model_.client(taken.window);
        if (!taken.isReturning || (client && model_.isShown(*client))) continue;
        mapAgain(taken.window);
        // A window that was mapped between two window managers, and taken as iconic by the second, is mapped already,
        // so a map request would have no effect.
        if (model_.windowManager().isPresent) {
            connection_.sendToWindowManager(taken.window, Atom::wmChangeState, {XCB_ICCCM_WM_STATE_NORMAL, 0, 0, 0, 0});
        }
    }
}

/// Delayed, since outdated entries are harmless.
void WindowHider::writeRecordSoon() {
    constexpr Seconds kPause{0.3};
    if (record_.isWritten() || std::exchange(isRecordDue_, true)) return;
    later_(kPause, [this] {
        isRecordDue_ = false;
        record_.writeFile();
    });
}

} // namespace kova::x11
