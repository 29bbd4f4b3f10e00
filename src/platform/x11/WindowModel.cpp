#include "platform/x11/WindowModel.h"

#include <algorithm>

namespace kova::x11 {

namespace {

/// The longest time from the end of one window manager until the next has listed all windows.
constexpr Seconds kSettlingTime{2.0};
/// The longest time from the moment when an ending window manager releases its first window until it has ended.
constexpr Seconds kTimeToLeave{0.5};
/// The longest time for which an animated frame may be small.
constexpr Seconds kLongestAnimation{1.0};

} // namespace

void EventEffects::add(EventEffects&& other) {
    changed |= other.changed;
    mustQueryActiveWindow |= other.mustQueryActiveWindow;
    mustQueryDisplays |= other.mustQueryDisplays;
    mustQueryScreenPower |= other.mustQueryScreenPower;
    mustQueryScale |= other.mustQueryScale;
    panelsChanged |= other.panelsChanged;
    redecorated.insert(redecorated.end(), other.redecorated.begin(), other.redecorated.end());
    stateChanged.insert(stateChanged.end(), other.stateChanged.begin(), other.stateChanged.end());
    returning.insert(returning.end(), other.returning.begin(), other.returning.end());
}

WindowModel::WindowModel(const Atoms& atoms, xcb_window_t root) :
    atoms_(atoms), root_(root), rules_(propertyRules(atoms)) {}

void WindowModel::setTopLevel(xcb_window_t window, const TopLevel& topLevel) {
    const auto [place, isNew] = topLevels_.insert_or_assign(window, topLevel);
    if (isNew && std::ranges::find(stacking_, window) == stacking_.end()) stacking_.push_back(window);
}

void WindowModel::takeTopLevel(xcb_window_t window, const TopLevel& reply, std::uint32_t request) {
    const auto isNewer = [&](const std::optional<std::uint32_t>& sequence) {
        return sequence && isAtOrAfter(*sequence, request);
    };
    const auto known = topLevels_.find(window);
    if (known == topLevels_.end()) {
        // Before the first events only the order of the windows is known.
        if (std::ranges::find(stacking_, window) != stacking_.end()) setTopLevel(window, reply);
        return;
    }
    TopLevel& top = known->second;
    if (!isNewer(top.rectEventSequence)) {
        top.rect = reply.rect;
        top.border = reply.border;
    }
    if (!isNewer(top.mappingEventSequence)) top.isMapped = reply.isMapped;
    top.isOverrideRedirect = reply.isOverrideRedirect;
}

void WindowModel::setClientList(const std::vector<xcb_window_t>& windows, Seconds now) {
    // A window manager that ends may first release its windows, which are then missing from the list.
    const auto isMissing = [&](xcb_window_t known) { return std::ranges::find(windows, known) == windows.end(); };
    if (!settlesAt_ && std::ranges::any_of(order_, isMissing)) settlesAt_ = now + kTimeToLeave;
    std::vector<xcb_window_t> kept;
    for (const xcb_window_t known : std::vector(order_)) {
        if (!isMissing(known)) continue;
        ClientWindow* missing = client(known);
        const ClientWindow* inside = clientIn(known);
        const bool isFrame = inside && inside->window != known;
        if (settlesAt_ && missing && !isFrame) {
            kept.push_back(known);
            markStale(*missing, stale::all);
        } else {
            forget(known);
        }
    }
    order_.clear();
    for (const xcb_window_t window : windows) {
        const auto [place, isNew] = clients_.try_emplace(window);
        if (isNew) {
            place->second.window = window;
            ++staleClients;
            ownersChanged = true;
        }
        // A window may be listed twice.
        if (isNew || std::ranges::find(order_, window) == order_.end()) order_.push_back(window);
    }
    order_.insert(order_.end(), kept.begin(), kept.end());
}

void WindowModel::setWindowManager(const WindowManager& manager, Seconds now) {
    const bool isOtherManager = !isManagerKnown_ || manager.isPresent != manager_.isPresent ||
                                manager.checkWindow != manager_.checkWindow ||
                                manager.publishesNoClientList != manager_.publishesNoClientList;
    manager_ = manager;
    if (isOtherManager) {
        // Another program lists and decorates the same windows, so all their properties may have changed.
        hasManagerChanged = ownersChanged = true;
        staleClientList = manager.isPresent;
        staleWorkarea = staleDesktop = true;
        if (std::exchange(isManagerKnown_, true)) {
            startSettling(now);
            managerChangedAt_ = now;
            isManagerChangePending_ = true;
        }
        for (const xcb_window_t window : order_) {
            ClientWindow* known = client(window);
            if (!known) continue;
            known->pending.reset();
            known->iconification.forgetRequests();
            markStale(*known, stale::all);
        }
    }
    if (manager.isPresent) return;
    if (isOtherManager) workareas.clear();
    adoptMapped();
}

void WindowModel::startSettling(Seconds now) {
    settlesAt_ = now + kSettlingTime;
}

void WindowModel::settle(Seconds now) {
    if (std::exchange(isReleasingWindows_, false) && !settlesAt_) settlesAt_ = now + kTimeToLeave;
    if (!settlesAt_) return;
    staleManager = true;
    staleClientList = manager_.isPresent;
    if (now < *settlesAt_) return;
    settlesAt_.reset();
    if (std::exchange(isManagerChangePending_, false)) ++settledManagerChanges_;
    if (manager_.isPresent) return;
    for (const xcb_window_t window : std::vector(order_)) {
        const ClientWindow* known = client(window);
        const TopLevel* top = known ? topLevel(known->topLevel) : nullptr;
        const bool isUsable = known && (known->iconification.isUnmapRequested() || (top && top->isMapped));
        if (!isUsable || manager_.publishesNoClientList) forget(window);
    }
}

/// Adds mapped top levels while there is no window list. Does not add the frames of a window manager without a list,
/// nor the frames of a window manager that is ending, which still contain known windows.
void WindowModel::adoptMapped() {
    if (manager_.publishesNoClientList) return;
    for (const xcb_window_t window : std::vector(stacking_)) {
        const TopLevel* top = topLevel(window);
        const ClientWindow* held = clientIn(window);
        if (top && top->isMapped && !top->isOverrideRedirect && !held) adoptUnmanaged(window);
    }
}

void WindowModel::adoptUnmanaged(xcb_window_t window) {
    const auto [place, isNew] = clients_.try_emplace(window);
    if (!isNew) return;
    place->second.window = window;
    ++staleClients;
    ownersChanged = true;
    order_.push_back(window);
    setTopLevelOf(place->second, window);
}

void WindowModel::adoptIconified(xcb_window_t window) {
    adoptUnmanaged(window);
    if (ClientWindow* adopted = client(window)) adopted->iconification.adoptUnmapped();
}

void WindowModel::setTopLevelOf(ClientWindow& client, xcb_window_t topLevel) {
    const auto old = clientByTopLevel_.find(client.topLevel);
    if (old != clientByTopLevel_.end() && old->second == client.window) clientByTopLevel_.erase(old);
    if (client.topLevel != topLevel) {
        client.measuredDecorations.reset();
        client.frameBeforeAnimation.reset();
    }
    client.topLevel = topLevel;
    if (topLevel == kNoWindow) return;
    // A frame that was taken for a window is replaced by the window inside.
    const ClientWindow* inside = clientIn(topLevel);
    if (client.window != topLevel || !inside) clientByTopLevel_[topLevel] = client.window;
}

void WindowModel::forget(xcb_window_t window) {
    const auto place = clients_.find(window);
    if (place == clients_.end()) return;
    ownersChanged = true;
    if (place->second.stale != 0) --staleClients;
    setTopLevelOf(place->second, kNoWindow);
    setOwner(place->second, 0);
    clients_.erase(place);
    std::erase(order_, window);
    if (activeWindow == window && !manager_.isPresent) activeWindow = kNoWindow;
}

void WindowModel::setOwner(ClientWindow& client, pid_t process) {
    if (client.processIdentifier == process) return;
    if (const auto before = windowsByProcess_.find(client.processIdentifier); before != windowsByProcess_.end()) {
        std::erase(before->second, client.window);
        if (before->second.empty()) windowsByProcess_.erase(before);
    }
    if (process != 0) windowsByProcess_[process].push_back(client.window);
    client.processIdentifier = process;
}

const std::vector<xcb_window_t>& WindowModel::windowsOf(pid_t process) const {
    static const std::vector<xcb_window_t> none;
    const auto found = windowsByProcess_.find(process);
    return found == windowsByProcess_.end() ? none : found->second;
}

void WindowModel::takeDecorations(ClientWindow& client, const PropertyView& extents, std::uint32_t request) {
    if (!client.acceptReply(stale::frame, request)) return;
    for (const PropertyRule& rule : rules_) {
        if (rule.property == atoms_[Atom::netFrameExtents]) rule.take(client, extents, atoms_);
    }
    if (!client.announcedDecorations) return;
    // The pending frame was computed with the old decorations.
    if (client.decorations != *client.announcedDecorations) client.pending.reset();
    client.decorations = *client.announcedDecorations;
    if (client.topLevel == client.window) client.margins = client.shadow - client.decorations;
}

void WindowModel::takeMeasuredFrame(ClientWindow& client, const PixelEdges& around, std::uint32_t request) {
    if (!client.acceptReply(stale::frame, request)) return;
    const bool wasExact = client.measuredDecorations && client.margins == client.shadow;
    // If the window manager announces no frame extents, the whole frame counts as visible.
    client.decorations = client.announcedDecorations.value_or(around);
    // A frame that is smaller than the window inside is just being resized; afterwards it will have the announced
    // decorations again.
    const PixelEdges beyond = around - client.decorations;
    const bool isTooSmall = beyond.left < 0 || beyond.right < 0 || beyond.top < 0 || beyond.bottom < 0;
    if (isTooSmall && wasExact && !client.isShaded && !settlesAt_) {
        client.margins = client.shadow;
    } else {
        client.margins = {beyond.left + client.shadow.left, beyond.right + client.shadow.right,
                          beyond.top + client.shadow.top, beyond.bottom + client.shadow.bottom};
        const bool isExact = client.margins == client.shadow;
        client.measuredDecorations = isExact ? std::optional(around) : std::nullopt;
        if (!isExact || hasRoomInside(client)) client.frameBeforeAnimation.reset();
    }
}

void WindowModel::takeFocus(xcb_window_t focus, xcb_window_t underPointer, std::uint32_t request) {
    const bool isOld = focusEventSequence_ && isAtOrAfter(*focusEventSequence_, request);
    if (manager_.isPresent || isOld) return;
    const ClientWindow* active = focus == XCB_INPUT_FOCUS_POINTER_ROOT ? clientIn(underPointer) : client(focus);
    if (active) activeWindow = active->window;
}

void WindowModel::noteFocusRequest(xcb_window_t window, std::uint32_t request) {
    focusEventSequence_ = request;
    activeWindow = window;
}

void WindowModel::takeState(ClientWindow& client, const PropertyRule& rule, const PropertyView& value,
                            std::uint32_t request) {
    if (client.acceptReply(stale::state, request)) rule.take(client, value, atoms_);
}

const ClientWindow* WindowModel::client(xcb_window_t window) const {
    const auto place = clients_.find(window);
    return place == clients_.end() ? nullptr : &place->second;
}

ClientWindow* WindowModel::client(xcb_window_t window) {
    const auto place = clients_.find(window);
    return place == clients_.end() ? nullptr : &place->second;
}

const TopLevel* WindowModel::topLevel(xcb_window_t window) const {
    const auto place = topLevels_.find(window);
    return place == topLevels_.end() ? nullptr : &place->second;
}

const ClientWindow* WindowModel::clientIn(xcb_window_t topLevel) const {
    const auto place = clientByTopLevel_.find(topLevel);
    return place == clientByTopLevel_.end() ? nullptr : client(place->second);
}

std::optional<PixelRect> WindowModel::outerFrame(const ClientWindow& client) const {
    const TopLevel* top = topLevel(client.topLevel);
    if (!top || top->rect.width <= 0 || top->rect.height <= 0) return std::nullopt; // its size is not known yet
    // A window manager that has just started makes frames that are smaller than the windows inside at first.
    const bool isFrameExact = client.topLevel == client.window || client.margins == client.shadow;
    if (settlesAt_ && (!isFrameExact || (client.stale & stale::topLevel))) return std::nullopt;
    // While window managers change, the frame before the animation does not count either.
    if (settlesAt_ && !client.isShaded && !hasRoomInside(client)) return std::nullopt;
    if (client.frameBeforeAnimation) return client.frameBeforeAnimation;
    const PixelRect outer = shrunk(top->rect, client.margins);
    // A shadow larger than the window is invalid.
    return outer.width > 0 && outer.height > 0 ? outer : top->rect;
}

/// False if the frame is no larger than a title bar, because it is shaded or animated. No window is that small.
bool WindowModel::hasRoomInside(const ClientWindow& client) const {
    const TopLevel* top = topLevel(client.topLevel);
    if (!top || client.topLevel == client.window || !client.measuredDecorations) return true;
    const PixelRect inside = shrunk(top->rect, *client.measuredDecorations);
    return inside.width > 0 && inside.height > 0;
}

std::optional<PixelRect> WindowModel::expectedFrame(const ClientWindow& client, Seconds now, Seconds maximumAge) const {
    const Seconds enough = client.frameBeforeAnimation ? std::max(maximumAge, kLongestAnimation) : maximumAge;
    if (client.pending && now - client.pending->since < enough) return client.pending->outer;
    return outerFrame(client);
}

bool WindowModel::isFullScreen(const ClientWindow& client) const {
    if (!manager_.isPresent || client.isFullScreen) return manager_.isPresent;
    // A window whose state is unknown counts as full screen if it exactly fills a display.
    const bool isStateUnknown = client.stale & stale::state || client.pendingStateRequests > 0;
    const auto outer = isStateUnknown ? outerFrame(client) : std::nullopt;
    return outer && std::ranges::find(displayRects, *outer) != displayRects.end();
}

const ClientWindow* WindowModel::parentOf(const ClientWindow& client) const {
    const auto isParent = [&](const ClientWindow* other) {
        return other && other != &client && other->processIdentifier == client.processIdentifier && !other->isInputOnly;
    };
    const ClientWindow* named = client.transientFor ? this->client(*client.transientFor) : nullptr;
    if (isParent(named)) return named;
    if (named || !client.isModal || client.group == kNoWindow) return nullptr;
    for (auto top = stacking_.rbegin(); top != stacking_.rend(); ++top) {
        const ClientWindow* other = clientIn(*top);
        const bool isOrdinary = other && other->isManaged() && !other->transientFor && !other->isModal;
        if (isOrdinary && isParent(other) && other->group == client.group) return other;
    }
    return nullptr;
}

std::vector<xcb_window_t> WindowModel::dialogsOf(const ClientWindow& client) const {
    std::vector<xcb_window_t> dialogs;
    const ClientWindow* at = &client;
    for (std::size_t next = 0; at; at = next < dialogs.size() ? this->client(dialogs[next++]) : nullptr) {
        for (const xcb_window_t window : windowsOf(client.processIdentifier)) {
            const ClientWindow* other = this->client(window);
            if (!other || (!other->transientFor && !other->isModal)) continue; // most windows
            const bool isKnown = window == client.window || std::ranges::find(dialogs, window) != dialogs.end();
            if (!isKnown && parentOf(*other) == at) dialogs.push_back(window);
        }
    }
    return dialogs;
}

bool WindowModel::isMinimized(const ClientWindow& client) const {
    if (!manager_.isPresent) return client.iconification.isUnmapRequested();
    // Window managers mark shaded windows as hidden, iconic or both, but the title bars stay on the screen. ICCCM
    // allows the iconic state for every window that is not shown, such as windows of other desktops.
    const TopLevel* top = topLevel(client.topLevel);
    const bool isCurrent = isOnCurrentDesktop(client);
    const bool isRolledUp = client.isShaded && (!isCurrent || (top && top->isMapped));
    if (manager_.announcesHidden) return client.isHiddenState && !isRolledUp;
    return client.isIconic && isCurrent && !isRolledUp;
}

bool WindowModel::isShown(const ClientWindow& client) const {
    const TopLevel* top = topLevel(client.topLevel);
    return top && top->isMapped && !isMinimized(client);
}

bool WindowModel::hasReturned(const ClientWindow& client) const {
    return isOnCurrentDesktop(client) ? isShown(client) : !isMinimized(client);
}

std::optional<std::uint32_t> WindowModel::desktopOf(const ClientWindow& client) const {
    const bool isOnAll = !client.desktop || *client.desktop == kAllDesktops || client.isStickyState;
    return manager_.isPresent && !isOnAll ? client.desktop : std::nullopt;
}

bool WindowModel::isOnCurrentDesktop(const ClientWindow& client) const {
    return desktopOf(client).value_or(currentDesktop) == currentDesktop;
}

void WindowModel::markStale(ClientWindow& client, std::uint32_t bits) {
    if (client.stale == 0 && bits != 0) ++staleClients;
    client.stale |= bits;
}

bool WindowModel::isStale() const {
    return staleClients != 0 || staleClientList || staleManager || staleDesktop || staleWorkarea ||
           !unknownTopLevels_.empty();
}

std::uint32_t WindowModel::takeStale(ClientWindow& client, std::uint32_t bits) {
    const std::uint32_t taken = client.stale & bits;
    client.stale &= ~bits;
    if (taken != 0 && client.stale == 0) --staleClients;
    return taken;
}

} // namespace kova::x11
