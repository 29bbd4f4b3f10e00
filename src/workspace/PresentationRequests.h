// What was last requested of each window's place on or off the screen, and of its being maximized, until a poll
// confirms it. A poll may have read a window before the request, and a desktop may carry it out late; until then the
// request counts, so that every operation starts from the state that the one before it has fixed.
#pragma once

#include "support/MainQueue.h"
#include "windowing/ManagedWindow.h"

#include <map>
#include <string>
#include <vector>

namespace kova {

/// What a window is asked to be. `hidden` says nothing about whether it is minimized as well.
enum class WindowPresentation { shown, minimized, hidden };

class PresentationRequests {
  public:
    /// How long a request counts that no poll confirms; then what the desktop says does.
    static constexpr Seconds kValidity{1};

    /// The window follows at once; the request is remembered. `now` is an uptime.
    void request(ManagedWindow& window, WindowPresentation presentation, Seconds now);
    /// The same for being maximized, which is independent of being shown.
    void requestMaximized(ManagedWindow& window, bool maximized, Seconds now);
    /// Puts the requested state in place of what a poll that began at `begun` (uptime) has read. Requests that this
    /// poll confirms, that are too old to wait for, or whose window is on another Space are dropped.
    void overrule(std::vector<ManagedWindow>& windows, Seconds begun);
    /// Whether the window was asked to come back and was not seen on the screen since.
    bool isComingBack(const std::string& windowID) const;
    /// Whether any request is neither confirmed nor too old: time matters.
    bool isWaiting() const { return !presentations_.empty() || !maximizations_.empty(); }
    void rename(const std::string& windowID, const std::string& newID);
    void clear();

  private:
    template <class State>
    struct Request {
        State state{};
        Seconds requestedAt{}; // uptime
    };
    /// The newest of each window, by its id.
    template <class State>
    using Requests = std::map<std::string, Request<State>>;
    template <class State>
    static void overrule(Requests<State>& requests, std::vector<ManagedWindow>& windows, Seconds begun);

    Requests<WindowPresentation> presentations_;
    Requests<bool> maximizations_;
};

} // namespace kova
