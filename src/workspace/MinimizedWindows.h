// The windows that KOVA minimized and that still are: they are restored when the agent ends, and minimized again by the
// agent that restores the session.
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
    bool contains(const WindowID& windowID) const { return away_.contains(windowID); }
    /// Returns and forgets all of them, to be restored.
    std::vector<WindowID> takeAll();

    /// The former agent had minimized the window and restored it to `frame` when it ended, which may take until
    /// `deadline`.
    void expectBack(const WindowID& windowID, const std::optional<CGRect>& frame, Seconds deadline);
    bool isExpecting() const { return !expected_.empty(); }
    /// Returns the expected windows that are at their former frame and not in use, to be minimized again. One that is
    /// still minimized counts as minimized by this agent.
    std::vector<WindowID> takeReturned(const std::vector<ManagedWindow>& live,
                                       const std::optional<WindowID>& focusedWindowID, Seconds now);

  private:
    struct Away {
        Seconds since{};
        bool wasSeen = false; // minimized, by a poll
    };
    struct Expected {
        std::optional<CGRect> frame; // window-service space
        Seconds deadline{};
    };

    std::map<WindowID, Away> away_;
    std::map<WindowID, Expected> expected_;
};

} // namespace kova
