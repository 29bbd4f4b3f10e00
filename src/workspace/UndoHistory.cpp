#include "workspace/UndoHistory.h"

#include <utility>

namespace kova {

void UndoHistory::push(WorkspaceUndoSnapshot snapshot) {
    snapshots_.push_back(std::move(snapshot));
    if (snapshots_.size() > kLimit) snapshots_.erase(snapshots_.begin());
}

std::optional<WorkspaceUndoSnapshot> UndoHistory::takeNewest() {
    if (snapshots_.empty()) return std::nullopt;
    auto newest = std::move(snapshots_.back());
    snapshots_.pop_back();
    return newest;
}

} // namespace kova
