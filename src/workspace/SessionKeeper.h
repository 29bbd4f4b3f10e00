// Keeps the session on record while it changes: soon after each change, and at most once a second.
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

    /// `describe` gives the session as it is; absent when there is nothing to say that should replace what is kept.
    SessionKeeper(MainQueue& queue, PreferencesStore& store, std::function<std::optional<WorkspaceSession>()> describe);

    /// What was kept when the agent before this one ended; absent when it cannot be read.
    std::optional<WorkspaceSession> kept() const;
    void noteChange();
    /// Without waiting for the second to pass.
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
