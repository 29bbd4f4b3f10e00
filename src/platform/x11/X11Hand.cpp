#include "platform/x11/X11Hand.h"

namespace kova::x11 {

Hand::Hand(std::unique_ptr<XConnection> connection, const WindowModel& model, std::function<void()> lookAgain,
           std::function<void()> readSoon) :
    connection_(std::move(connection)),
    pointer_(*connection_, asked_, std::move(lookAgain)), handles_(*connection_, model, asked_),
    readSoon_(std::move(readSoon)) {}

void Hand::read() {
    // Looking for answers, and sending, also reads events, for which nothing would wake this thread.
    do {
        takeReplies();
        send();
    } while (takeEvents());
}

/// True when there were any.
bool Hand::takeEvents() {
    bool any = false;
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_->get())}) {
        any |= handles_.take(*event) || pointer_.take(*event);
    }
    return any;
}

void Hand::takeReplies() {
    while (!asked_.empty() && asked_.front().collect(*connection_)) {
        Questions answered = std::move(asked_.front());
        asked_.pop_front();
        answered.take();
    }
}

bool Hand::send() {
    const bool isHandlesDue = handles_.act();
    const bool isPointerDue = pointer_.act();
    if (isHandlesDue || isPointerDue) connection_->flush();
    return isHandlesDue || isPointerDue;
}

void Hand::sendAndReadSoon() {
    if (send()) readSoon_();
}

void Hand::followPointer(bool follows) {
    pointer_.follow(follows);
    sendAndReadSoon();
}

void Hand::look() {
    pointer_.look();
    sendAndReadSoon();
}

void Hand::show(const std::vector<HandlePlace>& places) {
    handles_.show(places);
    readSoon_(); // what is sent then; the windows beside a divider go first
}

void Hand::windowsChanged(bool haveMoved) {
    if (haveMoved) pointer_.noteMovement();
    handles_.keepInOrder();
    sendAndReadSoon();
}

} // namespace kova::x11
