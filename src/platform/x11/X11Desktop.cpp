// Opening, the events of the server, and who is told of changes.
#include "platform/x11/X11Desktop.h"

#include "platform/x11/FocusQuestions.h"
#include "platform/x11/FrameQuestions.h"
#include "platform/x11/LocalProcesses.h"
#include "platform/x11/ServerClaim.h"
#include "platform/x11/X11Parts.h"

#include <poll.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <memory>

namespace kova {

using namespace x11;

namespace {

/// How long somebody looks after a window that was placed.
constexpr Seconds kPlacingTime{1.0};
constexpr Seconds kOneGo{0.001};
/// How long a window manager may take to minimize a window.
constexpr Seconds kTimeToLeave{1.0};
/// How long the connection goes unwatched at most while the next poll has something to find in any case: until that
/// poll, which reads for itself, as a rule.
constexpr Seconds kRest{0.55};

} // namespace

X11Desktop::Parts::Parts(std::unique_ptr<XConnection> opened, const Options& options, MainQueue& mainQueue,
                         ApplicationCatalogue& applicationCatalogue) :
    connection(std::move(opened)),
    queue(mainQueue), catalogue(applicationCatalogue), launcher(options.launcher),
    patienceAtTheEnd(options.patienceAtTheEnd), ownProcesses(ownLine()),
    processes(*connection, options.asksForProcesses), model(connection->atoms(), connection->root()),
    displays(*connection), scale(*connection), screenPower(*connection), hidden(options.hiddenWindowsFile),
    outbox(*connection, model), refresh(*connection, processes, mutex, model) {
    model.setRandrEventBase(displays.eventBase());
    model.rootSize = {connection->screen().width_in_pixels, connection->screen().height_in_pixels};
}

std::variant<std::unique_ptr<X11Desktop>, X11Desktop::Failure>
X11Desktop::open(const Options& options, MainQueue& queue, ApplicationCatalogue& catalogue) {
    auto connected = XConnection::open(options.displayName);
    if (auto* reason = std::get_if<std::string>(&connected)) return Failure{std::move(*reason)};
    auto parts = std::make_unique<Parts>(std::move(std::get<0>(connected)), options, queue, catalogue);
    const std::string display = "the X display \"" + parts->connection->displayName() + "\"";
    if (options.claimsServer) {
        if (const auto other = claimServer(*parts->connection, parts->processes)) {
            const std::string agent = other->process ? "process " + std::to_string(*other->process) : "another agent";
            return Failure{agent + " already manages " + display, true};
        }
    }
    parts->readEverything();
    parts->openHand();
    if (parts->isLost) return Failure{"The connection to " + display + " was closed."};
    return std::unique_ptr<X11Desktop>(new X11Desktop(std::move(parts), options));
}

X11Desktop::X11Desktop(std::unique_ptr<Parts> parts, const Options& options) : parts_(std::move(parts)) {
    parts_->takeOverLeftWindows(options.waitsToSettleHiddenWindows);
    // Takes in what the server said while the desktop was read.
    parts_->send();
}

X11Desktop::~X11Desktop() {
    if (parts_->isLost) return;
    xcb_window_t active = kNoWindow;
    {
        const std::lock_guard lock(parts_->mutex);
        const Seconds now = parts_->queue.uptime();
        const auto kept = parts_->keyboard.kept(now);
        active = kept.value_or(parts_->model.activeWindow);
        parts_->hidden.followModel(parts_->model, now);
        parts_->hidden.writeFile();
        if (parts_->hidden.all().empty() && !parts_->isAnyReturning() && !kept) return;
    }
    restoreHidden();
    // A window that was on its way out comes back once it is out; what is not back by the end stays on record for the
    // next agent. And the last requests are only safe once the server
    // has read them: here, and nowhere else, the main thread waits, but not for long.
    const Seconds end = parts_->queue.uptime() + parts_->patienceAtTheEnd;
    pollfd readable{connectionDescriptor(), POLLIN, 0};
    bool isAnyReturning = true;
    while (isAnyReturning && readEvents() && parts_->queue.uptime() < end) {
        const std::lock_guard lock(parts_->mutex);
        isAnyReturning = parts_->isAnyReturning() || !parts_->hidden.all().empty();
        if (isAnyReturning) ::poll(&readable, 1, 20);
    }
    parts_->keepActive(active);
    parts_->hidden.writeFile();
    std::free(
        xcb_get_input_focus_reply(parts_->connection->get(), xcb_get_input_focus(parts_->connection->get()), nullptr));
}

/// Many window managers give the keyboard to whoever comes back, which is nobody's wish when an agent ends.
void X11Desktop::Parts::keepActive(xcb_window_t window) {
    const std::lock_guard lock(mutex);
    const ClientWindow* client = model.client(window);
    if (isLost || !client || !model.windowManager().isPresent || model.isMinimized(*client)) return;
    outbox.activate(*client);
    outbox.send();
}

int X11Desktop::connectionDescriptor() const {
    return xcb_get_file_descriptor(parts_->connection->get());
}

// Opening

void X11Desktop::Parts::readEverything() {
    const std::uint32_t mask =
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection->get(), connection->root(), XCB_CW_EVENT_MASK, &mask);
    displays.begin();
    displays.wait();
    scale.begin();
    scale.wait();
    refresh.readTopLevels();
    bringUpToDate();
    const std::lock_guard lock(mutex);
    askActiveWindow();
    askPointer();
    for (Questions& questions : asked) questions.wait(*connection);
    takeReplies();
    arrangeDisplays();
    model.hasChangedHands = false;
    isLost = connection->isLost();
}

