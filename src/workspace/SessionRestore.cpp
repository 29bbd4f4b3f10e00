#include "workspace/SessionRestore.h"

#include "workspace/Renaming.h"

#include <algorithm>
#include <utility>

namespace kova {

SessionRestore::SessionRestore(MainQueue& queue, PreferencesStore& store,
                               std::function<std::optional<WorkspaceSession>()> describe) :
    keeper_(queue, store, std::move(describe)),
    stored_(keeper_.stored()) {}

std::optional<WorkspaceSession> SessionRestore::takeStored() {
    if (std::exchange(isTaken_, true)) return std::nullopt;
    return std::exchange(stored_, std::nullopt).value_or(WorkspaceSession{});
}

std::optional<std::string> SessionRestore::processStart(pid_t process, const ProcessStartOf& read) {
    const auto known = processStarts_.find(process);
    if (known != processStarts_.end()) return known->second;
    return processStarts_[process] = read(process);
}

void SessionRestore::keepProcesses(const std::set<pid_t>& recorded) {
    std::erase_if(processStarts_, [&](const auto& entry) { return !recorded.contains(entry.first); });
}

void SessionRestore::await(std::set<WindowID> windowIDs, Seconds now) {
    awaited_ = std::move(windowIDs);
    awaitedUntil_ = now + kResumptionTimeout;
}

const std::set<WindowID>& SessionRestore::awaited(const std::vector<ManagedWindow>& live, Seconds now) {
    for (const auto& window : live) awaited_.erase(window.id);
    if (now >= awaitedUntil_) awaited_.clear();
    return awaited_;
}

void SessionRestore::expectReturn(const WindowID& windowID, const std::optional<CGRect>& formerFrame) {
    returning_[windowID] = formerFrame;
}

Seconds SessionRestore::beginReturns(Seconds now) {
    returningUntil_ = now + kReturnTakesAtMost;
    return returningUntil_;
}

std::optional<CGRect> SessionRestore::formerFrame(const WindowID& windowID) const {
    const auto found = returning_.find(windowID);
    return found == returning_.end() ? std::nullopt : found->second;
}

std::set<WindowID> SessionRestore::takeReturned(const std::vector<ManagedWindow>& live, const IsStacked& isStacked,
                                                const HasReturned& hasReturned, Seconds now) {
    std::map<WindowID, const ManagedWindow*> windows;
    for (const auto& window : live) windows[window.id] = &window;
    std::erase_if(returning_,
                  [&](const auto& entry) { return !windows.contains(entry.first) || !isStacked(entry.first); });
    const bool isTimedOut = now >= returningUntil_;
    std::set<WindowID> leaving;
    std::set<pid_t> undecided;
    for (const auto& [id, former] : returning_) {
        const ManagedWindow& window = *windows.at(id);
        if (hasReturned(window, former)) {
            leaving.insert(id);
        } else if (window.isVisible && !isTimedOut) {
            undecided.insert(window.processIdentifier);
        }
    }
    std::erase_if(leaving, [&](const auto& id) { return undecided.contains(windows.at(id)->processIdentifier); });
    if (isTimedOut) returning_.clear();
    for (const auto& id : leaving) returning_.erase(id);
    return leaving;
}

void SessionRestore::rename(const WindowID& windowID, const WindowID& newID) {
    renameIn(awaited_, windowID, newID);
    renameKey(returning_, windowID, newID);
}

} // namespace kova
