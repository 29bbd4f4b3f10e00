// The windows that KOVA minimized and that are still minimized. They are restored when the agent ends, and minimized
// again by the agent that restores the session.
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
    /// Times are uptimes.
    void note(const WindowID& windowID, Seconds now);
    /// Forgets windows that have closed or are not minimized any more.
    void follow(const std::vector<ManagedWindow>& live, Seconds now);
    void rename(const WindowID& windowID, const WindowID& newID);
    bool contains(const WindowID& windowID) const { return minimized_.contains(windowID); }
    /// Returns and forgets all windows; the caller restores them.
    std::vector<WindowID> takeAll();

    /// Expects a window that the former agent had minimized. That agent restored the window to `frame` when it ended.
    /// The window may take until `deadline` (uptime) to appear there.
    void expectBack(const WindowID& windowID, const std::optional<CGRect>& frame, Seconds deadline);
    bool isExpecting() const { return !expected_.empty(); }
    /// Returns the expected windows that have reached their former frame and are not focused; the caller minimizes them
    /// again. A window that is still minimized counts as minimized by this agent.
    std::vector<WindowID> takeReturned(const std::vector<ManagedWindow>& live,
                                       const std::optional<WindowID>& focusedWindowID, Seconds now);

  private:
    struct Minimized {
        Seconds since{};
        bool isConfirmed = false; // by a poll
    };
    struct Expected {
        std::optional<CGRect> frame; // window-service space
        Seconds deadline{};
    };

    std::map<WindowID, Minimized> minimized_;
    std::map<WindowID, Expected> expected_;
};

} // namespace kova
