// Sends the contents of the settings window to its subscribers, the clients that show the window: first the whole
// state, then the sections that changed. All changes by one task of the main queue are sent as one numbered
// notification. Without subscribers nothing is observed or computed. Main thread only.
#pragma once

#include "control/ControlHandling.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "support/Published.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kova {

class SettingsBroadcast {
  public:
    /// A part of the state. `value` computes the section; null if the desktop lacks the feature.
    struct Section {
        std::string name;
        std::function<nlohmann::json()> value;
    };
    /// Calls `changed` whenever a section may have changed, until the returned subscriptions are destroyed.
    using Observe = std::function<std::vector<Subscription>(std::function<void()> changed)>;

    SettingsBroadcast(std::vector<Section> sections, Observe observe, MainQueue& queue);

    /// Makes the client a subscriber. The result holds the whole state and the number of the last notification.
    nlohmann::json subscribe(std::shared_ptr<ControlPeer> peer);
    /// Call when sections may have changed. If there are subscribers, the next task of the main queue compares the
    /// sections and sends the changes.
    void noteChange();

  private:
    void sendChanges();

    std::vector<Section> sections_;
    Observe observe_;
    MainQueue& queue_;
    std::vector<std::shared_ptr<ControlPeer>> peers_;
    std::vector<Subscription> subscriptions_;
    nlohmann::json sent_;             // the state as last sent to the subscribers
    bool isComparisonPosted_ = false; // to the main queue
    std::uint64_t sequence_ = 0;      // the number of the last notification
    Lifetime lifetime_;
};

} // namespace kova