/// Windows that an agent before this one took away and could not bring back.
void X11Desktop::Parts::takeOverLeftWindows(bool waitsToSettle) {
    const auto left = hidden.readFile();
    if (left.empty()) return;
    std::vector<HiddenWindow> found;
    Questions questions;
    for (const HiddenWindow& taken : left) {
        // Numbers are given out again: it must still be an iconic window of that process.
        const auto state = std::make_shared<ClientWindow>();
        for (const PropertyRule& rule : model.rules()) {
            if (!(rule.staleBit & (stale::state | stale::owner))) continue;
            questions.add(connection->askProperty(taken.window, rule.property, rule.lengthInWords),
                          [&rule, state, this](const void* reply) {
                              rule.take(*state, viewOf(static_cast<const xcb_get_property_reply_t*>(reply)),
                                        connection->atoms());
                          });
        }
        if (processes.canAnswer()) {
            questions.add(processes.ask(taken.window), [state](const void* reply) {
                state->toldProcess =
                    ClientProcesses::processIn(static_cast<const xcb_res_query_client_ids_reply_t*>(reply));
            });
        }
        questions.add(xcb_get_geometry(connection->get(), taken.window), [&found, taken, state](const void* reply) {
            const auto process = attributedProcess(evidenceOf(*state));
            const bool isSame = !process || *process == taken.processIdentifier;
            if (reply && isSame && (state->isIconic || state->isHiddenState)) found.push_back(taken);
        });
    }
    questions.wait(*connection);
    const std::lock_guard lock(mutex);
    questions.take();
    hidden.add(found);
    hidden.doubtFile();
    hidden.writeFile();
    if (!waitsToSettle) return bringAllBack();
    for (const HiddenWindow& taken : found) {
        if (model.client(taken.window)) continue;
        if (model.windowManager().isPresent || model.windowManager().isMute) {
            hidden.markReturning(taken.window, queue.uptime()); // the manager knows nothing of it: nobody else would
            bringBack(taken.window);
        } else {
            model.adoptIconified(taken.window); // what is not on the screen is on nobody's list but ours
        }
    }
}

// Events

bool X11Desktop::readEvents() {
    EventEffects effects;
    {
        const std::lock_guard lock(parts_->mutex);
        effects = parts_->drain(xcb_poll_for_event);
    }
    parts_->settle(std::move(effects));
    if (parts_->connection->isLost() && !parts_->isLost.exchange(true)) {
        parts_->noteChange();
        parts_->callWhenChanged();
    }
    return !parts_->isLost;
}

void X11Desktop::listen(Watch watch, std::function<void()> lost) {
    parts_->watch = std::move(watch);
    parts_->whenLost = [this, lost = std::move(lost)] {
        if (!readEvents()) lost();
    };
    parts_->resume();
    parts_->listenToHand();
}

/// Reads what has come and then either watches for more or looks again a little later.
void X11Desktop::Parts::readAndRest() {
    bool rests = false;
    {
        const std::lock_guard lock(mutex);
        const auto before = changes.load();
        unsettled.add(drain(xcb_poll_for_event));
        rests = changes != before;
    }
    settle({});
    if (connection->isLost()) {
        watching.reset();
        return whenLost();
    }
    {
        const std::lock_guard lock(mutex);
        // Only one thread can read. To watch what another reads would be to wake up for nothing, over and over.
        restsForPoll = isPollReading;
        rests = restsForPoll || (rests && mayRest());
    }
    if (!rests) return resume();
    isResting = true;
    watching.reset();
    if (rest) rest->cancel();
    if (restsForPoll) return; // its end resumes
    rest = queue.after(kRest, lifetime.guard([this] { readAndRest(); }));
}

