// The last request for each window to be shown, hidden, minimized or maximized, until a poll confirms it. A poll may
// have read a window before the request, and a desktop may carry the request out late; until then it counts, so that
// every operation starts from the state that the previous one requested.
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
    /// How long a request counts without a confirmation; then the desktop's state does.
    static constexpr Seconds kValidity{1};

    /// Changes the window's state at once and remembers the request. `now` is an uptime.
    void request(ManagedWindow& window, WindowPresentation presentation, Seconds now);
    /// Remembers a request to maximize or not, which is independent of the other states.
    void requestMaximized(ManagedWindow& window, bool maximized, Seconds now);
    /// Replaces the states in `windows`, which a poll has read that began at `begun` (uptime), by the requested states.
    /// Drops requests that this poll confirms, that have timed out, or whose window is on another Space.
    void overrule(std::vector<ManagedWindow>& windows, Seconds begun);
    /// Whether the window was requested to be shown, and no poll has confirmed that yet.
    bool isComingBack(const WindowID& windowID) const;
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
    /// The newest of each window, by its id.
    template <class State>
    using Requests = std::map<WindowID, Request<State>>;
    template <class State>
    static void overrule(Requests<State>& requests, std::vector<ManagedWindow>& windows, Seconds begun);

    Requests<WindowPresentation> presentations_;
    Requests<bool> maximizations_;
};

} // namespace kova
