// How often a display is laid out anew for windows that refuse their tiles, and when a remembered minimum is given up.
// Both are bounded, so that every desktop comes to rest.
#pragma once

#include "support/Geometry.h"
#include "support/MainQueue.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace kova {

/// What a window rested at after refusing a frame: asking again for the same would get the same answer.
struct Refusal {
    CGRect wanted{}; // window-service space
    CGRect actual{};
    int attempts = 0;
    bool isUnseen = true; // no poll has read since where it came to rest
};

class ReflowPolicy {
  public:
    static constexpr Seconds kReflowInterval{1};   // per display
    static constexpr int kReflowsPerWindow = 3;    // until its minimum or the layout changes
    static constexpr double kRelaxationPoints = 8; // below its minimum
    static constexpr Seconds kRelaxationTime{2};

    /// When the display may be laid out anew for the window: the earliest uptime; absent when it has been often enough.
    std::optional<Seconds> nextReflow(const std::string& displayID, const std::string& windowID, Seconds uptime) const;
    void noteReflow(const std::string& displayID, const std::string& windowID, Seconds uptime);
    /// The window's minimum grew, or its display has another layout: it may ask again.
    void forgetPushes(const std::string& windowID) { pushCounts_.erase(windowID); }
    void forgetAllPushes() {
        pushCounts_.clear();
        givenBackCounts_.clear();
    }
    /// Whether the window's span may be given back, as it may be only so often: one that takes it again each time would
    /// never come to rest.
    bool mayGiveBackSpan(const std::string& windowID) const;
    void noteSpanGivenBack(const std::string& windowID) { ++givenBackCounts_[windowID]; }
    void keepOnly(const std::function<bool(const std::string& windowID)>& isLive);

    /// Told the window's size at each poll. Gives the minimum that it has shown to be enough, once it has stayed that
    /// far below the remembered one for long enough.
    std::optional<CGSize> relaxedMinimum(const std::string& windowID, CGSize minimum, CGSize actual, Seconds uptime);
    /// A window is on its way to a relaxed minimum: time matters.
    bool isWaiting() const { return !candidates_.empty(); }

  private:
    struct Candidate {
        CGSize size{};
        Seconds since{0};
    };
    std::map<std::string, Seconds> lastReflowByDisplay_;
    std::map<std::string, int> pushCounts_;
    std::map<std::string, int> givenBackCounts_;
    std::map<std::string, Candidate> candidates_;
};

} // namespace kova
