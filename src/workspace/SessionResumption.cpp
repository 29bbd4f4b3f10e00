#include "workspace/SessionResumption.h"

#include "workspace/WindowRecognition.h"

#include <algorithm>

namespace kova {

namespace {

bool isSameProcess(const WorkspaceSessionWindow& former, const std::optional<std::string>& startNow) {
    return former.processStart && startNow && *former.processStart == *startNow;
}

bool isSameWindow(const WorkspaceSessionWindow& former, const ManagedWindow& window,
                  const std::optional<std::string>& startNow) {
    if (former.id != window.id || former.processIdentifier != window.processIdentifier) return false;
    if (former.processStart || startNow) return isSameProcess(former, startNow);
    return former.bundleIdentifier == window.bundleIdentifier && former.title == window.title;
}

/// Renames all at once, since two windows may have exchanged their ids.
TileAssignments withNewIDs(TileAssignments assignments, const std::map<WindowID, WindowID>& newIDs) {
    const auto now = [&](const WindowID& formerID) {
        const auto found = newIDs.find(formerID);
        return found == newIDs.end() ? formerID : found->second;
    };
    for (auto& [target, windowID] : assignments.assignedWindowIDs) windowID = now(windowID);
    for (auto& [target, stack] : assignments.stackWindowIDsByTarget)
        std::transform(stack.begin(), stack.end(), stack.begin(), now);
    std::map<WindowID, TileTarget> anchors;
    for (auto& [windowID, target] : assignments.anchorsByWindowID) anchors[now(windowID)] = target;
    assignments.anchorsByWindowID = std::move(anchors);
    return assignments;
}

} // namespace

ResumedWindows resumedWindows(const WorkspaceSession& session, const std::vector<ManagedWindow>& liveWindows,
                              const ProcessStartOf& processStartOf) {
    ResumedWindows resumed;
    std::map<WindowID, const ManagedWindow*> liveByID;
    for (const auto& window : liveWindows) liveByID.emplace(window.id, &window);
    std::map<pid_t, std::optional<std::string>> starts;
    const auto startOf = [&](pid_t process) -> const std::optional<std::string>& {
        const auto [start, isNew] = starts.try_emplace(process);
        if (isNew) start->second = processStartOf(process);
        return start->second;
    };

    std::vector<ManagedWindowRecoveryIdentity> missing;
    std::set<WindowID> taken;
    for (const auto& former : session.windows) {
        const auto& startNow = startOf(former.processIdentifier);
        const auto live = liveByID.find(former.id);
        if (live != liveByID.end() && isSameWindow(former, *live->second, startNow)) {
            resumed.idNow[former.id] = former.id;
            taken.insert(former.id);
            continue;
        }
        const bool isAnotherProcess = (former.processStart || startNow) && !isSameProcess(former, startNow);
        if (isAnotherProcess) continue;
        missing.push_back({former.id, former.processIdentifier, former.bundleIdentifier, former.title, former.frame});
        if (startNow && live == liveByID.end()) resumed.awaited.insert(former.id);
    }
    std::vector<const ManagedWindow*> others;
    for (const auto& window : liveWindows) {
        if (!taken.contains(window.id)) others.push_back(&window);
    }
    for (const auto& [formerID, id] : recognizeWindows(missing, others)) {
        resumed.idNow[formerID] = id;
        resumed.awaited.erase(formerID);
    }
    return resumed;
}

TileAssignments resumedTiles(const WorkspaceSessionTiles& tiles, const ResumedWindows& windows) {
    TileAssignments assignments{tiles.assignedWindowIDs, tiles.stackWindowIDs, tiles.anchors};
    if (!assignments.isSound()) return {};
    std::set<WindowID> kept = windows.awaited;
    for (const auto& [formerID, id] : windows.idNow) kept.insert(formerID);
    assignments.keepOnly(kept);
    return withNewIDs(std::move(assignments), windows.idNow);
}

WorkspaceSessionTiles sessionTiles(const TileAssignments& assignments) {
    return {assignments.assignedWindowIDs, assignments.stackWindowIDsByTarget, assignments.anchorsByWindowID};
}

} // namespace kova
