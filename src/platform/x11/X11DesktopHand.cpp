// The user's hands: the pointer's button, the handles of dividers, and how all of that is read.
#include "platform/x11/X11Parts.h"

namespace kova {

using namespace x11;

namespace {

/// How often a held pointer is looked at.
constexpr Seconds kLookInterval{1.0 / 60};

} // namespace

Subscription X11Desktop::observePointer(std::function<void(const PointerEvent&)> observer) {
    auto subscription = parts_->pointerObservers.add(std::move(observer));
    const std::lock_guard lock(parts_->mutex);
    if (parts_->hand) parts_->hand->followPointer(true);
    return subscription;
}

void X11Desktop::showHandles(const std::vector<DividerHandle>& handles) {
    const std::lock_guard lock(parts_->mutex);
    parts_->handles = handles;
    parts_->placeHandles();
}

Subscription X11Desktop::observeHandles(std::function<void(const DividerHandleEvent&)> observer) {
    return parts_->handleObservers.add(std::move(observer));
}

void X11Desktop::Parts::openHand() {
    // Without a second connection there is a desktop all the same.
    auto second = XConnection::open(connection->displayName());
    if (auto* opened = std::get_if<std::unique_ptr<XConnection>>(&second)) {
        hand = std::make_unique<Hand>(std::move(*opened), model,
                                      Hand::Calls{.lookAgain = [this] { lookAtPointerAgain(); },
                                                  .tryAgain = [this] { tryRecordingAgain(); },
                                                  .readSoon = [this] { readHandSoon(); }});
    }
}

void X11Desktop::Parts::listenToHand() {
    if (hand) watchingHand = watch(hand->descriptor(), [this] { readHand(); });
}

void X11Desktop::Parts::readHand() {
    {
        const std::lock_guard lock(mutex);
        hand->read();
    }
    tellOfHand();
    callWhenChanged();
    if (hand->isLost()) watchingHand.reset();
}

void X11Desktop::Parts::readHandSoon() {
    if (std::exchange(isHandReadDue, true)) return;
    queue.post(lifetime.guard([this] {
        isHandReadDue = false;
        readHand();
    }));
}

void X11Desktop::Parts::placeHandles() {
    if (!hand) return;
    std::vector<HandlePlace> places;
    for (const DividerHandle& handle : handles) {
        places.push_back(placeOfHandle(handle.id, handle.frame, handle.axis, arrangement.space));
    }
    hand->show(places);
}

void X11Desktop::Parts::lookAtPointerAgain() {
    queue.after(kLookInterval, lifetime.guard([this] {
        const std::lock_guard lock(mutex);
        hand->look();
    }));
}

/// Once whoever acts on it may read and write windows again.
void X11Desktop::Parts::tellOfHand() {
    const std::lock_guard lock(mutex);
    if (const auto active = hand->takeActiveWindow()) takeActiveWindow(*active);
    for (const PointerNews& news : hand->takePointerNews()) {
        const PointerEvent event{news.kind, arrangement.space.pointOnScreen(news.x, news.y), news.isShiftDown};
        queue.post(lifetime.guard([this, event] { pointerObservers.notify(event); }));
    }
    for (const HandleNews& news : hand->takeHandleNews()) {
        const DividerHandleEvent event{news.kind, news.id, arrangement.space.pointOnScreen(news.x, news.y)};
        queue.post(lifetime.guard([this, event] { handleObservers.notify(event); }));
    }
    for (KeyNews& news : hand->takeKeyNews()) {
        queue.post(lifetime.guard([this, news = std::move(news)] { tellOf(news); }));
    }
    if (hand->isFollowingPointer() && !pointerObservers.hasAny()) hand->followPointer(false);
}

} // namespace kova
