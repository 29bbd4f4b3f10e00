// Stores the session soon after each change, but at most once a second.
#pragma once

#include "persistence/PreferencesStore.h"
#include "persistence/WorkspaceSession.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"

#include <functional>
#include <optional>

namespace kova {

class SessionKeeper {
  public:
    static constexpr Seconds kInterval{1};

    /// `describe` returns the present session, or nothing while the stored session must not be replaced.
    SessionKeeper(MainQueue& queue, PreferencesStore& store, std::function<std::optional<WorkspaceSession>()> describe);

    /// The session that the former agent stored; absent if it cannot be read.
    std::optional<WorkspaceSession> stored() const;
    void noteChange();
    /// Stores at once, without the limit of one second.
    void save();

  private:
    MainQueue& queue_;
    PreferencesStore& store_;
    std::function<std::optional<WorkspaceSession>()> describe_;
    std::optional<WorkspaceSession> last_;
    std::optional<Seconds> lastSave_; // uptime
    bool isDue_ = false;
    Lifetime lifetime_;
};

} // namespace kova
