// Opening and closing the desktop, the beginning of a poll, and the count of changes.
#include "platform/x11/X11Desktop.h"

#include "platform/x11/LocalProcesses.h"
#include "platform/x11/ServerClaim.h"
#include "platform/x11/X11Parts.h"
#include "support/Quoted.h"

#include <poll.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <memory>

namespace kova {

using namespace x11;

X11Desktop::Parts::Parts(std::unique_ptr<XConnection> opened, const Options& options, MainQueue& mainQueue,
                         ApplicationCatalogue& applicationCatalogue) :
    connection(std::move(opened)),
    queue(mainQueue), launcher(options.launcher), returnTimeoutAtEnd(options.returnTimeoutAtEnd),
    processes(*connection, options.queriesProcesses), changes(mainQueue), applications(applicationCatalogue),
    watch(mainQueue, xcb_get_file_descriptor(connection->get())), model(connection->atoms(), connection->root()),
    displays(*connection), screenPower(*connection, mainQueue, [this] { queryScreenPowerAgain(); }),
    requests(*connection, model), hider(*connection, model, requests, focusKeeper, mainQueue, options.hiddenWindowsFile,
                                        [this](Seconds pause, std::function<void()> work) { later(pause, work); }),
    input(mainQueue, mutex, model, displays,
          {.activeWindow =
               [this](xcb_window_t window) {
                   mutex.assertHeld();
                   takeActiveWindowOfInput(window);
               },
           .hasRead = [this] { changes.callBackIfDue(); }}),
    refresh(*connection, processes, mutex, model) {
    model.setRandrEventBase(displays.eventBase());
    model.rootSize = {connection->screen().width_in_pixels, connection->screen().height_in_pixels};
}

std::variant<std::unique_ptr<X11Desktop>, X11Desktop::Failure>
X11Desktop::open(const Options& options, MainQueue& queue, ApplicationCatalogue& catalogue) {
    auto connected = XConnection::open(options.displayName);
    if (auto* reason = std::get_if<std::string>(&connected)) return Failure{std::move(*reason)};
    auto parts = std::make_unique<Parts>(std::move(std::get<0>(connected)), options, queue, catalogue);
    const std::string display = "the X display " + quoted(parts->connection->displayName());
    if (options.claimsServer) {
        if (const auto other = claimServer(*parts->connection, parts->processes)) {
            const std::string agent = other->process ? "process " + std::to_string(*other->process) : "another agent";
            return Failure{agent + " already manages " + display, true};
        }
    }
    parts->readEverything();
    parts->input.open(parts->connection->displayName());
    if (parts->isLost) return Failure{"The connection to " + display + " was closed."};
    return std::unique_ptr<X11Desktop>(new X11Desktop(std::move(parts), options));
}

X11Desktop::X11Desktop(std::unique_ptr<Parts> parts, const Options& options) : parts_(std::move(parts)) {
    parts_->takeOverLeftoverWindows(options.keepsLeftoverWindowsHidden);
    // Handles events that arrived while the desktop was read.
    parts_->send();
}

X11Desktop::~X11Desktop() {
    if (parts_->isLost) return;
    bool isAnyHidden = true;
    xcb_window_t active = kNoWindow;
    {
        const MutexLock lock(parts_->mutex);
        const Seconds now = parts_->queue.uptime();
        const auto kept = parts_->focusKeeper.kept(now);
        active = kept.value_or(parts_->model.activeWindow);
        HiddenWindows& record = parts_->hider.record();
        record.followModel(parts_->model, now);
        record.writeFile();
        isAnyHidden = !record.all().empty() || parts_->hider.isAnyRestoreDue() || kept;
    }
    if (isAnyHidden) {
        restoreHidden();
        awaitReturningWindows();
        parts_->keepActive(active);
    }
    parts_->removeHiddenStates();
    // Closing the connection could drop requests that the server has not read.
    std::free(
        xcb_get_input_focus_reply(parts_->connection->get(), xcb_get_input_focus(parts_->connection->get()), nullptr));
}

/// A window that is just being minimized is restored once it is minimized. Windows that are not on the screen at the
/// end stay recorded for the next agent. The main thread waits for a moment here; while the desktop is open it never
/// waits.
void X11Desktop::awaitReturningWindows() {
    const Seconds end = parts_->queue.uptime() + parts_->returnTimeoutAtEnd;
    Seconds activation = end - parts_->returnTimeoutAtEnd / 2;
    pollfd readable{connectionDescriptor(), POLLIN, 0};
    bool isAnyRestoreDue = true;
    while (isAnyRestoreDue && readEvents() && parts_->queue.uptime() < end) {
        const MutexLock lock(parts_->mutex);
        isAnyRestoreDue = parts_->hider.isAnyRestoreDue() || !parts_->hider.record().all().empty();
        if (isAnyRestoreDue && parts_->queue.uptime() >= activation) {
            parts_->hider.activateReturning();
            parts_->connection->flush();
            activation = end;
        }
        if (isAnyRestoreDue) ::poll(&readable, 1, 20);
    }
    const MutexLock lock(parts_->mutex);
    parts_->hider.record().writeFile();
}

/// A window manager that has ended leaves its states on the windows, and the next one would minimize the windows that
/// are marked as hidden, although they are shown now. Waits for the server.
void X11Desktop::Parts::removeHiddenStates() {
    const MutexLock lock(mutex);
    if (isLost || model.windowManager().isPresent) return;
    constexpr std::uint32_t kMostStates = 64;
    const Atoms& atoms = connection->atoms();
    for (const xcb_window_t window : model.clientOrder()) {
        const ClientWindow* client = model.client(window);
        if (!client || !model.isShown(*client)) continue;
        const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
            connection->get(), connection->requestProperty(window, atoms[Atom::netWmState], kMostStates), nullptr));
        auto states = numbersIn(viewOf(reply.get()), XCB_ATOM_ATOM);
        if (std::erase(states, atoms[Atom::netWmStateHidden]) == 0) continue;
        xcb_change_property(connection->get(), XCB_PROP_MODE_REPLACE, window, atoms[Atom::netWmState], XCB_ATOM_ATOM,
                            32, static_cast<std::uint32_t>(states.size()), states.data());
    }
    connection->flush();
}

