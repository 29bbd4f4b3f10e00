#include "workspace/ReflowPolicy.h"

#include <algorithm>

namespace kova {

std::optional<Seconds> ReflowPolicy::nextReflow(const std::string& displayID, const std::string& windowID,
                                                Seconds uptime) const {
    const auto pushes = pushCounts_.find(windowID);
    if (pushes != pushCounts_.end() && pushes->second >= kReflowsPerWindow) return std::nullopt;
    const auto last = lastReflowByDisplay_.find(displayID);
    return last == lastReflowByDisplay_.end() ? uptime : std::max(uptime, last->second + kReflowInterval);
}

void ReflowPolicy::noteReflow(const std::string& displayID, const std::string& windowID, Seconds uptime) {
    lastReflowByDisplay_[displayID] = uptime;
    ++pushCounts_[windowID];
}

bool ReflowPolicy::mayGiveBackSpan(const std::string& windowID) const {
    const auto count = givenBackCounts_.find(windowID);
    return count == givenBackCounts_.end() || count->second < kReflowsPerWindow;
}

void ReflowPolicy::keepOnly(const std::function<bool(const std::string& windowID)>& isLive) {
    std::erase_if(pushCounts_, [&](const auto& entry) { return !isLive(entry.first); });
    std::erase_if(givenBackCounts_, [&](const auto& entry) { return !isLive(entry.first); });
    std::erase_if(candidates_, [&](const auto& entry) { return !isLive(entry.first); });
}

std::optional<CGSize> ReflowPolicy::relaxedMinimum(const std::string& windowID, CGSize minimum, CGSize actual,
                                                   Seconds uptime) {
    const CGSize shown = {std::min(minimum.width, actual.width), std::min(minimum.height, actual.height)};
    const bool isBelow =
        shown.width <= minimum.width - kRelaxationPoints || shown.height <= minimum.height - kRelaxationPoints;
    if (!isBelow) {
        candidates_.erase(windowID);
        return std::nullopt;
    }
    Candidate& candidate = candidates_.try_emplace(windowID, Candidate{shown, uptime}).first->second;
    candidate.size = {std::max(candidate.size.width, shown.width), std::max(candidate.size.height, shown.height)};
    if (uptime - candidate.since < kRelaxationTime) return std::nullopt;
    const CGSize enough = candidate.size;
    candidates_.erase(windowID);
    return enough;
}

} // namespace kova
