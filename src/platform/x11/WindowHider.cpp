#include "platform/x11/WindowHider.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>

namespace kova::x11 {

WindowHider::WindowHider(const XConnection& connection, WindowModel& model, RequestQueue& requests,
                         FocusKeeper& focusKeeper, const MainQueue& clock, std::string file, CallLater callLater) :
    connection_(connection),
    model_(model), requests_(requests), focusKeeper_(focusKeeper), clock_(clock), callLater_(std::move(callLater)),
    record_(std::move(file)) {}

// Requests

void WindowHider::minimize(ClientWindow& client) {
    if (record_.isHiddenWithApplication(client.window)) {
        if (model_.windowManager().isPresent) {
            record_.remove(client.window);
        } else {
            record_.add({recordOf(client, HiddenBy::unmapping)});
        }
    }
    hideWindow(client);
    for (ClientWindow* dialog : dialogsOf(client)) {
        if (!isMinimizedByManager(*dialog)) hideWindow(*dialog);
    }
}

void WindowHider::restore(ClientWindow& client) {
    if (!isApplicationHidden(client.processIdentifier)) {
        // Recorded, so that an agent that ends waits for the window.
        const bool isRecorded = model_.windowManager().isPresent && model_.isMinimized(client);
        if (isRecorded) record_.add({recordOf(client, HiddenBy::application)});
        showWindow(client);
        if (model_.windowManager().isPresent) return; // the window manager restores the dialogs
        for (ClientWindow* dialog : dialogsOf(client)) showWindow(*dialog);
        return;
    }
    if (record_.isHiddenWithApplication(client.window) || !model_.isMinimized(client)) return;
    record_.add({recordOf(client, HiddenBy::application)});
}

bool WindowHider::hide(pid_t process) {
    // A window counts as minimized until the window manager has handled the request to restore it.
    constexpr Seconds kTimeToReturn{1};
    const Seconds now = clock_.uptime();
    std::vector<HiddenWindow> leaving;
    for (const xcb_window_t window : model_.windowsOf(process)) {
        const ClientWindow* client = model_.client(window);
        if (!client || !client->isManaged() || !model_.isOnCurrentDesktop(*client)) continue;
        const bool mayStillReturn =
            model_.windowManager().isPresent && client->iconification.isRestoreRequestedWithin(kTimeToReturn, now);
        if (!model_.isMinimized(*client) || mayStillReturn) leaving.push_back(recordOf(*client, HiddenBy::application));
    }
    record_.add(leaving);
    // The record is written first, since the agent may be killed at any moment. Without a window manager the windows
    // are unmapped later, after another write.
    if (model_.windowManager().isPresent) record_.writeFile();
    for (const HiddenWindow& hidden : leaving) {
        if (ClientWindow* client = model_.client(hidden.window)) hideWindow(*client);
    }
    return !leaving.empty();
}

bool WindowHider::unhide(pid_t process) {
    const auto returning = record_.markApplicationReturning(process, clock_.uptime());
    for (const xcb_window_t window : returning) showWindow(window);
    return !returning.empty();
}

void WindowHider::showAll() {
    for (const xcb_window_t window : record_.markAllReturning(clock_.uptime())) showWindow(window);
}

void WindowHider::activateReturning() {
    for (const HiddenWindow& hidden : record_.all()) {
        const ClientWindow* client = model_.client(hidden.window);
        if (!client || !hidden.isReturning || !model_.windowManager().isPresent) continue;
        if (model_.hasReturned(*client) || !model_.isOnCurrentDesktop(*client)) continue;
        requests_.sendActivation(*client);
        hasUnsent_ = true;
    }
}

void WindowHider::managerChanged() {
    // The new window manager may not know which windows are hidden.
    for (const xcb_window_t window : record_.markAllReturning(clock_.uptime())) mapAgain(window);
}

void WindowHider::takeOver(const std::vector<HiddenWindow>& leftover, bool staysHidden) {
    record_.add(leftover);
    record_.forceWrite();
    record_.writeFile();
    if (!staysHidden) return showAll();
    for (const HiddenWindow& hidden : leftover) {
        if (model_.client(hidden.window)) continue;
        if (model_.windowManager().isPresent || model_.windowManager().publishesNoClientList) {
            // The window manager does not list the window, so only KOVA can show it.
            record_.markReturning(hidden.window, clock_.uptime());
            showWindow(hidden.window);
        } else {
            model_.adoptIconified(hidden.window); // without a window manager only the record names unmapped windows
        }
    }
}

// Events

void WindowHider::follow(const std::vector<xcb_window_t>& returning) {
    for (const xcb_window_t window : returning) {
        // The window is not mapped if KOVA has requested to minimize it again since the poll.
        ClientWindow* client = model_.client(window);
        if (!client || client->iconification.isRestoreDueAfterMinimize(clock_.uptime())) mapAgain(window);
        if (client) client->iconification.cancelRestore();
    }
    if (model_.isSettling()) repeatMapRequests();
    record_.followModel(model_, clock_.uptime());
    writeRecordSoon();
}

/// The record is complete before the first window is unmapped.
void WindowHider::sendUnmaps() {
    if (toUnmap_.empty()) return;
    record_.writeFile();
    for (const xcb_window_t window : std::exchange(toUnmap_, {})) {
        ClientWindow* client = model_.client(window);
        if (!client || !client->iconification.isUnmapDue()) continue;
        setIconicState(window, XCB_ICCCM_WM_STATE_ICONIC);
        client->iconification.unmapSent(xcb_unmap_window(connection_.get(), window).sequence);
    }
}

// Reading

bool WindowHider::readsAsMinimized(const ClientWindow& client, Seconds now) const {
    return model_.isMinimized(client) && !countsAsRestored(client, now) &&
           !(record_.isHiddenWithApplication(client.window) && isApplicationHidden(client.processIdentifier));
}

bool WindowHider::countsAsRestored(const ClientWindow& client, Seconds now) const {
    return model_.windowManager().isPresent && client.iconification.countsAsRestored(now);
}

bool WindowHider::isAnyRestoreDue() const {
    const Seconds now = clock_.uptime();
    return std::ranges::any_of(model_.clientOrder(), [&](xcb_window_t window) {
        const ClientWindow* client = model_.client(window);
        return client && client->iconification.isRestoreDueAfterMinimize(now);
    });
}

bool WindowHider::isAnyHidePending() const {
    return std::ranges::any_of(record_.all(),
                               [](const HiddenWindow& hidden) { return !hidden.hasLeftScreen && !hidden.isLate; });
}

// One window

HiddenWindow WindowHider::recordOf(const ClientWindow& client, HiddenBy how) const {
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

/// Window managers minimize dialogs together with their window. Only KWin leaves modal dialogs on the screen.
bool WindowHider::isMinimizedByManager(const ClientWindow& dialog) const {
    const WindowManager& manager = model_.windowManager();
    return manager.isPresent && !(manager.name == "KWin" && dialog.isModal);
}

void WindowHider::hideWindow(ClientWindow& client) {
    // If restoring was requested, the window may count as minimized only because the window manager has not handled
    // that request, or because its result was not read yet. If the window is still minimized, another request is
    // harmless.
    if (model_.isMinimized(client) && !client.iconification.isRestoreRequested()) return;
    if (model_.windowManager().isPresent) {
        connection_.sendToWindowManager(client.window, Atom::wmChangeState, {XCB_ICCCM_WM_STATE_ICONIC, 0, 0, 0, 0});
        client.iconification.noteMinimizeRequest(clock_.uptime());
    } else {
        // If the whole application is being hidden, the window is recorded already.
        if (!record_.isHiddenWithApplication(client.window)) record_.add({recordOf(client, HiddenBy::unmapping)});
        if (client.iconification.scheduleUnmap(clock_.uptime())) toUnmap_.push_back(client.window);
        hasUnsent_ = true;
    }
}

void WindowHider::showWindow(ClientWindow& client) {
    record_.markReturning(client.window, clock_.uptime());
    // The window may be iconic for a window manager that has ended, and would be so for the next one.
    if (!model_.windowManager().isPresent && client.isIconic && !model_.isMinimized(client)) {
        setIconicState(client.window, XCB_ICCCM_WM_STATE_NORMAL);
        hasUnsent_ = true;
    }
    // The iconic state is announced after the window was unmapped, and read only by the next poll.
    const TopLevel* top = model_.topLevel(client.topLevel);
    const bool hasJustLeft = client.iconification.isMinimizeRequested() && top && !top->isMapped;
    if (model_.isMinimized(client) || hasJustLeft) {
        mapAgain(client.window);
    } else if (client.iconification.mayStillMinimize(clock_.uptime())) {
        // Mapping a window that is about to be unmapped has no effect, so it is mapped once it was unmapped.
        client.iconification.restoreOnceMinimized();
    }
}

void WindowHider::showWindow(xcb_window_t window) {
    // A window that is not in the model was unmapped under another window manager, or by a former agent.
    ClientWindow* client = model_.client(window);
    client ? showWindow(*client) : mapAgain(window);
}

void WindowHider::mapAgain(xcb_window_t window) {
    const bool isManaged = model_.windowManager().isPresent;
    if (!isManaged) setIconicState(window, XCB_ICCCM_WM_STATE_NORMAL);
    hasUnsent_ = true;
    ClientWindow* client = model_.client(window);
    if (client && !model_.isOnCurrentDesktop(*client)) return restoreOnOtherDesktop(*client);
    xcb_map_window(connection_.get(), window);
    if (isManaged) focusKeeper_.noteRestoreRequested(window, model_.activeWindow, clock_.uptime());
    if (!client) return;
    const TopLevel* top = model_.topLevel(client->topLevel);
    // Some window managers keep a minimized window mapped. Then mapping has no effect, but activating restores it.
    const bool isStillMapped = top && top->isMapped && (client->isIconic || client->isHiddenState);
    if (isStillMapped && isManaged) requests_.sendActivation(*client);
    // The state is set now, so that the next request does not act on the former state. If the window stays iconic, the
    // next poll notices that.
    client->isIconic = client->isHiddenState = false;
    client->iconification.noteRestoreRequest(clock_.uptime(), top && !top->isMapped);
    model_.markStale(*client, stale::state);
}

/// Openbox only marks a window of another desktop as urgent if the window is mapped, but restores it if its state is
/// requested. Other window managers ignore that request. Many move a restored window to the current desktop, so its own
/// desktop is requested after that.
void WindowHider::restoreOnOtherDesktop(ClientWindow& client) {
    connection_.sendToWindowManager(client.window, Atom::wmChangeState, {XCB_ICCCM_WM_STATE_NORMAL, 0, 0, 0, 0});
    if (model_.windowManager().name != "Openbox") xcb_map_window(connection_.get(), client.window);
    constexpr std::uint32_t kFromPager = 2; // this request comes from the user, as it does from a pager
    connection_.sendToWindowManager(client.window, Atom::netWmDesktop, {*client.desktop, kFromPager, 0, 0, 0});
    client.isIconic = client.isHiddenState = false;
    client.iconification.noteRestoreRequest(clock_.uptime(), false);
    model_.markStale(client, stale::state);
}

/// Without a window manager KOVA sets the state, which the window's program and a window manager that starts later
/// read.
void WindowHider::setIconicState(xcb_window_t window, std::uint32_t state) {
    const xcb_atom_t property = connection_.atoms()[Atom::wmState];
    const std::array<std::uint32_t, 2> values = {state, kNoWindow};
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property, property, 32, 2, values.data());
}

/// Repeats requests, since a window manager that is still starting may miss them.
void WindowHider::repeatMapRequests() {
    constexpr Seconds kPause{0.4};
    const Seconds now = clock_.uptime();
    if (now - lastRepetition_ < kPause) return;
    lastRepetition_ = now;
    for (const HiddenWindow& hidden : record_.all()) {
        const ClientWindow* client = model_.client(hidden.window);
        if (!hidden.isReturning || (client && model_.isShown(*client))) continue;
        mapAgain(hidden.window);
        // A window that was mapped while no window manager was running may count as iconic for the next window manager.
        // A map request has no effect on such a window.
        if (model_.windowManager().isPresent) {
            connection_.sendToWindowManager(hidden.window, Atom::wmChangeState,
                                            {XCB_ICCCM_WM_STATE_NORMAL, 0, 0, 0, 0});
        }
    }
}

/// Writes the record after a pause: outdated entries are harmless.
void WindowHider::writeRecordSoon() {
    constexpr Seconds kPause{0.3};
    if (record_.isWritten() || std::exchange(isRecordDue_, true)) return;
    callLater_(kPause, [this] {
        isRecordDue_ = false;
        record_.writeFile();
    });
}

} // namespace kova::x11