/// Returns the focus to the window when the agent ends, since many window managers focus a restored window.
void X11Desktop::Parts::keepActive(xcb_window_t window) {
    const MutexLock lock(mutex);
    const ClientWindow* client = model.client(window);
    if (isLost || !client || !model.windowManager().isPresent || model.isMinimized(*client)) return;
    requests.activate(*client);
    requests.send();
}

int X11Desktop::connectionDescriptor() const {
    return xcb_get_file_descriptor(parts_->connection->get());
}

// Opening

void X11Desktop::Parts::readEverything() {
    const std::uint32_t mask =
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection->get(), connection->root(), XCB_CW_EVENT_MASK, &mask);
    {
        const MutexLock lock(mutex); // no other thread runs yet
        displays.readAll();
    }
    refresh.readTopLevels();
    bringUpToDate();
    const MutexLock lock(mutex);
    queryActiveWindow();
    queryPointer();
    for (PendingReplies& batch : pendingReplies) batch.wait(*connection);
    takeReplies();
    displays.arrange(model);
    model.hasManagerChanged = false;
    isLost = connection->isLost();
}

/// Takes over the windows that a former agent hid and did not show again.
void X11Desktop::Parts::takeOverLeftoverWindows(bool staysHidden) {
    std::vector<HiddenWindow> left, found;
    std::vector<PropertyRule> rules;
    {
        const MutexLock lock(mutex);
        left = hider.record().readFile();
        rules = model.rules();
    }
    if (left.empty()) return;
    PendingReplies batch;
    for (const HiddenWindow& recorded : left) {
        // The server reuses window numbers, so KOVA checks that this is an iconic window of the recorded process.
        const auto state = std::make_shared<ClientWindow>();
        for (const PropertyRule& rule : rules) {
            if (!(rule.staleBit & (stale::state | stale::owner))) continue;
            batch.add(connection->requestProperty(recorded.window, rule.property, rule.lengthInWords),
                      [&rule, state, this](const void* reply) {
                          rule.take(*state, viewOf(static_cast<const xcb_get_property_reply_t*>(reply)),
                                    connection->atoms());
                      });
        }
        if (processes.isAvailable()) {
            batch.add(processes.request(recorded.window), [state](const void* reply) {
                state->reportedProcess =
                    ClientProcesses::processIn(static_cast<const xcb_res_query_client_ids_reply_t*>(reply));
            });
        }
        batch.add(xcb_get_geometry(connection->get(), recorded.window), [&found, recorded, state](const void* reply) {
            const auto process = attributedProcess(evidenceOf(*state));
            const bool isSame = !process || *process == recorded.processIdentifier;
            if (reply && isSame && (state->isIconic || state->isHiddenState)) found.push_back(recorded);
        });
    }
    batch.wait(*connection);
    const MutexLock lock(mutex);
    batch.take();
    hider.takeOver(found, staysHidden);
}

