// How often a display is laid out anew for windows that refuse their tiles, and how often a span may be given back.
// Both are bounded, so that every arrangement settles.
#pragma once

#include "support/Geometry.h"
#include "support/Identifiers.h"
#include "support/MainQueue.h"

#include "workspace/Renaming.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace kova {

/// A refused request: the frame requested and the frame that the window kept.
struct Refusal {
    CGRect wanted{}; // window-service space
    CGRect actual{};
    int attempts = 0;
    bool isUnseen = true;    // not yet confirmed by a poll
    bool isAccepted = false; // its frame at the start of the agent, without a request
};

class ReflowPolicy {
  public:
    static constexpr Seconds kReflowInterval{1}; // per display
    static constexpr int kReflowsPerWindow = 3;  // until its minimum or the layout changes

    /// The earliest uptime at which the display may be laid out anew for the window; absent once the limit is reached.
    std::optional<Seconds> nextReflow(const DisplayID& displayID, const WindowID& windowID, Seconds uptime) const;
    void noteReflow(const DisplayID& displayID, const WindowID& windowID, Seconds uptime);
    /// Resets the limits, after a change of the layout or an arrangement.
    void forgetAllPushes() {
        pushCounts_.clear();
        givenBackCounts_.clear();
    }
    /// Whether the window's span may be given back. The number is limited, since a window that claims it again each
    /// time would never settle.
    bool mayGiveBackSpan(const WindowID& windowID) const;
    void noteSpanGivenBack(const WindowID& windowID) { ++givenBackCounts_[windowID]; }
    /// Renames the window.
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
        renameKey(lastReflowByDisplay_, displayID, newID);
    }
    void keepOnly(const std::function<bool(const WindowID& windowID)>& isLive);

  private:
    std::map<DisplayID, Seconds> lastReflowByDisplay_;
    std::map<WindowID, int> pushCounts_;
    std::map<WindowID, int> givenBackCounts_;
};

} // namespace kova
