// Windows, read and written in the accessibility vocabulary.
#include "platform/x11/TilingManagers.h"
#include "platform/x11/X11Parts.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>

namespace kova {

using namespace x11;

namespace {

/// How long a requested frame counts as the window's frame. A placement is verified after this time.
constexpr Seconds kAssumedFrameTime{0.05};
/// After a change of the window manager, sizes of windows may change for this long.
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
    ClientWindow* client = model.client(static_cast<xcb_window_t>(element.hash));
    return client && client->processIdentifier == element.processIdentifier ? client : nullptr;
}

AccessibilityElement X11Desktop::Parts::elementOf(const ClientWindow& client) const {
    return {client.processIdentifier, client.window, nullptr};
}

/// The application's focused window, else its topmost visible window, else any of its windows.
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
    // Without the connection the model is out of date.
    if (parts_->isLost) return std::vector<AttributeValue>(attributes.size());
    std::vector<AttributeValue> values;
    values.reserve(attributes.size());
    const Seconds now = parts_->queue.uptime();
    const MutexLock lock(parts_->mutex);
    // The polling queue reads the model as it was at the beginning of the poll.
    if (parts_->isMainThread()) parts_->catchUp();
    const ClientWindow* client = element.hash == 0 ? nullptr : parts_->find(element);
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
        return client.title(); // empty until the application has set a title
    case AccessibilityAttribute::minimized:
        return hider.readsAsMinimized(client, now);
    case AccessibilityAttribute::position:
    case AccessibilityAttribute::size: {
        // A window that refused the requested frame before will refuse it again, so its actual frame is read.
        const auto outer =
            client.refusesFrames() ? model.outerFrame(client) : model.expectedFrame(client, now, kAssumedFrameTime);
        if (!outer) return {};
        const CGRect frame = displays.space().points(*outer);
        if (attribute == AccessibilityAttribute::position) return frame.origin;
        return frame.size;
    }
    case AccessibilityAttribute::minSize: {
        if (!client.minimumElseBase) return {};
        const PixelEdges around = client.decorations - client.shadow;
        return displays.space().points(std::max(0, client.minimumElseBase->width + around.horizontal()),
                                       std::max(0, client.minimumElseBase->height + around.vertical()));
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
    // An application exists as long as it has a window.
    const bool exists = std::ranges::any_of(model.clientOrder(), [&](xcb_window_t window) {
        mutex.assertHeld();
        const ClientWindow* client = model.client(window);
        return client && client->processIdentifier == processIdentifier && !client->isInputOnly;
    });
    if (!exists) return {};
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
    const MutexLock lock(parts_->mutex);
    const ClientWindow* client = parts_->find(element);
    if (!client) return std::nullopt;
    WindowSizeHints hints = client->sizeHints;
    const PixelEdges around = client->decorations - client->shadow;
    hints.around = {static_cast<double>(around.horizontal()), static_cast<double>(around.vertical())};
    return parts_->displays.space().points(hints);
}

bool X11Desktop::areSizesReliable(const AccessibilityElement& element) const {
    const Seconds now = parts_->queue.uptime();
    const MutexLock lock(parts_->mutex);
    const ClientWindow* client = parts_->find(element);
    return client && !parts_->model.isSettling() &&
           !parts_->model.hasManagerChangedWithin(kSizesSettleAfterManager, now) &&
           client->decorations == client->decorationsWhenPlaced &&
           !isTilingManager(
               parts_->model.windowManager().name); // a tiling window manager, not the window, chooses the size
}

WindowPresence X11Desktop::presenceOf(const AccessibilityElement& window) const {
    if (parts_->isLost) return WindowPresence::noResponse;
    const MutexLock lock(parts_->mutex);
    return parts_->find(window) ? WindowPresence::present : WindowPresence::closed;
}

std::optional<std::uint64_t> X11Desktop::spaceOf(const AccessibilityElement& window) const {
    const MutexLock lock(parts_->mutex);
    const ClientWindow* client = parts_->find(window);
    const auto desktop = client ? parts_->model.desktopOf(*client) : std::nullopt;
    return desktop ? std::optional<std::uint64_t>(*desktop) : std::nullopt;
}

std::uint64_t X11Desktop::shownSpace() const {
    const MutexLock lock(parts_->mutex);
    return parts_->model.currentDesktop;
}

std::uint64_t X11Desktop::windowManagerChanges() const {
    const MutexLock lock(parts_->mutex);
    return parts_->model.settledManagerChanges();
}

// Writing

void X11Desktop::writeAttributes(const AccessibilityElement& element, std::span<const AttributeWrite> writes) {
    const Seconds now = parts_->queue.uptime();
    const MutexLock lock(parts_->mutex);
    ClientWindow* client = element.hash == 0 ? nullptr : parts_->find(element);
    std::optional<CGPoint> origin;
    std::optional<CGSize> size;
    for (const AttributeWrite& write : writes) {
        const bool* flag = std::get_if<bool>(&write.value);
        const bool isTrue = flag && *flag;
        if (element.hash == 0) {
            if (write.attribute == AccessibilityAttribute::frontmost && isTrue) {
                parts_->requests.activateApplication(element.processIdentifier,
                                                     parts_->mainWindowOf(element.processIdentifier));
            }
        } else if (!client) {
            return;
        } else if (const auto* point = std::get_if<CGPoint>(&write.value)) {
            if (write.attribute == AccessibilityAttribute::position) origin = *point;
        } else if (const auto* extent = std::get_if<CGSize>(&write.value)) {
            if (write.attribute == AccessibilityAttribute::size) size = *extent;
        } else if (write.attribute == AccessibilityAttribute::minimized && flag != nullptr) {
            isTrue ? parts_->hider.minimize(*client) : parts_->hider.restore(*client);
        } else if (write.attribute == AccessibilityAttribute::maximized && isTrue) {
            parts_->requests.maximize(*client);
        } else if ((write.attribute == AccessibilityAttribute::main ||
                    write.attribute == AccessibilityAttribute::focused) &&
                   isTrue) {
            parts_->requests.activate(*client);
        }
    }
    if (client && (origin || size)) {
        // Uses the last value of each attribute; position or size stays unchanged if it was not written.
        const auto expected = parts_->model.expectedFrame(*client, now, kAssumedFrameTime);
        if (expected || (origin && size)) {
            CGRect frame = expected ? parts_->displays.space().points(*expected) : CGRect{};
            if (origin) frame.origin = *origin;
            if (size) frame.size = *size;
            parts_->requests.place(*client, parts_->displays.space().pixels(frame), now);
            parts_->lastPlacing = now;
            // Another poll is needed, since a poll in progress may read the requested frame instead of the real one.
            parts_->changes.note();
            // The known state of the window may be outdated; the verification of the placement needs the present state.
            if (client->stale & stale::state) parts_->queryState(*client);
        }
    }
    parts_->sendSoon();
}

void X11Desktop::performAction(const AccessibilityElement& element, AccessibilityAction action) {
    const MutexLock lock(parts_->mutex);
    const ClientWindow* client = parts_->find(element);
    switch (action) {
    case AccessibilityAction::raise:
        if (client) parts_->requests.raise(*client);
    }
    parts_->sendSoon();
}

/// True if some window is reported as restored, or with its requested frame, before an event has confirmed that. No
/// event announces that a request was refused, so a poll must check.
bool X11Desktop::Parts::isAnyStateAssumed() const {
    const Seconds now = queue.uptime();
    return std::ranges::any_of(model.clientOrder(), [&](xcb_window_t window) {
        mutex.assertHeld();
        const ClientWindow* client = model.client(window);
        if (client && model.isMinimized(*client) && hider.countsAsRestored(*client, now)) return true;
        return client && client->pending && !client->refusesFrames() &&
               model.expectedFrame(*client, now, kAssumedFrameTime) != model.outerFrame(*client);
    });
}

/// Sends requests after the work that is already queued on the main thread, in case no call of `flush` follows.
void X11Desktop::Parts::sendSoon() {
    if (std::exchange(isSendDue, true)) return;
    queue.post(lifetime.guard([this] { send(); }));
}

void X11Desktop::Parts::send() {
    isSendDue = false;
    bool mustWatch = false, hasRequests = false;
    {
        const MutexLock lock(mutex);
        hasRequests = !requests.isEmpty();
        const auto focused = requests.windowToActivate();
        requests.send();
        if (focused) expectFocus(*focused);
        mustFlush = true;
        // If a restored window takes the focus, KOVA must react at once.
        mustWatch = watch.isPaused() && !watch.isPausedForPoll() && focusKeeper.kept(queue.uptime());
    }
    handleEffects({});
    if (mustWatch) return watch.resume();
    if (hasRequests) pauseAfterPlacing();
}

void X11Desktop::flush() {
    parts_->send();
}

std::optional<AccessibilityElement> X11Desktop::elementAtPosition(CGPoint point) const {
    const MutexLock lock(parts_->mutex);
    if (parts_->isLost) return std::nullopt;
    parts_->catchUp();
    const PixelRect at = parts_->displays.space().pixels({point, {0, 0}});
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
    const MutexLock lock(parts_->mutex);
    std::vector<OnScreenWindow> windows;
    const auto& stacking = parts_->model.stacking();
    for (auto top = stacking.rbegin(); top != stacking.rend(); ++top) {
        const ClientWindow* client = parts_->model.clientIn(*top);
        if (!client || !parts_->model.isShown(*client) || !parts_->model.isOnCurrentDesktop(*client)) continue;
        const auto outer = parts_->model.outerFrame(*client);
        if (!outer || client->isInputOnly) continue;
        windows.push_back({client->processIdentifier, client->isManaged() ? kOrdinaryLayer : kPanelLayer,
                           parts_->displays.space().points(*outer)});
    }
    return windows;
}

} // namespace kova
