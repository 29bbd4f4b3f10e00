// Takes windows off the screen and brings them back: by asking the window
// manager, or, without one, by unmapping and mapping them. Windows of hidden
// applications, and all that were unmapped, are kept on record. Requests are
// buffered, not sent. Main thread, guarded like the model.
#pragma once

#include "platform/x11/HiddenWindows.h"
#include "platform/x11/KeyboardKeeper.h"
#include "platform/x11/RequestQueue.h"

#include <functional>
#include <utility>
#include <vector>

namespace kova::x11 {

class WindowHider {
  public:
    /// Calls `work` after a pause, with the model guarded.
    using Later = std::function<void(Seconds pause, std::function<void()> work)>;
    /// `file` holds the record; empty: it is kept in memory only.
    WindowHider(const XConnection& connection, WindowModel& model, RequestQueue& requests, KeyboardKeeper& keyboard,
                const MainQueue& clock, std::string file, Later later);

    // Requests
    /// With the dialogs of the window. One of a hidden application stays away
    /// when the others come back.
    void minimize(ClientWindow& client);
    /// With its dialogs; one of a hidden application comes back when the others
    /// do, and not before.
    void restore(ClientWindow& client);
    /// The windows of the process on the current desktop; false when there is
    /// none to hide.
    bool hide(pid_t process);
    bool unhide(pid_t process);
    void bringAllBack();
    /// Another window manager, or none any more: what was taken away under the
    /// one before comes back.
    void managerChanged();
    /// Windows that an agent before this one took away; they stay away while they
    /// wait to be settled.
    void takeOver(const std::vector<HiddenWindow>& left, bool waitsToSettle);

    // Events
    /// `returning` have left as asked and were wanted back by then.
    void follow(const std::vector<xcb_window_t>& returning);
    /// Unmaps the windows that are to leave, together, after one write of the
    /// record.
    void sendUnmaps();
    /// Requests were buffered since this was last asked.
    bool hasUnsent() { return std::exchange(hasUnsent_, false); }

    // Reading
    HiddenWindows& record() { return record_; }
    const HiddenWindows& record() const { return record_; }
    bool isApplicationHidden(pid_t process) const { return record_.isApplicationHidden(process, model_); }
    /// A hidden application's windows are not minimized: they come back with it.
    bool readsAsMinimized(const ClientWindow& client, Seconds now) const;
    /// A window manager needs a moment to bring a window back; until then it is
    /// not told to be away.
    bool isBelievedBack(const ClientWindow& client, Seconds now) const;
    bool isAnyReturning() const;
    /// Whether a window has been asked to leave and has not left yet.
    bool isAnyLeaving() const;

  private:
    HiddenWindow recordOf(const ClientWindow& client, TakenAway how) const;
    std::vector<ClientWindow*> dialogsToTakeAlong(const ClientWindow& client);
    void takeAway(ClientWindow& client);
    void bringBack(ClientWindow& client);
    void bringBack(xcb_window_t window);
    void mapAgain(xcb_window_t window);
    void setIconicState(xcb_window_t window, std::uint32_t state);
    void remindOfReturning();
    void writeRecordSoon();

    const XConnection& connection_;
    WindowModel& model_;
    RequestQueue& requests_;
    KeyboardKeeper& keyboard_;
    const MainQueue& clock_;
    Later later_;
    HiddenWindows record_;
    std::vector<xcb_window_t> leaving_; // to be unmapped with the next requests that are sent
    Seconds lastReminder_{};
    bool isRecordDue_ = false; // a little later
    bool hasUnsent_ = false;
};

} // namespace kova::x11
