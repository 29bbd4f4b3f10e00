// The user's input: the pointer's button, the handles of dividers, keys, and the active window. Uses an X connection of
// its own: reading from the desktop's connection is throttled while windows change continuously, and that must not
// delay input events. Main thread only; the caller holds the mutex of the `WindowModel`. Only the constructor waits for
// the server.
#pragma once

#include "platform/x11/X11ActiveWindowWatch.h"
#include "platform/x11/X11DividerHandles.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11PointerWatch.h"

#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace kova::x11 {

class InputConnection {
  public:
    /// Functions that schedule a call on the main thread.
    struct Calls {
        std::function<void()> scheduleMotionEvents;   // calls `resumeMotionEvents` after a pause
        std::function<void()> scheduleRecordingRetry; // calls `tryRecording` after a pause
        std::function<void()> scheduleRead;           // calls `read` after the work that is already queued
    };
    InputConnection(std::unique_ptr<XConnection> connection, const WindowModel& model, const Calls& calls);

    int descriptor() const { return xcb_get_file_descriptor(connection_->get()); }
    bool isLost() const { return connection_->isLost(); }

    /// Reads and handles the events that have arrived.
    void read();
    void followPointer(bool follows);
    bool isFollowingPointer() const { return pointer_.isFollowing(); }
    /// Selects motion events again after a pause.
    void resumeMotionEvents();
    void showHandles(const std::vector<HandlePlace>& places);
    bool hasMisplacedHandles() const { return handles_.isMisplaced(); }
    /// Call when the stacking order or frames may have changed.
    void windowsChanged(bool haveMoved);

    /// Queries which window is active; call after a change of the window manager.
    void queryActiveWindow();
    std::optional<xcb_window_t> takeActiveWindow() { return activeWindow_.takeNewest(); }

    const Keyboard& keyboard() const { return keyboard_; }
    /// Sets the combinations to grab while `listenToKeys` is on.
    void claimKeys(const std::vector<KeyCombination>& combinations);
    /// Grabs the combinations and reports their presses, or releases the combinations.
    void listenToKeys(bool listens);
    /// Grabs the whole keyboard to record a shortcut, or releases the keyboard.
    void recordKeys(bool records);
    void tryRecording();
    /// Tries again to grab the combinations that another program had grabbed.
    void retryGrabs();

    std::vector<KeyboardEvent> takeKeyboardEvents() { return keyboard_.takeEvents(); }
    std::vector<RootPointerEvent> takePointerEvents() { return pointer_.takeEvents(); }
    std::vector<RootHandleEvent> takeHandleEvents() { return handles_.takeEvents(); }

  private:
    bool handleEvents(xcb_generic_event_t* (*next)(xcb_connection_t*));
    void takeReplies();
    bool send();
    void sendAndScheduleRead();

    std::unique_ptr<XConnection> connection_;
    std::deque<PendingReplies> pendingReplies_;
    ActiveWindowWatch activeWindow_;
    Keyboard keyboard_;
    PointerWatch pointer_;
    DividerHandleWindows handles_;
    std::function<void()> scheduleRead_;
};

} // namespace kova::x11
