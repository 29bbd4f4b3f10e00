#include "platform/x11/InputConnection.h"

namespace kova::x11 {

InputConnection::InputConnection(std::unique_ptr<XConnection> connection, const WindowModel& model,
                                 const Calls& calls) :
    connection_(std::move(connection)),
    activeWindow_(*connection_, pendingReplies_),
    keyboard_(*connection_, pendingReplies_, calls.scheduleRecordingRetry),
    pointer_(*connection_, pendingReplies_, calls.scheduleMotionEvents), handles_(*connection_, model, pendingReplies_),
    scheduleRead_(calls.scheduleRead) {}

void InputConnection::read() {
    // Polling for events also reads replies, and collecting replies or flushing also reads events. Repeat until both
    // are handled: the descriptor does not become readable for data that was already read.
    handleEvents(xcb_poll_for_event);
    do {
        do {
            takeReplies();
        } while (handleEvents(xcb_poll_for_queued_event));
    } while (send());
}

/// True if there were events.
bool InputConnection::handleEvents(xcb_generic_event_t* (*next)(xcb_connection_t*)) {
    bool any = false;
    while (const XReply<xcb_generic_event_t> event{next(connection_->get())}) {
        if (!keyboard_.take(*event) && !handles_.take(*event) && !activeWindow_.take(*event)) pointer_.take(*event);
        any = true;
    }
    return any;
}

void InputConnection::takeReplies() {
    while (!pendingReplies_.empty() && pendingReplies_.front().collect(*connection_)) {
        PendingReplies batch = std::move(pendingReplies_.front());
        pendingReplies_.pop_front();
        batch.take();
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

void InputConnection::sendAndScheduleRead() {
    if (send()) scheduleRead_();
}

void InputConnection::followPointer(bool follows) {
    pointer_.follow(follows);
    sendAndScheduleRead();
}

void InputConnection::resumeMotionEvents() {
    pointer_.resumeMotionEvents();
    sendAndScheduleRead();
}

void InputConnection::showHandles(const std::vector<HandlePlace>& places) {
    handles_.show(places);
    scheduleRead_(); // sends the requests, after the requests that place the windows beside a divider
}

void InputConnection::queryActiveWindow() {
    activeWindow_.scheduleQuery();
    sendAndScheduleRead();
}

void InputConnection::claimKeys(const std::vector<KeyCombination>& combinations) {
    keyboard_.claim(combinations);
    sendAndScheduleRead();
}

void InputConnection::listenToKeys(bool listens) {
    keyboard_.listen(listens);
    sendAndScheduleRead();
}

void InputConnection::recordKeys(bool records) {
    keyboard_.record(records);
    sendAndScheduleRead();
}

void InputConnection::tryRecording() {
    keyboard_.tryRecording();
    sendAndScheduleRead();
}

void InputConnection::retryGrabs() {
    keyboard_.retryGrabs();
    sendAndScheduleRead();
}

void InputConnection::windowsChanged(bool haveMoved) {
    if (haveMoved) pointer_.noteMovement();
    handles_.keepInOrder();
    sendAndScheduleRead();
}

} // namespace kova::x11