/// Calls `work` after the pause, with the lock held.
void X11Desktop::Parts::later(Seconds pause, std::function<void()> work) {
    queue.after(pause, lifetime.guard([this, work = std::move(work)] {
        const MutexLock lock(mutex);
        work();
    }));
}

// The polling queue's part

void X11Desktop::Parts::bringUpToDate() {
    {
        const MutexLock lock(mutex);
        catchUp();
        isPollReading = !isMainThread();
    }
    const RefreshOutcome outcome = refresh.run(queue.uptime());
    bool ownersChanged = outcome.ownersChanged;
    {
        const MutexLock lock(mutex);
        ownersChanged |= std::exchange(model.ownersChanged, false);
    }
    if (ownersChanged) {
        std::vector<ApplicationEvidence> evidence;
        std::string windowManager;
        {
            const MutexLock lock(mutex);
            evidence = evidenceIn(model);
            windowManager = model.windowManager().name;
        }
        applications.identify(evidence, windowManager);
    }
    bool mainHasWork = false;
    {
        const MutexLock lock(mutex);
        // While this thread waited for replies, it also read events and replies for the main thread. The main thread
        // was not woken for them.
        pendingEffects.add(drain(xcb_poll_for_queued_event));
        pendingEffects.panelsChanged |= outcome.panelsChanged;
        pendingEffects.returning.insert(pendingEffects.returning.end(), outcome.returning.begin(),
                                        outcome.returning.end());
        // No event announces the end of the settling time, so the next poll must check.
        if (model.isSettling()) {
            changes.note();
            pendingEffects.changed = true;
        }
        if (isAnyStateAssumed()) changes.note();
        isPollReading = false;
        assertInputMutexHeld();
        mainHasWork = watch.isPausedForPoll() || pendingEffects.isForMainThread() || model.hasManagerChanged ||
                      (pendingEffects.changed && changes.isAwaited()) ||
                      hider.record().isOutdated(model, queue.uptime()) || input.hasMisplacedHandles() ||
                      !pendingReplies.empty() || displays.isReading();
        pendingEffects.changed = false;
    }
    if (!mainHasWork || isMainThread()) return;
    queue.post(lifetime.guard([this] {
        handleEffects({});
        if (watch.isPausedForPoll()) watch.resume();
    }));
}

// Changes

std::optional<std::uint64_t> X11Desktop::changeCount() const {
    if (parts_->watch.isPaused()) {
        const MutexLock lock(parts_->mutex);
        parts_->catchUp();
    }
    return parts_->changes.count();
}

void X11Desktop::notifyWhenChanged(std::uint64_t count, std::function<void()> callback) {
    parts_->changes.await(count, std::move(callback));
    // Events that arrived during a pause must be counted now.
    if (parts_->changes.isAwaited() && parts_->watch.isPaused()) {
        parts_->watch.resume();
        readEvents();
    }
    parts_->changes.callBackIfDue();
}

} // namespace kova
