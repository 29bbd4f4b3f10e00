// Hides and shows windows: by requests to the window manager or, without one, by unmapping and mapping them. Windows of
// hidden applications, and all unmapped windows, are recorded in a file. Requests are buffered, not sent. Main thread,
// guarded like the model.
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
    /// Calls `work` after a pause, with the lock held.
    using Later = std::function<void(Seconds pause, std::function<void()> work)>;
    /// `file` holds the record; if empty, the record is in memory only.
    WindowHider(const XConnection& connection, WindowModel& model, RequestQueue& requests, KeyboardKeeper& keyboard,
                const MainQueue& clock, std::string file, Later later);

    // Requests
    /// With the window's dialogs. A window of a hidden application stays minimized when the application is shown.
    void minimize(ClientWindow& client);
    /// With the window's dialogs. A window of a hidden application is shown together with the application, not before.
    void restore(ClientWindow& client);
    /// Hides the process's windows on the current desktop; false if there is none.
    bool hide(pid_t process);
    bool unhide(pid_t process);
    void bringAllBack();
    /// Call when the window manager has changed or ended: windows that were hidden under the former one are shown.
    void managerChanged();
    /// Takes over windows that a former agent hid; with `waitsToSettle` they stay hidden until `settle`.
    void takeOver(const std::vector<HiddenWindow>& left, bool waitsToSettle);

    // Events
    /// `returning`: windows that have left as requested, and whose return is requested by now.
    void follow(const std::vector<xcb_window_t>& returning);
    /// Unmaps all windows that are to leave, after one write of the record.
    void sendUnmaps();
    /// Whether requests were buffered since the last call.
    bool hasUnsent() { return std::exchange(hasUnsent_, false); }

    // Reading
    HiddenWindows& record() { return record_; }
    const HiddenWindows& record() const { return record_; }
    bool isApplicationHidden(pid_t process) const { return record_.isApplicationHidden(process, model_); }
    /// A hidden application's windows do not count as minimized: they are shown with it.
    bool readsAsMinimized(const ClientWindow& client, Seconds now) const;
    /// True for a moment after a window's return was requested, since the window manager takes time to map it.
    bool isBelievedBack(const ClientWindow& client, Seconds now) const;
    bool isAnyReturning() const;
    /// Whether a window was requested to leave and has not left yet.
    bool isAnyLeaving() const;

  private:
    HiddenWindow recordOf(const ClientWindow& client, TakenAway how) const;
    std::vector<ClientWindow*> dialogsOf(const ClientWindow& client);
    bool leavesToManager(const ClientWindow& dialog) const;
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
    std::vector<xcb_window_t> leaving_; // to be unmapped at the next flush
    Seconds lastReminder_{};
    bool isRecordDue_ = false; // a delayed write is scheduled
    bool hasUnsent_ = false;
};

} // namespace kova::x11
