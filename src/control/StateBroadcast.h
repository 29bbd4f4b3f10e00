// Sends the state of the workspace to its subscribers, and then the changes of the state. All changes by one task of
// the main queue are sent as one numbered notification. Without subscribers nothing is observed. Main thread only.
#pragma once

#include "control/ControlHandling.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "support/Published.h"
#include "workspace/WorkspaceController.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kova {

class StateBroadcast {
  public:
    StateBroadcast(const WorkspaceController& controller, MainQueue& queue);

    /// The whole state as it is now.
    nlohmann::json state() const;
    /// Makes the client a subscriber. The result holds the whole state and the number of the last notification.
    nlohmann::json subscribe(std::shared_ptr<ControlPeer> peer);

  private:
    void observe();
    /// Call when sections of the state may have changed; `sections` has one bit for each.
    void noteChange(std::uint32_t sections);
    void sendChanges();

    const WorkspaceController& controller_;
    MainQueue& queue_;
    std::vector<std::shared_ptr<ControlPeer>> peers_;
    std::vector<Subscription> subscriptions_;
    nlohmann::json sent_;        // the state as last sent to the subscribers
    std::uint32_t touched_ = 0;  // the sections that may have changed since then
    std::uint64_t sequence_ = 0; // the number of the last notification
    Lifetime lifetime_;
};

} // namespace kova
