// The user's hand: the pointer's button, and the handles of dividers.
#include "platform/x11/X11Parts.h"

namespace kova {

using namespace x11;

namespace {

/// How often a held pointer is looked at.
constexpr Seconds kLookInterval{1.0 / 60};

} // namespace

Subscription X11Desktop::observePointer(std::function<void(const PointerEvent&)> observer) {
    const std::lock_guard lock(parts_->mutex);
    auto subscription = parts_->pointerObservers.add(std::move(observer));
    parts_->pointerWatch.follow(true);
    parts_->sendSoon();
    return subscription;
}

void X11Desktop::showHandles(const std::vector<DividerHandle>& handles) {
    const std::lock_guard lock(parts_->mutex);
    parts_->handles = handles;
    parts_->placeHandles();
    parts_->sendSoon();
}

Subscription X11Desktop::observeHandles(std::function<void(const DividerHandleEvent&)> observer) {
    return parts_->handleObservers.add(std::move(observer));
}

void X11Desktop::Parts::placeHandles() {
    std::vector<HandlePlace> places;
    for (const DividerHandle& handle : handles) {
        const CGRect gap = flipped(handle.frame, arrangement.firstRect.height);
        places.push_back(placeOfHandle(handle.id, onRoot(gap), handle.axis));
    }
    handleWindows.show(places);
    mustFlush = true;
}

bool X11Desktop::Parts::takeByHand(const xcb_generic_event_t& event) {
    return handleWindows.take(event) || pointerWatch.take(event);
}

void X11Desktop::Parts::actByHand() {
    mustFlush |= handleWindows.act();
    mustFlush |= pointerWatch.act();
}

void X11Desktop::Parts::lookAtPointerAgain() {
    queue.after(kLookInterval, lifetime.guard([this] {
        {
            const std::lock_guard lock(mutex);
            pointerWatch.look();
        }
        settle({});
    }));
}

/// Screen space of what the server tells in root coordinates.
CGPoint X11Desktop::Parts::onScreen(int x, int y) const {
    const PixelRect& first = arrangement.firstRect;
    return flipped(CGPoint{static_cast<double>(x - first.x), static_cast<double>(y - first.y)}, first.height);
}

/// Once whoever acts on it may read and write windows again.
void X11Desktop::Parts::tellOfHand() {
    const std::lock_guard lock(mutex);
    for (const PointerNews& news : pointerWatch.takeNews()) {
        const PointerEvent event{news.kind, onScreen(news.x, news.y), news.isShiftDown};
        queue.post(lifetime.guard([this, event] { pointerObservers.notify(event); }));
    }
    for (const HandleNews& news : handleWindows.takeNews()) {
        const DividerHandleEvent event{news.kind, news.id, onScreen(news.x, news.y)};
        queue.post(lifetime.guard([this, event] { handleObservers.notify(event); }));
    }
    if (!pointerWatch.isFollowing() || pointerObservers.hasAny()) return;
    pointerWatch.follow(false);
    sendSoon();
}

} // namespace kova
