#include "workspace/UndoHistory.h"

#include <utility>

namespace kova {

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

} // namespace kova
