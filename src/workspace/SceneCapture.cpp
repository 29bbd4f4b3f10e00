#include "workspace/SceneCapture.h"

#include "layout/TileSpans.h"

#include <algorithm>
#include <map>
#include <set>

namespace kova {

namespace {

std::optional<std::string> presentText(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

} // namespace

std::vector<CapturedPlacement> capturePlacements(const std::vector<CapturedDisplay>& displays,
                                                 const TileAssignments& assignments,
                                                 const std::function<const ManagedWindow*(const WindowID&)>& findLive) {
    std::vector<CapturedPlacement> captured;
    std::set<WindowID> recorded;
    for (std::size_t ordinal = 0; ordinal < displays.size(); ++ordinal) {
        const CapturedDisplay& display = displays[ordinal];
        std::map<WindowID, std::vector<std::string>> claimedByWindow;
        for (const auto& slotID : display.slotIDs) {
            const auto front = assignments.assignedWindowIDs.find(tileTargetID(display.displayID, slotID));
            if (front != assignments.assignedWindowIDs.end()) claimedByWindow[front->second].push_back(slotID);
        }
        for (const auto& slotID : display.slotIDs) {
            const std::string target = tileTargetID(display.displayID, slotID);
            const auto front = assignments.assignedWindowIDs.find(target);
            if (front == assignments.assignedWindowIDs.end()) continue;
            const auto anchor = assignments.anchorTargetIDsByWindowID.find(front->second);
            if (anchor != assignments.anchorTargetIDsByWindowID.end() && anchor->second != target) continue;
            const auto stack = assignments.stackWindowIDsByTarget.find(target);
            const std::vector<WindowID> windows = stack == assignments.stackWindowIDsByTarget.end()
                                                      ? std::vector<WindowID>{front->second}
                                                      : stack->second;
            for (std::size_t index = 0; index < windows.size(); ++index) {
                const ManagedWindow* window = findLive(windows[index]);
                if (!window || !recorded.insert(window->id).second) continue;
                const bool isFront = window->id == front->second;
                std::vector<std::string> claimed =
                    isFront ? claimedByWindow[window->id] : std::vector<std::string>{slotID};
                std::sort(claimed.begin(), claimed.end());
                captured.push_back({window->id,
                                    {.id = Uuid::random(),
                                     .window = {presentText(window->bundleIdentifier.value_or("")),
                                                window->applicationName, presentText(window->title)},
                                     .displayOrdinal = static_cast<std::int64_t>(ordinal),
                                     .slotID = slotID,
                                     .stackIndex = static_cast<std::int64_t>(index),
                                     .claimedSlotIDs = std::move(claimed),
                                     .isActive = isFront}});
            }
        }
    }
    return captured;
}

} // namespace kova
