// The last request for each window to be shown, hidden, minimized or maximized. A poll may have read the window before
// the request, and a desktop may carry a request out late. Until a poll confirms the request, the requested state
// replaces the state that polls read, so that every operation starts from the state that the previous one requested.
#pragma once

#include "support/MainQueue.h"
#include "windowing/ManagedWindow.h"

#include <map>
#include <string>
#include <vector>

namespace kova {

/// The requested state of a window. A `hidden` window may be minimized as well.
enum class WindowPresentation { shown, minimized, hidden };

class PresentationRequests {
  public:
    /// A request that no poll has confirmed within this time is dropped; the state that polls read counts again.
    static constexpr Seconds kValidity{1};

    /// Changes the window's state at once and remembers the request. `now` is an uptime.
    void request(ManagedWindow& window, WindowPresentation presentation, Seconds now);
    /// Like `request`, but maximizes the window or ends that state. A window can have one request of each kind.
    void requestMaximized(ManagedWindow& window, bool maximized, Seconds now);
    /// Replaces the states in `windows` by the requested states. `windows` are the result of a poll that began at
    /// `begun` (uptime). Drops requests that this poll confirms, that have timed out, or whose window is elsewhere.
    void overrule(std::vector<ManagedWindow>& windows, Seconds begun);
    /// Whether the window was requested to be shown, and no poll has confirmed that yet.
    bool isShowRequested(const WindowID& windowID) const;
    /// Whether any request is neither confirmed nor timed out.
    bool isWaiting() const { return !presentations_.empty() || !maximizations_.empty(); }
    void rename(const WindowID& windowID, const WindowID& newID);
    void clear();

  private:
    template <class State>
    struct Request {
        State state{};
        Seconds requestedAt{}; // uptime
    };
    /// The newest request of each window, by window id.
    template <class State>
    using Requests = std::map<WindowID, Request<State>>;
    template <class State>
    static void overrule(Requests<State>& requests, std::vector<ManagedWindow>& windows, Seconds begun);

    Requests<WindowPresentation> presentations_;
    Requests<bool> maximizations_;
};

} // namespace kova
