// The user's input on this server: the pointer's button, the handles of dividers, keys, and the window that has the
// keyboard. It has a connection of its own, so that it is heard at once while the desktop's own connection rests from
// programs that change their windows all the time. Main thread, with the model guarded; never waits once it is open.
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
    /// What the main thread is to do later.
    struct Calls {
        std::function<void()> lookAgain; // `look`, in a while
        std::function<void()> tryAgain;  // `tryRecording`, in a while
        std::function<void()> readSoon;  // `read`, once it has done what it is doing
    };
    /// Waits for the server.
    InputConnection(std::unique_ptr<XConnection> connection, const WindowModel& model, const Calls& calls);

    int descriptor() const { return xcb_get_file_descriptor(connection_->get()); }
    bool isLost() const { return connection_->isLost(); }

    /// Takes in what the server has told and acts on it.
    void read();
    void followPointer(bool follows);
    bool isFollowingPointer() const { return pointer_.isFollowing(); }
    void look();
    void show(const std::vector<HandlePlace>& places);
    bool hasMisplacedHandles() const { return handles_.isMisplaced(); }
    /// Windows may be stacked otherwise than before, or have moved.
    void windowsChanged(bool haveMoved);

    /// Another window manager may name another window.
    void askActiveWindow();
    std::optional<xcb_window_t> takeActiveWindow() { return activeWindow_.takeNews(); }

    const Keyboard& keyboard() const { return keyboard_; }
    void claimKeys(const std::vector<KeyCombination>& combinations);
    void listenToKeys(bool listens);
    void recordKeys(bool records);
    void tryRecording();
    /// Another program may have given up keys that it held.
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