/// Not while a window is being placed: what it does then is answered at once.
bool X11Desktop::Parts::mayRest() const {
    if (queue.uptime() - lastPlacing < kPlacingTime) return false;
    const auto isLeaving = [](const HiddenWindow& taken) { return !taken.hasLeftScreen; };
    return !whenChanged && !keyboard.kept(queue.uptime()) && asked.empty() && !displays.isAsking() &&
           !scale.isAsking() && std::ranges::none_of(hidden.all(), isLeaving) && !isAnyReturning();
}

void X11Desktop::Parts::resume() {
    if (rest) rest->cancel();
    rest.reset();
    isResting = restsForPoll = false;
    if (!watching && watch) watching = watch(xcb_get_file_descriptor(connection->get()), [this] { readAndRest(); });
}

/// Takes in what has come while nobody watched.
void X11Desktop::Parts::catchUp() {
    if (!isResting) return;
    // Who reads a hundred windows in one go need not look at the connection a hundred times.
    const Seconds now = queue.uptime();
    if (now - caughtUp < kOneGo) return;
    caughtUp = now;
    unsettled.add(drain(xcb_poll_for_event));
}

EventEffects X11Desktop::Parts::drain(xcb_generic_event_t* (*next)(xcb_connection_t*)) {
    EventEffects effects;
    while (const XReply<xcb_generic_event_t> event{next(connection->get())}) {
        // Type 0 is the error of a request without a reply: a window that had gone.
        if (event->response_type == 0) continue;
        effects.askScreenPower |= screenPower.isHint(*event);
        effects.askScale |= scale.isHint(*event);
        effects.add(model.apply(*event));
    }
    if (effects.changed) noteChange();
    return effects;
}

/// What only the main thread does about events.
void X11Desktop::Parts::settle(EventEffects effects) {
    bool displaysChanged = false;
    {
        const std::lock_guard lock(mutex);
        effects.add(std::exchange(unsettled, {}));
        // Sending, and looking for answers, also reads what else the server has said meanwhile, for which nothing would
        // wake this thread.
        for (bool again = true; again;) {
            displaysChanged |= actOn(effects);
            again = std::exchange(mustFlush, false);
            if (again) {
                sendLeaving();
                connection->flush();
            }
            effects = drain(xcb_poll_for_queued_event);
            again |= effects.changed || effects.isForMainThread();
        }
    }
    if (displaysChanged) {
        noteChange();
        screenObservers.notify();
    }
    callWhenChanged();
}

/// True when the displays are others now.
bool X11Desktop::Parts::actOn(const EventEffects& effects) {
    if (std::exchange(model.hasChangedHands, false)) {
        // Whoever comes next may not know what was taken away under the one before.
        for (const xcb_window_t window : hidden.takeAll(queue.uptime())) mapAgain(window);
        askActiveWindow();
        tryHeldKeys(HeldKeysReason::managerChanged);
    }
    for (const xcb_window_t window : effects.returning) {
        // Skipped when it was asked to leave again since the poll found that it had left.
        ClientWindow* client = model.client(window);
        if (!client || (client->returnsOnceGone && mayStillLeave(*client))) mapAgain(window);
        if (client) client->returnsOnceGone = false;
    }
    if (model.isSettling()) remindOfReturning();
    hidden.followModel(model, queue.uptime());
    writeRecordSoon();
    takeReplies();
    const bool displaysTold = displays.advance();
    if (displaysTold) monitors = displays.monitors();
    const bool isScaleNew = scale.advance();
    if (effects.askDisplays) displays.begin();
    if (effects.askScale) scale.begin();
    if (effects.askActiveWindow && !hand) askActiveWindow();
    if (effects.askScreenPower) askScreenPower();
    for (const xcb_window_t window : effects.redecorated) askDecorations(window);
    for (const xcb_window_t window : effects.restated) {
        ClientWindow* client = model.client(window);
        if (client && client->placedAt && queue.uptime() - *client->placedAt < kPlacingTime) askState(*client);
    }
    mustFlush |= displays.hasUnsent();
    mustFlush |= scale.hasUnsent();
    const bool displaysChanged = (displaysTold || isScaleNew || effects.panelsChanged) && arrangeDisplays();
    if (displaysChanged) placeHandles();
    if (hand) hand->windowsChanged(effects.changed);
    if (effects.changed) tryHeldKeys(HeldKeysReason::windowsChanged);
    return displaysChanged;
}

