#include "workspace/SessionKeeper.h"

#include "persistence/PreferenceKeys.h"
#include "persistence/StoredValues.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace kova {

SessionKeeper::SessionKeeper(MainQueue& queue, PreferencesStore& store,
                             std::function<std::optional<WorkspaceSession>()> describe) :
    queue_(queue),
    store_(store), describe_(std::move(describe)) {}

std::optional<WorkspaceSession> SessionKeeper::stored() const {
    return storedRecord<WorkspaceSession>(store_, preferenceKey::workspaceSession, decodeWorkspaceSession);
}

void SessionKeeper::noteChange() {
    if (std::exchange(isDue_, true)) return;
    // Stores after the operation that changes the session, so that moving windows is not delayed.
    const Seconds earliest = lastSave_ ? *lastSave_ + kInterval : queue_.uptime();
    queue_.after(std::max(Seconds(0), earliest - queue_.uptime()), lifetime_.guard([this] {
        if (isDue_) save();
    }));
}

void SessionKeeper::save() {
    isDue_ = false;
    auto session = describe_();
    if (!session || session == last_) return;
    lastSave_ = queue_.uptime();
    last_ = session;
    store_.setValueLater(preferenceKey::workspaceSession,
                         [kept = std::make_shared<WorkspaceSession>(*std::move(session))]() -> PreferenceValue {
                             return PreferenceData{encodeWorkspaceSession(*kept)};
                         });
}

} // namespace kova
