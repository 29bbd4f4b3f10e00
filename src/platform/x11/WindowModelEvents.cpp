// Applies events to the model.
#include "platform/x11/WindowModel.h"

#include <algorithm>
#include <utility>

namespace kova::x11 {

EventEffects WindowModel::apply(const xcb_generic_event_t& event) {
    // Any client can send any event, so events that clients send are ignored. The only exception is the event by which
    // a program withdraws an unmapped window: the server itself has no such event.
    const bool isSentByClient = event.response_type & 0x80;
    if (isSentByClient && (event.response_type & 0x7F) != XCB_UNMAP_NOTIFY) return {};
    switch (event.response_type & 0x7F) {
    case XCB_PROPERTY_NOTIFY:
        return applyProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    case XCB_CONFIGURE_NOTIFY:
        return applyConfigure(reinterpret_cast<const xcb_configure_notify_event_t&>(event), event.full_sequence);
    case XCB_CREATE_NOTIFY:
        return applyCreation(reinterpret_cast<const xcb_create_notify_event_t&>(event), event.full_sequence);
    case XCB_DESTROY_NOTIFY: {
        const auto& destroyed = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
        return removeTopLevel(destroyed.window);
    }
    case XCB_MAP_NOTIFY: {
        const auto& mapped = reinterpret_cast<const xcb_map_notify_event_t&>(event);
        if (const auto place = topLevels_.find(mapped.window); place != topLevels_.end()) {
            place->second.isOverrideRedirect = mapped.override_redirect != 0;
        }
        return applyMapping(mapped.window, true, event.full_sequence);
    }
    case XCB_UNMAP_NOTIFY: {
        const auto& unmapped = reinterpret_cast<const xcb_unmap_notify_event_t&>(event);
        if (isSentByClient) return applyWithdrawal(unmapped.window);
        return applyMapping(unmapped.window, false, event.full_sequence);
    }
    case XCB_REPARENT_NOTIFY:
        return applyReparent(reinterpret_cast<const xcb_reparent_notify_event_t&>(event));
    case XCB_CIRCULATE_NOTIFY: {
        const auto& circulated = reinterpret_cast<const xcb_circulate_notify_event_t&>(event);
        std::erase(stacking_, circulated.window);
        stacking_.insert(circulated.place == XCB_PLACE_ON_TOP ? stacking_.end() : stacking_.begin(), circulated.window);
        return {};
    }
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT: {
        const auto& focus = reinterpret_cast<const xcb_focus_in_event_t&>(event);
        const bool movesInside = focus.detail == XCB_NOTIFY_DETAIL_INFERIOR;
        if (movesInside || focus.mode == XCB_NOTIFY_MODE_GRAB || focus.mode == XCB_NOTIFY_MODE_UNGRAB) return {};
        return applyFocus(focus.event, (event.response_type & 0x7F) == XCB_FOCUS_IN, event.full_sequence);
    }
    case XCB_ENTER_NOTIFY: {
        const auto& entered = reinterpret_cast<const xcb_enter_notify_event_t&>(event);
        pointer = {entered.root_x, entered.root_y};
        constexpr std::uint8_t kHasFocus = 1;
        return entered.same_screen_focus & kHasFocus ? applyFocus(entered.event, true, event.full_sequence)
                                                     : EventEffects{};
    }
    default:
        break;
    }
    if (randrEventBase_ &&
        ((event.response_type & 0x7F) == *randrEventBase_ || (event.response_type & 0x7F) == *randrEventBase_ + 1)) {
        EventEffects effects;
        effects.changed = effects.mustQueryDisplays = true;
        return effects;
    }
    return {};
}

EventEffects WindowModel::applyCreation(const xcb_create_notify_event_t& event, std::uint32_t sequence) {
    if (event.parent != root_) return {};
    EventEffects effects;
    if (client(event.window)) {
        // The server reuses window numbers. The former window was destroyed inside its frame, without an event; from
        // now on the number means the new window.
        forget(event.window);
        effects.changed = staleClientList = true;
    }
    const PixelRect rect{event.x, event.y, event.width + 2 * event.border_width, event.height + 2 * event.border_width};
    setTopLevel(event.window, {rect, event.border_width, false, event.override_redirect != 0, sequence, sequence});
    return effects;
}

EventEffects WindowModel::applyProperty(const xcb_property_notify_event_t& event) {
    EventEffects effects;
    if (event.window == root_) {
        if (event.atom == atoms_[Atom::netActiveWindow]) effects.mustQueryActiveWindow = true;
        const auto mark = [&](Atom atom, bool& isMarked) {
            if (event.atom != atoms_[atom]) return;
            effects.changed |= !isMarked;
            isMarked = true;
        };
        mark(Atom::netClientList, staleClientList);
        mark(Atom::netCurrentDesktop, staleDesktop);
        mark(Atom::netWorkarea, staleWorkarea);
        mark(Atom::netSupportingWmCheck, staleManager);
        mark(Atom::netSupported, staleManager);
        return effects;
    }
    ClientWindow* changed = client(event.window);
    if (!changed) return effects;
    if (event.atom == XCB_ATOM_WM_NAME && changed->netName) return effects;
    for (const PropertyRule& rule : rules_) {
        if (rule.property != event.atom) continue;
        // Decorations may change with the state of the window.
        const std::uint32_t bits = rule.staleBit | (rule.staleBit == stale::state ? stale::frame : 0U);
        effects.changed = (changed->stale & bits) != bits;
        markStale(*changed, bits);
        if (event.atom == atoms_[Atom::netFrameExtents] && manager_.isPresent)
            effects.redecorated.push_back(event.window);
        // Before the next poll the state is only needed for windows that were placed, to verify their placement.
        if (rule.staleBit == stale::state && manager_.isPresent && changed->placedAt)
            effects.stateChanged.push_back(event.window);
        break;
    }
    return effects;
}

EventEffects WindowModel::applyConfigure(const xcb_configure_notify_event_t& event, std::uint32_t sequence) {
    EventEffects effects;
    if (event.window == root_) {
        // Monitors that the user defines (xrandr --setmonitor) cause no other event.
        const std::pair<int, int> size{event.width, event.height};
        // Until the window manager announces new work areas, the known ones fit the former size.
        if (std::exchange(rootSize, size) != size) workareas.clear();
        effects.changed = effects.mustQueryDisplays = true;
        return effects;
    }
    const auto place = topLevels_.find(event.window);
    if (place == topLevels_.end()) return effects;
    TopLevel& top = place->second;
    const auto held = clientByTopLevel_.find(event.window);
    ClientWindow* moving = held == clientByTopLevel_.end() ? nullptr : client(held->second);
    const auto before = moving ? outerFrame(*moving) : std::nullopt;
    const PixelRect rect{event.x, event.y, event.width + 2 * event.border_width, event.height + 2 * event.border_width};
    const bool moved = rect != top.rect;
    const bool isResized = rect.width != top.rect.width || rect.height != top.rect.height;
    top.rect = rect;
    top.rectEventSequence = sequence;
    top.border = event.border_width;
    top.isOverrideRedirect = event.override_redirect != 0;
    placeInStack(event.window, event.above_sibling);

    if (!moving) return effects;
    // A window manager can animate a frame without resizing the window inside. Margins that are measured during the
    // animation are wrong.
    const bool isFrameExact = moving->topLevel == moving->window || moving->margins == moving->shadow;
    const bool isAnimated = isFrameExact && !settlesAt_ && !hasRoomInside(*moving);
    moving->frameBeforeAnimation = isAnimated ? before : std::nullopt;
    effects.changed = moved && !moving->frameBeforeAnimation;
    if (isResized && !isFrameExact) markStale(*moving, stale::frame);
    if (moved) effects.panelsChanged = moving->strut || moving->partialStrut;
    if (moving->pending) {
        // The server carries out requests in order, but a window manager may still be busy with an earlier request.
        const bool isHandled = manager_.isPresent
                                   ? outerFrame(*moving) == moving->pending->outer
                                   : moving->pending->sequence && isAtOrAfter(sequence, *moving->pending->sequence);
        if (isHandled && outerFrame(*moving) == moving->pending->outer) {
            // The window took the frame, so its earlier refusals do not count.
            moving->refusals = 0;
            moving->frameAtLastRequest.reset();
        }
        if (isHandled) moving->pending.reset();
    }
    return effects;
}

EventEffects WindowModel::applyMapping(xcb_window_t window, bool isMapped, std::uint32_t sequence) {
    EventEffects effects;
    const auto place = topLevels_.find(window);
    if (place == topLevels_.end()) return effects;
    place->second.isMapped = isMapped;
    place->second.mappingEventSequence = sequence;
    const auto held = clientByTopLevel_.find(window);
    ClientWindow* known = held == clientByTopLevel_.end() ? nullptr : client(held->second);
    effects.changed = known != nullptr;
    if (manager_.isPresent) {
        if (!known) return effects;
        const auto change = known->iconification.mappingChangedUnderManager(isMapped);
        // Assumes the new state at once; the next poll reads the property.
        const bool isStateChanged = isMapped ? isMinimized(*known) : change != Iconification::MappingChange::none;
        if (isStateChanged) {
            known->isIconic = known->isHiddenState = !isMapped;
            markStale(*known, stale::state);
        }
        if (change == Iconification::MappingChange::restoreDue) effects.returning.push_back(known->window);
        return effects;
    }
    if (!known) {
        // While the window manager is being replaced, the next poll distinguishes frames from windows.
        if (!isMapped || place->second.isOverrideRedirect || manager_.publishesNoClientList || settlesAt_ ||
            staleManager)
            return effects;
        adoptUnmanaged(window);
        effects.changed = true;
        return effects;
    }
    const auto change = known->iconification.mappingChangedWithoutManager(isMapped, sequence);
    if (change == Iconification::MappingChange::withdrawn && !settlesAt_) {
        effects.panelsChanged = known->strut || known->partialStrut;
        forget(window);
    }
    return effects;
}

/// Handles the event by which a program withdraws an unmapped window.
EventEffects WindowModel::applyWithdrawal(xcb_window_t window) {
    EventEffects effects;
    const ClientWindow* known = client(window);
    const TopLevel* top = topLevel(window);
    if (manager_.isPresent || !known || (top && top->isMapped)) return effects;
    effects.changed = true;
    effects.panelsChanged = known->strut || known->partialStrut;
    forget(window);
    return effects;
}

EventEffects WindowModel::applyReparent(const xcb_reparent_notify_event_t& event) {
    EventEffects effects;
    ClientWindow* moved = client(event.window);
    xcb_window_t newTopLevel = kNoWindow;
    if (event.parent == root_) {
        // Before it ends, a window manager takes its windows out of their frames, and maps iconic windows.
        isReleasingWindows_ |= moved && manager_.isPresent;
        setTopLevel(event.window, {{event.x, event.y, 0, 0}, 0, false, event.override_redirect != 0, {}, {}});
        unknownTopLevels_.push_back(event.window);
    } else {
        // A window manager that starts puts frames around windows before it announces itself.
        const bool getsFrame =
            moved && topLevel(event.parent) && (staleManager || settlesAt_ || manager_.publishesNoClientList);
        if (getsFrame) {
            setTopLevelOf(*moved, kNoWindow);
            forget(event.parent);
        }
        effects = removeTopLevel(event.window);
        moved = client(event.window);
        if (moved && getsFrame) newTopLevel = event.parent;
    }
    if (moved) {
        setTopLevelOf(*moved, newTopLevel);
        markStale(*moved, stale::topLevel | stale::frame);
        effects.changed = true;
    }
    return effects;
}

EventEffects WindowModel::removeTopLevel(xcb_window_t window) {
    EventEffects effects;
    topLevels_.erase(window);
    std::erase(stacking_, window);
    if (window == manager_.checkWindow && window != kNoWindow) effects.changed = staleManager = true;
    const auto held = clientByTopLevel_.find(window);
    if (held == clientByTopLevel_.end()) return effects;
    effects.changed = true;
    ClientWindow* known = client(held->second);
    effects.panelsChanged = known && (known->strut || known->partialStrut);
    if (held->second == window && !manager_.isPresent) {
        forget(window);
    } else if (known) {
        // A frame was destroyed; its window may be in another frame now.
        setTopLevelOf(*known, kNoWindow);
        markStale(*known, stale::topLevel | stale::frame);
    }
    return effects;
}

EventEffects WindowModel::applyFocus(xcb_window_t window, bool gained, std::uint32_t sequence) {
    // A window manager announces the active window a moment after the focus has moved: if KOVA used both, the active
    // window would change back and forth.
    if (manager_.isPresent || !client(window)) return {};
    if (focusEventSequence_ && !isAtOrAfter(sequence, *focusEventSequence_)) return {}; // older than a request of KOVA
    focusEventSequence_ = sequence;
    const xcb_window_t before = activeWindow;
    if (gained) {
        activeWindow = window;
    } else if (activeWindow == window) {
        activeWindow = kNoWindow;
    }
    EventEffects effects;
    effects.changed = activeWindow != before;
    return effects;
}

void WindowModel::placeInStack(xcb_window_t window, xcb_window_t below) {
    const auto place = std::ranges::find(stacking_, window);
    if (place == stacking_.end()) return;
    const xcb_window_t belowNow = place == stacking_.begin() ? kNoWindow : *(place - 1);
    if (belowNow == below) return;
    stacking_.erase(place);
    const auto sibling = std::ranges::find(stacking_, below);
    stacking_.insert(sibling == stacking_.end() ? stacking_.begin() : sibling + 1, window);
}

} // namespace kova::x11
