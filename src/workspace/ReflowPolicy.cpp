#include "workspace/ReflowPolicy.h"

#include <algorithm>

namespace kova {

std::optional<Seconds> ReflowPolicy::nextReflow(const DisplayID& displayID, const WindowID& windowID,
                                                Seconds uptime) const {
    const auto reflows = reflowCounts_.find(windowID);
    if (reflows != reflowCounts_.end() && reflows->second >= kReflowsPerWindow) return std::nullopt;
    const auto last = lastReflowByDisplay_.find(displayID);
    return last == lastReflowByDisplay_.end() ? uptime : std::max(uptime, last->second + kReflowInterval);
}

void ReflowPolicy::noteReflow(const DisplayID& displayID, const WindowID& windowID, Seconds uptime) {
    lastReflowByDisplay_[displayID] = uptime;
    ++reflowCounts_[windowID];
}

bool ReflowPolicy::mayGiveBackSpan(const WindowID& windowID) const {
    const auto count = givenBackCounts_.find(windowID);
    return count == givenBackCounts_.end() || count->second < kReflowsPerWindow;
}

void ReflowPolicy::rename(const WindowID& windowID, const WindowID& newID) {
    renameKey(reflowCounts_, windowID, newID);
    renameKey(givenBackCounts_, windowID, newID);
}

void ReflowPolicy::keepOnly(const std::function<bool(const WindowID& windowID)>& isLive) {
    std::erase_if(reflowCounts_, [&](const auto& entry) { return !isLive(entry.first); });
    std::erase_if(givenBackCounts_, [&](const auto& entry) { return !isLive(entry.first); });
}

} // namespace kova
