// The user's hand on this server: the pointer's button, and the handles of dividers. It has a connection of its own, so
// that it is heard at once while the desktop's own rests from programs that change their windows all the time.
// Main thread, with the model guarded; never waits once it is open.
#pragma once

#include "platform/x11/X11DividerHandles.h"
#include "platform/x11/X11PointerWatch.h"

#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace kova::x11 {

class Hand {
  public:
    /// Waits for the server. `lookAgain` has `look` called a little later, `readSoon` has `read` called once the main
    /// thread has done what it is doing.
    Hand(std::unique_ptr<XConnection> connection, const WindowModel& model, std::function<void()> lookAgain,
         std::function<void()> readSoon);

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

    std::vector<PointerNews> takePointerNews() { return pointer_.takeNews(); }
    std::vector<HandleNews> takeHandleNews() { return handles_.takeNews(); }

  private:
    bool takeEvents(xcb_generic_event_t* (*next)(xcb_connection_t*));
    void takeReplies();
    bool send();
    void sendAndReadSoon();

    std::unique_ptr<XConnection> connection_;
    std::deque<Questions> asked_;
    PointerWatch pointer_;
    DividerHandleWindows handles_;
    std::function<void()> readSoon_;
};

} // namespace kova::x11
