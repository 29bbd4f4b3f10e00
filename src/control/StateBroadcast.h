// Sends subscribers the state of the workspace and then its changes. Changes made by one task of the main queue are
// sent as one numbered notification; without subscribers nothing is observed. Main thread only.
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
    /// Sends changes to the client from now on; the result holds the whole state and the number of the last change.
    nlohmann::json subscribe(std::shared_ptr<ControlPeer> peer);

  private:
    void observe();
    /// Notes that sections of the state, a bit each, may have changed.
    void touched(std::uint32_t sections);
    void sendChanges();

    const WorkspaceController& controller_;
    MainQueue& queue_;
    std::vector<std::shared_ptr<ControlPeer>> peers_;
    std::vector<Subscription> subscriptions_;
    nlohmann::json sent_; // the state as last sent to the subscribers
    std::uint32_t touched_ = 0;
    std::uint64_t sequence_ = 0;
    Lifetime lifetime_;
};

} // namespace kova
