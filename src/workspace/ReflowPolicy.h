// How often a display is laid out anew for windows that refuse their tiles, and how often a span may be given back.
// Both are bounded, so that every desktop comes to rest.
#pragma once

#include "support/Geometry.h"
#include "support/MainQueue.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace kova {

/// A refused request: the frame requested and the frame the window kept.
struct Refusal {
    CGRect wanted{}; // window-service space
    CGRect actual{};
    int attempts = 0;
    bool isUnseen = true;    // not yet confirmed by a poll
    bool isAccepted = false; // it was there when the agent started, and was not asked
};

class ReflowPolicy {
  public:
    static constexpr Seconds kReflowInterval{1}; // per display
    static constexpr int kReflowsPerWindow = 3;  // until its minimum or the layout changes

    /// When the display may be laid out anew for the window: the earliest uptime; absent once the limit is reached.
    std::optional<Seconds> nextReflow(const std::string& displayID, const std::string& windowID, Seconds uptime) const;
    void noteReflow(const std::string& displayID, const std::string& windowID, Seconds uptime);
    /// The display has another layout, or its windows another arrangement: all may ask again.
    void forgetAllPushes() {
        pushCounts_.clear();
        givenBackCounts_.clear();
    }
    /// Whether the window's span may be given back, as it may be only so often: one that takes it again each time would
    /// never come to rest.
    bool mayGiveBackSpan(const std::string& windowID) const;
    void noteSpanGivenBack(const std::string& windowID) { ++givenBackCounts_[windowID]; }
    /// The window is known under another id from now on.
    void rename(const std::string& windowID, const std::string& newID);
    void keepOnly(const std::function<bool(const std::string& windowID)>& isLive);

  private:
    std::map<std::string, Seconds> lastReflowByDisplay_;
    std::map<std::string, int> pushCounts_;
    std::map<std::string, int> givenBackCounts_;
};

} // namespace kova
