// Windows, read and written in the accessibility vocabulary.
#include "platform/x11/X11Parts.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>

namespace kova {

using namespace x11;

namespace {

/// How long a frame that was asked for counts as being in force; the first verification comes later.
constexpr Seconds kBenefitOfDoubt{0.05};
/// For so long windows may have the sizes that a new window manager has given them, or not yet given them.
constexpr Seconds kSizesSettleAfterManager{2.0};

} // namespace

bool X11Desktop::isProcessTrusted() const {
    return !parts_->isLost;
}

bool X11Desktop::requestTrust(bool) {
    return isProcessTrusted();
}

AccessibilityElement X11Desktop::applicationElement(pid_t processIdentifier) const {
    return {processIdentifier, 0, nullptr};
}

const ClientWindow* X11Desktop::Parts::find(const AccessibilityElement& element) const {
    const ClientWindow* client = model.client(static_cast<xcb_window_t>(element.hash));
    return client && client->processIdentifier == element.processIdentifier ? client : nullptr;
}

ClientWindow* X11Desktop::Parts::find(const AccessibilityElement& element) {
    return const_cast<ClientWindow*>(std::as_const(*this).find(element));
}

AccessibilityElement X11Desktop::Parts::elementOf(const ClientWindow& client) const {
    return {client.processIdentifier, client.window, nullptr};
}

/// The window that has the keyboard, else the topmost one that can be seen, else any.
const ClientWindow* X11Desktop::Parts::mainWindowOf(pid_t processIdentifier) const {
    const ClientWindow* active = model.client(model.activeWindow);
    if (active && active->processIdentifier == processIdentifier) return active;
    const ClientWindow* any = nullptr;
    for (auto top = model.stacking().rbegin(); top != model.stacking().rend(); ++top) {
        const ClientWindow* client = model.clientIn(*top);
        if (!client || client->processIdentifier != processIdentifier || !client->isManaged()) continue;
        if (model.isShown(*client)) return client;
        if (!any) any = client;
    }
    return any;
}

std::vector<AttributeValue> X11Desktop::readAttributes(const AccessibilityElement& element,
                                                       std::span<const AccessibilityAttribute> attributes) const {
    // What is left of a lost connection is no desktop.
    if (parts_->isLost) return std::vector<AttributeValue>(attributes.size());
    std::vector<AttributeValue> values;
    values.reserve(attributes.size());
    const Seconds now = parts_->queue.uptime();
    const std::lock_guard lock(parts_->mutex);
    // The polling queue reads what its poll began with.
    if (parts_->isMainThread()) parts_->catchUp();
    const ClientWindow* client = element.hash == 0 ? nullptr : std::as_const(*parts_).find(element);
    for (const AccessibilityAttribute attribute : attributes) {
        if (client) {
            values.push_back(parts_->read(*client, attribute, now));
        } else if (element.hash == 0) {
            values.push_back(parts_->readApplication(element.processIdentifier, attribute));
        } else {
            values.emplace_back();
        }
    }
    return values;
}

AttributeValue X11Desktop::Parts::read(const ClientWindow& client, AccessibilityAttribute attribute,
                                       Seconds now) const {
    switch (attribute) {
    case AccessibilityAttribute::role:
        return std::string("AXWindow");
    case AccessibilityAttribute::subrole:
        return std::string(subroleOf(client.kind()));
    case AccessibilityAttribute::title:
        return client.title(); // empty until the application has given one
    case AccessibilityAttribute::minimized:
        // A hidden application's windows are not minimised: they come back with it.
        return model.isMinimized(client) && !isBelievedBack(client, now) &&
               !(hidden.holds(client.window) && isApplicationHidden(client.processIdentifier));
    case AccessibilityAttribute::position:
    case AccessibilityAttribute::size: {
        // One that was asked for the same place before, and stayed where it is, will stay there.
        const auto outer =
            client.insistsOnItsFrame() ? model.outerFrame(client) : model.expectedFrame(client, now, kBenefitOfDoubt);
        if (!outer) return {};
        const CGRect frame = arrangement.space.points(*outer);
        if (attribute == AccessibilityAttribute::position) return frame.origin;
        return frame.size;
    }
    case AccessibilityAttribute::minSize: {
        if (!client.minimumAndBase) return {};
        const PixelEdges around = client.decorations - client.shadow;
        return arrangement.space.points(std::max(0, client.minimumAndBase->width + around.horizontal()),
                                        std::max(0, client.minimumAndBase->height + around.vertical()));
    }
    case AccessibilityAttribute::parent: {
        const ClientWindow* parent = model.parentOf(client);
        return parent ? elementOf(*parent) : AccessibilityElement{client.processIdentifier, 0, nullptr};
    }
    case AccessibilityAttribute::main:
    case AccessibilityAttribute::focused:
        return model.activeWindow == client.window;
    case AccessibilityAttribute::fullScreen:
        return model.isFullScreen(client);
    case AccessibilityAttribute::maximized:
        return client.isMaximized && model.windowManager().isPresent;
    case AccessibilityAttribute::windows:
    case AccessibilityAttribute::focusedWindow:
    case AccessibilityAttribute::frontmost:
    case AccessibilityAttribute::minimumSize:
    case AccessibilityAttribute::enhancedUserInterface:
        return {};
    }
    return {};
}

AttributeValue X11Desktop::Parts::readApplication(pid_t processIdentifier, AccessibilityAttribute attribute) const {
    // Without a window there is no application.
    const bool isThere = std::ranges::any_of(model.clientOrder(), [&](xcb_window_t window) {
        const ClientWindow* client = model.client(window);
        return client && client->processIdentifier == processIdentifier && !client->isInputOnly;
    });
    if (!isThere) return {};
    switch (attribute) {
    case AccessibilityAttribute::role:
        return std::string("AXApplication");
    case AccessibilityAttribute::windows: {
        std::vector<AccessibilityElement> windows;
        for (const xcb_window_t window : model.clientOrder()) {
            const ClientWindow* client = model.client(window);
            if (client && client->processIdentifier == processIdentifier && !client->isInputOnly) {
                windows.push_back(elementOf(*client));
            }
        }
        return windows;
    }
    case AccessibilityAttribute::focusedWindow: {
        const ClientWindow* main = mainWindowOf(processIdentifier);
        return main ? AttributeValue{elementOf(*main)} : AttributeValue{};
    }
    case AccessibilityAttribute::frontmost: {
        const ClientWindow* active = model.client(model.activeWindow);
        return active && active->processIdentifier == processIdentifier;
    }
    default:
        return {};
    }
}

std::optional<WindowSizeHints> X11Desktop::sizeHints(const AccessibilityElement& element) const {
    const std::lock_guard lock(parts_->mutex);
    const ClientWindow* client = std::as_const(*parts_).find(element);
    if (!client) return std::nullopt;
    WindowSizeHints hints = client->sizeHints;
    const PixelEdges around = client->decorations - client->shadow;
    hints.around = {static_cast<double>(around.horizontal()), static_cast<double>(around.vertical())};
    return parts_->arrangement.space.points(hints);
}

bool X11Desktop::areSizesReliable(const AccessibilityElement& element) const {
    const Seconds now = parts_->queue.uptime();
    const std::lock_guard lock(parts_->mutex);
    const ClientWindow* client = std::as_const(*parts_).find(element);
    return client && !parts_->model.isSettling() &&
           !parts_->model.hasChangedHandsWithin(kSizesSettleAfterManager, now) &&
           client->decorations == client->decorationsWhenPlaced;
}

WindowPresence X11Desktop::presenceOf(const AccessibilityElement& window) const {
    if (parts_->isLost) return WindowPresence::noAnswer;
    const std::lock_guard lock(parts_->mutex);
    return std::as_const(*parts_).find(window) ? WindowPresence::present : WindowPresence::gone;
}

std::optional<std::uint64_t> X11Desktop::spaceOf(const AccessibilityElement& window) const {
    const std::lock_guard lock(parts_->mutex);
    const ClientWindow* client = std::as_const(*parts_).find(window);
    const auto desktop = client ? parts_->model.desktopOf(*client) : std::nullopt;
    return desktop ? std::optional<std::uint64_t>(*desktop) : std::nullopt;
}

std::uint64_t X11Desktop::shownSpace() const {
    const std::lock_guard lock(parts_->mutex);
    return parts_->model.currentDesktop;
}

// Writing

void X11Desktop::writeAttributes(const AccessibilityElement& element, std::span<const AttributeWrite> writes) {
    const Seconds now = parts_->queue.uptime();
    const std::lock_guard lock(parts_->mutex);
    ClientWindow* client = element.hash == 0 ? nullptr : parts_->find(element);
    std::optional<CGPoint> origin;
    std::optional<CGSize> size;
    for (const AttributeWrite& write : writes) {
        const bool* flag = std::get_if<bool>(&write.value);
        const bool isTrue = flag && *flag;
        if (element.hash == 0) {
            if (write.attribute == AccessibilityAttribute::frontmost && isTrue) {
                parts_->outbox.activateApplication(element.processIdentifier,
                                                   parts_->mainWindowOf(element.processIdentifier));
            }
        } else if (!client) {
            return;
        } else if (const auto* point = std::get_if<CGPoint>(&write.value)) {
            if (write.attribute == AccessibilityAttribute::position) origin = *point;
        } else if (const auto* extent = std::get_if<CGSize>(&write.value)) {
            if (write.attribute == AccessibilityAttribute::size) size = *extent;
        } else if (write.attribute == AccessibilityAttribute::minimized && flag) {
            isTrue ? parts_->minimizeByWish(*client) : parts_->restoreByWish(*client);
        } else if (write.attribute == AccessibilityAttribute::maximized && isTrue) {
            parts_->outbox.maximize(*client);
        } else if ((write.attribute == AccessibilityAttribute::main ||
                    write.attribute == AccessibilityAttribute::focused) &&
                   isTrue) {
            parts_->outbox.activate(*client);
        }
    }
    if (client && (origin || size)) {
        // The last of each; what is not written stays as it is.
        const auto expected = parts_->model.expectedFrame(*client, now, kBenefitOfDoubt);
        if (expected || (origin && size)) {
            CGRect frame = expected ? parts_->arrangement.space.points(*expected) : CGRect{};
            if (origin) frame.origin = *origin;
            if (size) frame.size = *size;
            parts_->outbox.place(*client, parts_->arrangement.space.pixels(frame), now);
            parts_->lastPlacing = now;
            // A poll that is under way may be told where the window was wished to be, not where it is.
            parts_->noteChange();
            // The wish may have been made by a state that no longer holds; those who look after it are to know better.
            if (client->stale & stale::state) parts_->askState(*client);
        }
    }
    parts_->sendSoon();
}

void X11Desktop::performAction(const AccessibilityElement& element, AccessibilityAction action) {
    const std::lock_guard lock(parts_->mutex);
    const ClientWindow* client = parts_->find(element);
    switch (action) {
    case AccessibilityAction::raise:
        if (client) parts_->outbox.raise(*client);
    }
    parts_->sendSoon();
}

HiddenWindow X11Desktop::Parts::recordOf(const ClientWindow& client, TakenAway how) const {
    HiddenWindow record;
    record.window = client.window;
    record.processIdentifier = client.processIdentifier;
    record.how = how;
    record.since = queue.uptime();
    return record;
}

/// A window of a hidden application that is to be minimised stays away when the others come back.
void X11Desktop::Parts::minimizeByWish(ClientWindow& client) {
    if (hidden.holds(client.window)) {
        if (model.windowManager().isPresent) {
            hidden.remove(client.window);
        } else {
            hidden.add({recordOf(client, TakenAway::byUnmapping)});
        }
    }
    minimize(client);
    for (ClientWindow* dialog : dialogsToTakeAlong(client)) minimize(*dialog);
}

/// Window managers take dialogs along by themselves.
std::vector<ClientWindow*> X11Desktop::Parts::dialogsToTakeAlong(const ClientWindow& client) {
    std::vector<ClientWindow*> dialogs;
    if (model.windowManager().isPresent) return dialogs;
    for (const xcb_window_t window : model.dialogsOf(client)) {
        if (ClientWindow* dialog = model.client(window)) dialogs.push_back(dialog);
    }
    return dialogs;
}

/// One that is not to be minimised any more comes back when they do, and not before.
void X11Desktop::Parts::restoreByWish(ClientWindow& client) {
    if (!isApplicationHidden(client.processIdentifier)) {
        restore(client);
        for (ClientWindow* dialog : dialogsToTakeAlong(client)) restore(*dialog);
        return;
    }
    if (hidden.holds(client.window) || !model.isMinimized(client)) return;
    hidden.add({recordOf(client, TakenAway::byHiding)});
}

void X11Desktop::Parts::minimize(ClientWindow& client) {
    // A window that was asked to come back may only read as minimized because the window manager has not got to that
    // request yet, or the model has not read the result. Asking once too often does no harm.
    const bool mayComeBack = client.returnAsked && model.windowManager().isPresent;
    if (model.isMinimized(client) && !mayComeBack) return;
    client.hasLeft = false;
    if (model.windowManager().isPresent) {
        connection->sendToWindowManager(client.window, Atom::wmChangeState, {XCB_ICCCM_WM_STATE_ICONIC, 0, 0, 0, 0});
        client.leaveAsked = queue.uptime();
        client.returnsOnceGone = false;
        client.returnAsked.reset();
    } else {
        // An application that is being hidden has its windows on record already.
        if (!hidden.holds(client.window)) hidden.add({recordOf(client, TakenAway::byUnmapping)});
        client.isIconifiedByUs = true;
        if (!std::exchange(client.isUnmapDue, true)) leaving.push_back(client.window);
        mustFlush = true;
    }
}

/// Windows are unmapped together, after one write of the record: it is complete before the first of them goes.
void X11Desktop::Parts::sendLeaving() {
    if (leaving.empty()) return;
    hidden.writeFile();
    for (const xcb_window_t window : std::exchange(leaving, {})) {
        ClientWindow* client = model.client(window);
        if (!client || !std::exchange(client->isUnmapDue, false)) continue;
        setIconicState(window, XCB_ICCCM_WM_STATE_ICONIC);
        client->ownUnmap = xcb_unmap_window(connection->get(), window).sequence;
    }
}

/// What came back by itself need not be forgotten at once.
void X11Desktop::Parts::writeRecordSoon() {
    constexpr Seconds kPause{0.3};
    if (hidden.isWritten() || std::exchange(isRecordDue, true)) return;
    queue.after(kPause, lifetime.guard([this] {
        const std::lock_guard lock(mutex);
        isRecordDue = false;
        hidden.writeFile();
    }));
}

void X11Desktop::Parts::restore(ClientWindow& client) {
    hidden.markReturning(client.window, queue.uptime());
    // That it is iconic is told after it has left the screen, and only looked into by the next poll.
    const TopLevel* top = model.topLevel(client.topLevel);
    const bool hasJustLeft = client.leaveAsked && top && !top->isMapped;
    if (model.isMinimized(client) || hasJustLeft) {
        mapAgain(client.window);
    } else if (mayStillLeave(client)) {
        // Mapping a window that is about to go does nothing; it is done when it has gone.
        client.returnsOnceGone = true;
    }
}

/// A busy window manager takes its time to minimize a window; one that has not done so within seconds never will.
bool X11Desktop::Parts::mayStillLeave(const ClientWindow& client) const {
    constexpr Seconds kTimeToMinimize{5};
    return client.leaveAsked && queue.uptime() - *client.leaveAsked < kTimeToMinimize;
}

/// A window that was just asked back reads as minimized until the window manager has got to that request.
bool X11Desktop::Parts::mayStillReturn(const ClientWindow& client) const {
    constexpr Seconds kTimeToReturn{1};
    return client.returnAsked && model.windowManager().isPresent &&
           queue.uptime() - *client.returnAsked < kTimeToReturn;
}

void X11Desktop::Parts::mapAgain(xcb_window_t window) {
    if (!model.windowManager().isPresent) setIconicState(window, XCB_ICCCM_WM_STATE_NORMAL);
    xcb_map_window(connection->get(), window);
    mustFlush = true;
    if (model.windowManager().isPresent) keyboard.noteReturning(window, model.activeWindow, queue.uptime());
    ClientWindow* client = model.client(window);
    if (!client) return;
    const TopLevel* top = model.topLevel(client->topLevel);
    // Some window managers leave a minimized window mapped. Mapping it does nothing then; giving it the keyboard brings
    // it back.
    const bool isStillMapped = top && top->isMapped && (client->isIconic || client->isHiddenState);
    if (isStillMapped && model.windowManager().isPresent) outbox.sendActivation(*client);
    // At once, so that the next wish is not measured by what no longer holds. If it stays iconic, the poll finds out.
    client->isIconic = client->isHiddenState = client->isIconifiedByUs = client->isUnmapDue = false;
    client->leaveAsked.reset();
    client->returnsOnceGone = false;
    client->returnAsked = queue.uptime();
    client->isMapAsked = top && !top->isMapped;
    model.markStale(*client, stale::state);
}

/// Without a window manager the state is ours to keep, for the window and for who comes after us.
void X11Desktop::Parts::setIconicState(xcb_window_t window, std::uint32_t state) {
    const xcb_atom_t property = connection->atoms()[Atom::wmState];
    const std::array<std::uint32_t, 2> values = {state, kNoWindow};
    xcb_change_property(connection->get(), XCB_PROP_MODE_REPLACE, window, property, property, 32, 2, values.data());
}

/// A window manager needs a moment to bring a window back, and whoever asks meanwhile is not told that it stays away.
bool X11Desktop::Parts::isBelievedBack(const ClientWindow& client, Seconds now) const {
    return client.returnAsked && now - *client.returnAsked < kBenefitOfDoubt && model.windowManager().isPresent;
}

/// Whether some window is said to be where it was wished to be although it is not there yet. Nothing announces that it
/// did not come.
bool X11Desktop::Parts::isAnyBelieved() const {
    const Seconds now = queue.uptime();
    return std::ranges::any_of(model.clientOrder(), [&](xcb_window_t window) {
        const ClientWindow* client = model.client(window);
        if (client && model.isMinimized(*client) && isBelievedBack(*client, now)) return true;
        return client && client->pending && !client->insistsOnItsFrame() &&
               model.expectedFrame(*client, now, kBenefitOfDoubt) != model.outerFrame(*client);
    });
}

/// What no `flush` follows is sent all the same, once the main thread has done what it is doing.
void X11Desktop::Parts::sendSoon() {
    if (std::exchange(isSendDue, true)) return;
    queue.post(lifetime.guard([this] { send(); }));
}

void X11Desktop::Parts::send() {
    isSendDue = false;
    bool mustWatch = false;
    {
        const std::lock_guard lock(mutex);
        if (const auto given = outbox.activated()) keyboard.noteGiven(*given);
        outbox.send();
        mustFlush = true;
        // A window that comes back and takes the keyboard is to be noticed at once.
        mustWatch = isResting && !restsForPoll && keyboard.kept(queue.uptime());
    }
    settle({});
    if (mustWatch) resume();
}

void X11Desktop::flush() {
    parts_->send();
}

std::optional<AccessibilityElement> X11Desktop::elementAtPosition(CGPoint point) const {
    const std::lock_guard lock(parts_->mutex);
    if (parts_->isLost) return std::nullopt;
    parts_->catchUp();
    const PixelRect at = parts_->arrangement.space.pixels({point, {0, 0}});
    const auto& stacking = parts_->model.stacking();
    for (auto top = stacking.rbegin(); top != stacking.rend(); ++top) {
        const ClientWindow* client = parts_->model.clientIn(*top);
        if (!client || !parts_->model.isShown(*client)) continue;
        const auto outer = parts_->model.outerFrame(*client);
        if (outer && contains(*outer, at.x, at.y)) return parts_->elementOf(*client);
    }
    return std::nullopt;
}

std::vector<OnScreenWindow> X11Desktop::onScreenWindows() const {
    constexpr int kOrdinaryLayer = 0, kPanelLayer = 20;
    const std::lock_guard lock(parts_->mutex);
    std::vector<OnScreenWindow> windows;
    const auto& stacking = parts_->model.stacking();
    for (auto top = stacking.rbegin(); top != stacking.rend(); ++top) {
        const ClientWindow* client = parts_->model.clientIn(*top);
        if (!client || !parts_->model.isShown(*client) || !parts_->model.isOnCurrentDesktop(*client)) continue;
        const auto outer = parts_->model.outerFrame(*client);
        if (!outer || client->isInputOnly) continue;
        windows.push_back({client->processIdentifier, client->isManaged() ? kOrdinaryLayer : kPanelLayer,
                           parts_->arrangement.space.points(*outer)});
    }
    return windows;
}

} // namespace kova
