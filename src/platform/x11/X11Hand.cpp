#include "platform/x11/X11Hand.h"

namespace kova::x11 {

Hand::Hand(std::unique_ptr<XConnection> connection, const WindowModel& model, const Calls& calls) :
    connection_(std::move(connection)), activeWindow_(*connection_, asked_),
    keyboard_(*connection_, asked_, calls.tryAgain), pointer_(*connection_, asked_, calls.lookAgain),
    handles_(*connection_, model, asked_), readSoon_(calls.readSoon) {}

void Hand::read() {
    // Looking for events also reads answers, and looking for answers or sending also reads events and answers:
    // nothing would wake this thread for what is left lying there.
    takeEvents(xcb_poll_for_event);
    do {
        do {
            takeReplies();
        } while (takeEvents(xcb_poll_for_queued_event));
    } while (send());
}

/// True when there were any.
bool Hand::takeEvents(xcb_generic_event_t* (*next)(xcb_connection_t*)) {
    bool any = false;
    while (const XReply<xcb_generic_event_t> event{next(connection_->get())}) {
        if (!keyboard_.take(*event) && !handles_.take(*event) && !activeWindow_.take(*event)) pointer_.take(*event);
        any = true;
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
    const bool isKeyboardDue = keyboard_.act();
    const bool isActiveWindowDue = activeWindow_.act();
    const bool isAnyDue = isHandlesDue || isPointerDue || isKeyboardDue || isActiveWindowDue;
    if (isAnyDue) connection_->flush();
    return isAnyDue;
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

void Hand::askActiveWindow() {
    activeWindow_.ask();
    sendAndReadSoon();
}

void Hand::claimKeys(const std::vector<KeyCombination>& combinations) {
    keyboard_.claim(combinations);
    sendAndReadSoon();
}

void Hand::listenToKeys(bool listens) {
    keyboard_.listen(listens);
    sendAndReadSoon();
}

void Hand::recordKeys(bool records) {
    keyboard_.record(records);
    sendAndReadSoon();
}

void Hand::tryRecording() {
    keyboard_.tryRecording();
    sendAndReadSoon();
}

void Hand::tryHeldKeys() {
    keyboard_.tryHeld();
    sendAndReadSoon();
}

void Hand::windowsChanged(bool haveMoved) {
    if (haveMoved) pointer_.noteMovement();
    handles_.keepInOrder();
    sendAndReadSoon();
}

} // namespace kova::x11