/// A window manager that is still starting overlooks what it is asked.
void X11Desktop::Parts::remindOfReturning() {
    constexpr Seconds kPause{0.4};
    const Seconds now = queue.uptime();
    if (now - lastReminder < kPause) return;
    lastReminder = now;
    for (const HiddenWindow& taken : hidden.all()) {
        const ClientWindow* client = model.client(taken.window);
        if (!taken.isReturning || (client && model.isShown(*client))) continue;
        mapAgain(taken.window);
        // A window that was mapped between two managers, and found iconic by the next, cannot ask by being mapped.
        if (model.windowManager().isPresent) {
            connection->sendToWindowManager(taken.window, Atom::wmChangeState, {XCB_ICCCM_WM_STATE_NORMAL, 0, 0, 0, 0});
        }
    }
}

bool X11Desktop::Parts::isAnyReturning() const {
    return std::ranges::any_of(model.clientOrder(), [&](xcb_window_t window) {
        const ClientWindow* client = model.client(window);
        return client && client->returnsOnceGone && mayStillLeave(*client);
    });
}

void X11Desktop::Parts::noteChange() {
    changes.fetch_add(1);
}

void X11Desktop::Parts::takeReplies() {
    const xcb_window_t active = model.activeWindow;
    while (!asked.empty() && asked.front().collect(*connection)) {
        Questions answered = std::move(asked.front());
        asked.pop_front();
        answered.take();
    }
    if (model.activeWindow != active) noteChange();
}

void X11Desktop::Parts::askActiveWindow() {
    if (hand && model.windowManager().isPresent) return hand->askActiveWindow();
    mustFlush = true;
    if (!model.windowManager().isPresent) return askFocus(asked.emplace_back(), *connection, model);
    asked.emplace_back().add(connection->askProperty(connection->root(), connection->atoms()[Atom::netActiveWindow], 1),
                             [this](const void* reply) {
                                 const auto windows = numbersIn(
                                     viewOf(static_cast<const xcb_get_property_reply_t*>(reply)), XCB_ATOM_WINDOW);
                                 takeActiveWindow(windows.empty() ? kNoWindow : windows[0]);
                             });
}

/// What a window manager that has left said last means nothing.
void X11Desktop::Parts::takeActiveWindow(xcb_window_t window) {
    if (!model.windowManager().isPresent) return;
    if (std::exchange(model.activeWindow, window) != window) noteChange();
    leaveKeyboard();
}

/// Gives the keyboard back when a window that was only to come back has taken it.
void X11Desktop::Parts::leaveKeyboard() {
    const ClientWindow* active = model.client(model.activeWindow);
    const ClientWindow* owner = active ? model.parentOf(*active) : nullptr;
    const auto kept = keyboard.toGiveBack(model.activeWindow, owner ? owner->window : kNoWindow, queue.uptime());
    const ClientWindow* client = kept ? model.client(*kept) : nullptr;
    if (!client || outbox.activated()) return;
    const bool isLeaving = client->leaveAsked && queue.uptime() - *client->leaveAsked < kTimeToLeave;
    if (isLeaving || model.isMinimized(*client)) return;
    outbox.activate(*client);
    sendSoon();
}

/// Asked at once and not by the next poll: a window that is being placed must be placed again by its new decorations.
void X11Desktop::Parts::askDecorations(xcb_window_t window) {
    const ClientWindow* framed = model.client(window);
    if (!framed) return;
    mustFlush = true;
    Questions& questions = asked.emplace_back();
    const auto cookie = connection->askProperty(window, connection->atoms()[Atom::netFrameExtents], 4);
    questions.add(cookie, [this, window, sequence = cookie.sequence](const void* reply) {
        ClientWindow* client = model.client(window);
        const auto* extents = static_cast<const xcb_get_property_reply_t*>(reply);
        if (client) model.takeDecorations(*client, viewOf(extents), sequence);
    });
    if (framed->topLevel != kNoWindow && framed->topLevel != window) askFrame(questions, *connection, model, *framed);
}

