// The user's input: the pointer's button, the handles of dividers, keys, and the active window. It has a connection of
// its own, so that its events are handled at once while the desktop's connection pauses because programs change their
// windows all the time. Main thread, with the model guarded; never waits once it is open.
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
        std::function<void()> readSoon;  // `read`, after the present work
    };
    /// Waits for the server.
    InputConnection(std::unique_ptr<XConnection> connection, const WindowModel& model, const Calls& calls);

    int descriptor() const { return xcb_get_file_descriptor(connection_->get()); }
    bool isLost() const { return connection_->isLost(); }

    /// Reads and handles the events that have arrived.
    void read();
    void followPointer(bool follows);
    bool isFollowingPointer() const { return pointer_.isFollowing(); }
    void look();
    void show(const std::vector<HandlePlace>& places);
    bool hasMisplacedHandles() const { return handles_.isMisplaced(); }
    /// Call when the stacking order or frames may have changed.
    void windowsChanged(bool haveMoved);

    /// Requests the active window; call after a change of the window manager.
    void askActiveWindow();
    std::optional<xcb_window_t> takeActiveWindow() { return activeWindow_.takeNews(); }

    const Keyboard& keyboard() const { return keyboard_; }
    void claimKeys(const std::vector<KeyCombination>& combinations);
    void listenToKeys(bool listens);
    void recordKeys(bool records);
    void tryRecording();
    /// Tries again to grab combinations that another program held.
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
