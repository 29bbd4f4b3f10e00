// The user's input: the pointer's button, the handles of dividers, keys, and the active window. Uses an X connection of
// its own: reading from the desktop's connection is throttled while windows change continuously, and input events must
// not be delayed by that. Main thread only; the caller holds the mutex of the `WindowModel`.
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
    /// Schedules calls on the main thread.
    struct Calls {
        std::function<void()> readAgain; // `look`, after a pause
        std::function<void()> tryAgain;  // `tryRecording`, after a pause
        std::function<void()> readSoon;  // `read`, after the work that is already queued
    };
    /// Waits for the server; no other function does.
    InputConnection(std::unique_ptr<XConnection> connection, const WindowModel& model, const Calls& calls);

    int descriptor() const { return xcb_get_file_descriptor(connection_->get()); }
    bool isLost() const { return connection_->isLost(); }

    /// Reads and handles the events that have arrived.
    void read();
    void followPointer(bool follows);
    bool isFollowingPointer() const { return pointer_.isFollowing(); }
    /// Selects motion events again after a pause.
    void look();
    void show(const std::vector<HandlePlace>& places);
    bool hasMisplacedHandles() const { return handles_.isMisplaced(); }
    /// Call when the stacking order or frames may have changed.
    void windowsChanged(bool haveMoved);

    /// Queries which window is active; call after a change of the window manager.
    void askActiveWindow();
    std::optional<xcb_window_t> takeActiveWindow() { return activeWindow_.takeNews(); }

    const Keyboard& keyboard() const { return keyboard_; }
    /// Grabs these combinations, and releases all others.
    void claimKeys(const std::vector<KeyCombination>& combinations);
    /// Whether there are observers of the keys; combinations are grabbed only then.
    void listenToKeys(bool listens);
    /// Whether the whole keyboard is grabbed, to record the next combination.
    void recordKeys(bool records);
    void tryRecording();
    /// Tries again to grab the combinations that another program had grabbed.
    void tryHeldKeys();

    std::vector<KeyNews> takeKeyNews() { return keyboard_.takeNews(); }
    std::vector<PointerNews> takePointerNews() { return pointer_.takeNews(); }
    std::vector<HandleNews> takeHandleNews() { return handles_.takeNews(); }

  private:
    bool takeEvents(xcb_generic_event_t* (*next)(xcb_connection_t*));
    void takeReplies();
    bool send();
    void sendAndReadSoon();

    std::unique_ptr<XConnection> connection_;
    std::deque<PendingReplies> asked_;
    ActiveWindowWatch activeWindow_;
    Keyboard keyboard_;
    PointerWatch pointer_;
    DividerHandleWindows handles_;
    std::function<void()> readSoon_;
};

} // namespace kova::x11