/// The same, for the verification of a placement: a window that goes full screen meanwhile refuses no size.
void X11Desktop::Parts::askState(ClientWindow& client) {
    mustFlush = true;
    ++client.openStateQuestions;
    Questions& questions = asked.emplace_back();
    for (const PropertyRule& rule : model.rules()) {
        if (rule.staleBit != stale::state) continue;
        const auto cookie = connection->askProperty(client.window, rule.property, rule.lengthInWords);
        const bool isLast = rule.property == connection->atoms()[Atom::wmState];
        questions.add(cookie, [this, &rule, isLast, window = client.window, sequence = cookie.sequence](const void* r) {
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
        isPointerAsked = false;
        const auto* pointer = static_cast<const xcb_query_pointer_reply_t*>(reply);
        if (pointer && pointer->same_screen) model.pointer = {pointer->root_x, pointer->root_y};
    });
}

// The polling queue's part

void X11Desktop::Parts::bringUpToDate() {
    {
        const std::lock_guard lock(mutex);
        catchUp();
        isPollReading = !isMainThread();
    }
    const RefreshOutcome outcome = refresh.run(queue.uptime());
    bool ownersChanged = outcome.ownersChanged;
    {
        const std::lock_guard lock(mutex);
        ownersChanged |= std::exchange(model.ownersChanged, false);
    }
    if (ownersChanged) identifyApplications();
    bool mainHasWork = false;
    {
        const std::lock_guard lock(mutex);
        // While waiting, this thread has read events, and replies to the main thread, that nothing else wakes it for.
        unsettled.add(drain(xcb_poll_for_queued_event));
        unsettled.panelsChanged |= outcome.panelsChanged;
        unsettled.returning.insert(unsettled.returning.end(), outcome.returning.begin(), outcome.returning.end());
        // Nothing announces that the time to settle is over.
        if (model.isSettling()) {
            noteChange();
            unsettled.changed = true;
        }
        if (isAnyBelieved()) noteChange();
        isPollReading = false;
        mainHasWork = restsForPoll || unsettled.isForMainThread() || model.hasChangedHands ||
                      (unsettled.changed && isAwaited) || hidden.isBehind(model, queue.uptime()) ||
                      (hand && hand->hasMisplacedHandles()) || !asked.empty() || displays.isAsking() ||
                      scale.isAsking();
        unsettled.changed = false;
    }
    if (!mainHasWork || isMainThread()) return;
    queue.post(lifetime.guard([this] {
        settle({});
        if (restsForPoll) resume();
    }));
}

void X11Desktop::Parts::identifyApplications() {
    struct Owner {
        ApplicationTraces traces;
        bool isRegular = false;
        bool drawsDesktop = false; // or a panel on it
    };
    std::vector<pid_t> order;
    std::map<pid_t, Owner> owners;
    std::string windowManager;
    {
        const std::lock_guard lock(mutex);
        windowManager = model.windowManager().name;
        for (const xcb_window_t window : model.clientOrder()) {
            const ClientWindow* client = model.client(window);
            if (!client || client->processIdentifier == 0 || client->isInputOnly) continue;
            const auto [place, isNew] = owners.try_emplace(client->processIdentifier);
            if (isNew) order.push_back(client->processIdentifier);
            Owner& owner = place->second;
            // Panels and palettes do not give their application its name while it has a proper window.
            const bool tellsMore = owner.traces.className.empty() || (client->isManaged() && !owner.isRegular);
            if (tellsMore) owner.traces = {client->instanceName, client->className, client->applicationID};
            owner.isRegular |= client->isManaged();
            owner.drawsDesktop |= client->kind() == WindowKind::desktop || client->kind() == WindowKind::dock;
        }
    }
    std::vector<X11Application> identified;
    for (const pid_t process : order) {
        const Owner& owner = owners[process];
        // Reads the disk the first time, so not under the lock.
        auto identity = catalogue.identify(owner.traces);
        const bool isPart = isPartOfDesktop(process, identity, owner.drawsDesktop, windowManager);
        identified.push_back({process, std::move(identity), owner.isRegular, isPart});
    }
    const std::lock_guard lock(mutex);
    applications = std::move(identified);
}

// Changes

std::optional<std::uint64_t> X11Desktop::changeCount() const {
    if (parts_->isResting) {
        const std::lock_guard lock(parts_->mutex);
        parts_->catchUp();
    }
    return parts_->changes.load();
}

void X11Desktop::notifyWhenChanged(std::uint64_t count, std::function<void()> callback) {
    parts_->whenChanged = std::move(callback);
    parts_->awaitedCount = count;
    parts_->isAwaited = static_cast<bool>(parts_->whenChanged);
    // Whoever waits is to hear at once.
    if (parts_->isAwaited && parts_->isResting) {
        parts_->resume();
        readEvents();
    }
    parts_->callWhenChanged();
}

void X11Desktop::Parts::callWhenChanged() {
    if (!whenChanged || changes == awaitedCount) return;
    isAwaited = false;
    queue.post(lifetime.guard(std::exchange(whenChanged, {})));
}

} // namespace kova
