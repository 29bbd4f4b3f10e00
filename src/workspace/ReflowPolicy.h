// Limits how often a display is laid out again for windows that refuse their tiles, and how often a span may be given
// back, so that every arrangement settles.
#pragma once

#include "support/Identifiers.h"
#include "support/MainQueue.h"

#include "workspace/Renaming.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace kova {

class ReflowPolicy {
  public:
    static constexpr Seconds kReflowInterval{1}; // per display
    static constexpr int kReflowsPerWindow = 3;  // until the window's minimum size or the layout changes

    /// The earliest uptime at which the display may be laid out again for the window; absent once the limit is reached.
    std::optional<Seconds> nextReflow(const DisplayID& displayID, const WindowID& windowID, Seconds uptime) const;
    void noteReflow(const DisplayID& displayID, const WindowID& windowID, Seconds uptime);
    /// Resets the counts, after a change of the layout or an arrangement.
    void resetCounts() {
        reflowCounts_.clear();
        givenBackCounts_.clear();
    }
    /// Whether the window may give back the further tiles of its span. There is a limit, because a window may claim
    /// the same tiles again each time.
    bool mayGiveBackSpan(const WindowID& windowID) const;
    void noteSpanGivenBack(const WindowID& windowID) { ++givenBackCounts_[windowID]; }
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
        renameKey(lastReflowByDisplay_, displayID, newID);
    }
    void keepOnly(const std::function<bool(const WindowID& windowID)>& isLive);

  private:
    std::map<DisplayID, Seconds> lastReflowByDisplay_;
    std::map<WindowID, int> reflowCounts_;
    std::map<WindowID, int> givenBackCounts_;
};

} // namespace kova
