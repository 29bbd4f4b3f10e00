#include "platform/x11/InputConnection.h"

namespace kova::x11 {

InputConnection::InputConnection(std::unique_ptr<XConnection> connection, const WindowModel& model,
                                 const Calls& calls) :
    connection_(std::move(connection)),
    activeWindow_(*connection_, asked_), keyboard_(*connection_, asked_, calls.tryAgain),
    pointer_(*connection_, asked_, calls.readAgain), handles_(*connection_, model, asked_), readSoon_(calls.readSoon) {}

void InputConnection::read() {
    // Polling for events also reads replies, and collecting replies or flushing also reads events. Repeat until both
    // are handled: the descriptor does not become readable for data that was already read.
    takeEvents(xcb_poll_for_event);
    do {
        do {
            takeReplies();
        } while (takeEvents(xcb_poll_for_queued_event));
    } while (send());
}

/// True when there were any.
bool InputConnection::takeEvents(xcb_generic_event_t* (*next)(xcb_connection_t*)) {
    bool any = false;
    while (const XReply<xcb_generic_event_t> event{next(connection_->get())}) {
        if (!keyboard_.take(*event) && !handles_.take(*event) && !activeWindow_.take(*event)) pointer_.take(*event);
        any = true;
    }
    return any;
}

void InputConnection::takeReplies() {
    while (!asked_.empty() && asked_.front().collect(*connection_)) {
        PendingReplies answered = std::move(asked_.front());
        asked_.pop_front();
        answered.take();
    }
}

bool InputConnection::send() {
    const bool isHandlesDue = handles_.act();
    const bool isPointerDue = pointer_.act();
    const bool isKeyboardDue = keyboard_.act();
    const bool isActiveWindowDue = activeWindow_.act();
    const bool isAnyDue = isHandlesDue || isPointerDue || isKeyboardDue || isActiveWindowDue;
    if (isAnyDue) connection_->flush();
    return isAnyDue;
}

void InputConnection::sendAndReadSoon() {
    if (send()) readSoon_();
}

void InputConnection::followPointer(bool follows) {
    pointer_.follow(follows);
    sendAndReadSoon();
}

void InputConnection::look() {
    pointer_.look();
    sendAndReadSoon();
}

void InputConnection::show(const std::vector<HandlePlace>& places) {
    handles_.show(places);
    readSoon_(); // requests are sent then, after those for the windows beside a divider
}

void InputConnection::askActiveWindow() {
    activeWindow_.ask();
    sendAndReadSoon();
}

void InputConnection::claimKeys(const std::vector<KeyCombination>& combinations) {
    keyboard_.claim(combinations);
    sendAndReadSoon();
}

void InputConnection::listenToKeys(bool listens) {
    keyboard_.listen(listens);
    sendAndReadSoon();
}

void InputConnection::recordKeys(bool records) {
    keyboard_.record(records);
    sendAndReadSoon();
}

void InputConnection::tryRecording() {
    keyboard_.tryRecording();
    sendAndReadSoon();
}

void InputConnection::tryHeldKeys() {
    keyboard_.tryHeld();
    sendAndReadSoon();
}

void InputConnection::windowsChanged(bool haveMoved) {
    if (haveMoved) pointer_.noteMovement();
    handles_.keepInOrder();
    sendAndReadSoon();
}

} // namespace kova::x11
