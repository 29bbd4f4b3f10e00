#include "workspace/UndoHistory.h"

#include "workspace/DisplayRenaming.h"
#include "workspace/Renaming.h"

#include <utility>

namespace kova {

void WorkspaceUndoSnapshot::rename(const WindowID& windowID, const WindowID& newID) {
    tiles.rename(windowID, newID);
    spaces.rename(windowID, newID);
    renameKey(windowFrames, windowID, newID);
    renameIn(minimizedWindowIDs, windowID, newID);
    renameIn(maximizedWindowIDs, windowID, newID);
    renameIn(visibleWindowIDs, windowID, newID);
    renameIn(floatingWindowIDs, windowID, newID);
    rememberedLayouts.rename(windowID, newID);
}

void WorkspaceUndoSnapshot::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    tiles.renameDisplay(displayID, newID);
    spaces.renameDisplay(displayID, newID);
    copyDisplay(profile, displayID, newID);
    rememberedLayouts.renameDisplay(displayID, newID);
}

void WorkspaceUndoSnapshot::forgetApplication(const std::string& applicationKey) {
    profile.applicationMinimumSizes.erase(applicationKey);
    if (!learning) return;
    AutoArrangeLearningModel without = *learning;
    without.forget(applicationKey);
    if (without != *learning) learning = std::make_shared<const AutoArrangeLearningModel>(std::move(without));
}

void UndoHistory::push(UndoEntry entry) {
    entry.number = ++lastNumber_;
    entries_.push_back(std::move(entry));
    if (entries_.size() > kLimit) entries_.erase(entries_.begin());
}

std::optional<UndoEntry> UndoHistory::takeNewest() {
    if (entries_.empty()) return std::nullopt;
    auto newest = std::move(entries_.back());
    entries_.pop_back();
    return newest;
}

void UndoHistory::rename(const WindowID& windowID, const WindowID& newID) {
    for (auto& entry : entries_) entry.snapshot.rename(windowID, newID);
}

void UndoHistory::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    for (auto& entry : entries_) entry.snapshot.renameDisplay(displayID, newID);
}

void UndoHistory::forgetApplication(const std::string& applicationKey) {
    for (auto& entry : entries_) entry.snapshot.forgetApplication(applicationKey);
}

} // namespace kova
