// Holds the windows that KOVA minimized and that are still minimized. When the agent ends, it restores them. The next
// agent minimizes them again when it restores the session.
#pragma once

#include "support/MainQueue.h"
#include "windowing/ManagedWindow.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kova {

class MinimizedWindows {
  public:
    /// Records that KOVA has requested to minimize the window. All times of this class are uptimes.
    void note(const WindowID& windowID, Seconds now);
    /// Forgets windows that have closed, are not minimized any more, or have not been minimized in time; not at once,
    /// since a new window manager may show a window for a moment.
    void onPoll(const std::vector<ManagedWindow>& live, Seconds now);
    void rename(const WindowID& windowID, const WindowID& newID);
    bool contains(const WindowID& windowID) const { return minimized_.contains(windowID); }
    /// Forgets all windows and returns them; the caller restores them.
    std::vector<WindowID> takeAll();

    /// Expects the return of a window that the former agent had minimized. That agent restored the window when it
    /// ended, and the desktop may need until `deadline` to show the window at its former `frame`.
    void expectBack(const WindowID& windowID, const std::optional<CGRect>& frame, Seconds deadline);
    bool isExpecting() const { return !expected_.empty(); }
    /// Returns the expected windows that are visible at their former frame and not focused; the caller minimizes them
    /// again. An expected window that is minimized counts as minimized by this agent.
    std::vector<WindowID> takeReturned(const std::vector<ManagedWindow>& live,
                                       const std::optional<WindowID>& focusedWindowID, Seconds now);

  private:
    struct Minimized {
        Seconds since{};
        bool isConfirmed = false; // by a poll
        std::optional<Seconds> notMinimizedSince;
    };
    struct Expected {
        std::optional<CGRect> frame; // window-service space
        Seconds deadline{};
    };

    std::map<WindowID, Minimized> minimized_;
    std::map<WindowID, Expected> expected_;
};

} // namespace kova
