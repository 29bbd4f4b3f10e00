// Hides and shows windows: by requests to the window manager or, without a window manager, by unmapping and mapping the
// windows. Windows of hidden applications, and all windows that KOVA unmaps, are recorded in a file. Requests are
// buffered, not sent. Main thread, with the model's mutex held.
#pragma once

#include "platform/x11/FocusKeeper.h"
#include "platform/x11/HiddenWindows.h"
#include "platform/x11/RequestQueue.h"

#include <functional>
#include <utility>
#include <vector>

namespace kova::x11 {

class WindowHider {
  public:
    /// Calls `work` after a pause, with the lock held.
    using CallLater = std::function<void(Seconds pause, std::function<void()> work)>;
    /// `file` holds the record; if empty, the record is in memory only.
    WindowHider(const XConnection& connection, WindowModel& model, RequestQueue& requests, FocusKeeper& focusKeeper,
                const MainQueue& clock, std::string file, CallLater callLater);

    // Requests
    /// Minimizes the window and its dialogs. If its application is hidden, the window stays minimized when the
    /// application is shown.
    void minimize(ClientWindow& client);
    /// Restores the window and its dialogs. If its application is hidden, the window is shown together with the
    /// application.
    void restore(ClientWindow& client);
    /// Hides the application's windows on the current desktop; false if there is none.
    bool hide(pid_t process);
    /// Shows the windows that were hidden with the application; false if there is none.
    bool unhide(pid_t process);
    void showAll();
    /// Activates the windows that have not returned yet. A window manager that started anew may keep a minimized window
    /// mapped in a frame that is not mapped. Then a request to map the window has no effect, but activating restores
    /// it.
    void activateReturning();
    /// Call when the window manager has changed or ended: shows the windows that were hidden under the former one.
    void managerChanged();
    /// Takes over the windows that a former agent hid; shows them unless `staysHidden`.
    void takeOver(const std::vector<HiddenWindow>& leftover, bool staysHidden);

    // Events
    /// Call after events. `returning`: windows that were minimized as requested, and that KOVA requested to restore
    /// meanwhile.
    void follow(const std::vector<xcb_window_t>& returning);
    /// Writes the record, and then unmaps all windows for which that is due.
    void sendUnmaps();
    /// True if requests were buffered since the last call.
    bool hasUnsent() { return std::exchange(hasUnsent_, false); }

    // Reading
    HiddenWindows& record() { return record_; }
    const HiddenWindows& record() const { return record_; }
    bool isApplicationHidden(pid_t process) const { return record_.isApplicationHidden(process, model_); }
    /// Windows that were hidden with their application do not count as minimized: they are shown together with it.
    bool readsAsMinimized(const ClientWindow& client, Seconds now) const;
    /// True for a moment after restoring was requested, since the window manager takes time to map the window.
    bool countsAsRestored(const ClientWindow& client, Seconds now) const;
    /// True if some window must be mapped once the window manager has minimized it.
    bool isAnyRestoreDue() const;
    /// True if some window is still on the screen although KOVA has hidden its application or unmapped the window.
    bool isAnyHidePending() const;

  private:
    HiddenWindow recordOf(const ClientWindow& client, HiddenBy how) const;
    std::vector<ClientWindow*> dialogsOf(const ClientWindow& client);
    bool isMinimizedByManager(const ClientWindow& dialog) const;
    void hideWindow(ClientWindow& client);
    void showWindow(ClientWindow& client);
    void showWindow(xcb_window_t window);
    void mapAgain(xcb_window_t window);
    void restoreOnOtherDesktop(ClientWindow& client);
    void setIconicState(xcb_window_t window, std::uint32_t state);
    void repeatMapRequests();
    void writeRecordSoon();

    const XConnection& connection_;
    WindowModel& model_;
    RequestQueue& requests_;
    FocusKeeper& focusKeeper_;
    const MainQueue& clock_;
    CallLater callLater_;
    HiddenWindows record_;
    std::vector<xcb_window_t> toUnmap_; // at the next flush
    Seconds lastRepetition_{};
    bool isRecordDue_ = false; // a delayed write is scheduled
    bool hasUnsent_ = false;
};

} // namespace kova::x11
