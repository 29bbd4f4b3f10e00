#include "workspace/UndoHistory.h"

#include "workspace/DisplaySuccession.h"

#include <utility>

namespace kova {

namespace {

void renameIn(std::set<std::string>& windowIDs, const std::string& windowID, const std::string& newID) {
    if (windowIDs.erase(windowID) > 0) windowIDs.insert(newID);
}

} // namespace

void WorkspaceUndoSnapshot::changeAssignments(const std::function<void(TileAssignments&)>& change) {
    TileAssignments assignments{std::move(assignedWindowIDs), std::move(stackWindowIDsByTarget),
                                std::move(placementAnchors)};
    change(assignments);
    assignedWindowIDs = std::move(assignments.assignedWindowIDs);
    stackWindowIDsByTarget = std::move(assignments.stackWindowIDsByTarget);
    placementAnchors = std::move(assignments.anchorTargetIDsByWindowID);
}

void WorkspaceUndoSnapshot::rename(const std::string& windowID, const std::string& newID) {
    changeAssignments([&](TileAssignments& tiles) { tiles.rename(windowID, newID); });
    spaces.rename(windowID, newID);
    if (auto frame = windowFrames.extract(windowID)) {
        frame.key() = newID;
        windowFrames.insert(std::move(frame));
    }
    renameIn(minimizedWindowIDs, windowID, newID);
    renameIn(maximizedWindowIDs, windowID, newID);
    renameIn(visibleWindowIDs, windowID, newID);
    renameIn(floatingWindowIDs, windowID, newID);
    layoutHomes.rename(windowID, newID);
}

void WorkspaceUndoSnapshot::renameDisplay(const std::string& displayID, const std::string& newID) {
    changeAssignments([&](TileAssignments& tiles) { tiles.renameDisplay(displayID, newID); });
    spaces.renameDisplay(displayID, newID);
    copyDisplay(profile, displayID, newID);
    layoutHomes.renameDisplay(displayID, newID);
}

void WorkspaceUndoSnapshot::forgetApplication(const std::string& applicationKey) {
    profile.applicationMinimumSizes.erase(applicationKey);
    if (!learning) return;
    AutoArrangeLearningModel without = *learning;
    without.forget(applicationKey);
    if (without != *learning) learning = std::make_shared<const AutoArrangeLearningModel>(std::move(without));
}

void UndoHistory::push(UndoEntry entry) {
    entries_.push_back(std::move(entry));
    if (entries_.size() > kLimit) entries_.erase(entries_.begin());
}

std::optional<UndoEntry> UndoHistory::takeNewest() {
    if (entries_.empty()) return std::nullopt;
    auto newest = std::move(entries_.back());
    entries_.pop_back();
    return newest;
}

void UndoHistory::rename(const std::string& windowID, const std::string& newID) {
    for (auto& entry : entries_) entry.snapshot.rename(windowID, newID);
}

void UndoHistory::renameDisplay(const std::string& displayID, const std::string& newID) {
    for (auto& entry : entries_) entry.snapshot.renameDisplay(displayID, newID);
}

void UndoHistory::forgetApplication(const std::string& applicationKey) {
    for (auto& entry : entries_) entry.snapshot.forgetApplication(applicationKey);
}

} // namespace kova
