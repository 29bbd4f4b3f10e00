#include "workspace/SceneCapture.h"

#include "layout/TileTarget.h"

#include <algorithm>
#include <map>
#include <set>

namespace kova {

namespace {

template <class Text>
std::optional<Text> present(const Text& text) {
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
        std::map<WindowID, std::vector<SlotID>> claimedByWindow;
        for (const auto& slotID : display.slotIDs) {
            const auto front = assignments.assignedWindowIDs.find({display.displayID, slotID});
            if (front != assignments.assignedWindowIDs.end()) claimedByWindow[front->second].push_back(slotID);
        }
        for (const auto& slotID : display.slotIDs) {
            const TileTarget target{display.displayID, slotID};
            const auto front = assignments.assignedWindowIDs.find(target);
            if (front == assignments.assignedWindowIDs.end()) continue;
            const auto anchor = assignments.anchorsByWindowID.find(front->second);
            if (anchor != assignments.anchorsByWindowID.end() && anchor->second != target) continue;
            const auto stack = assignments.stackWindowIDsByTarget.find(target);
            const std::vector<WindowID> windows = stack == assignments.stackWindowIDsByTarget.end()
                                                      ? std::vector<WindowID>{front->second}
                                                      : stack->second;
            for (std::size_t index = 0; index < windows.size(); ++index) {
                const ManagedWindow* window = findLive(windows[index]);
                if (!window || !recorded.insert(window->id).second) continue;
                const bool isFront = window->id == front->second;
                std::vector<SlotID> claimed = isFront ? claimedByWindow[window->id] : std::vector<SlotID>{slotID};
                std::sort(claimed.begin(), claimed.end());
                captured.push_back({window->id,
                                    {.id = Uuid::random(),
                                     .window = {present(window->bundleIdentifier.value_or("")), window->applicationName,
                                                present(window->title)},
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
