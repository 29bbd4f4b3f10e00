// Sends the contents of the settings window to its clients: the whole state first, then changed sections. Changes made
// by one task of the main queue are sent as one numbered notification; without clients nothing is observed or computed.
// Main thread only.
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
    /// Computes a part of the state; null if the desktop lacks the feature.
    struct Section {
        std::string name;
        std::function<nlohmann::json()> value;
    };
    /// Calls back when any section may have changed, until the subscriptions end.
    using Observe = std::function<std::vector<Subscription>(std::function<void()> changed)>;

    SettingsBroadcast(std::vector<Section> sections, Observe observe, MainQueue& queue);

    /// Sends changes to the client from now on; the result holds the whole state and the number of the last change.
    nlohmann::json subscribe(std::shared_ptr<ControlPeer> peer);
    /// Call when sections may have changed: compares them in the next task of the main queue if there are clients.
    void touch();

  private:
    void sendChanges();

    std::vector<Section> sections_;
    Observe observe_;
    MainQueue& queue_;
    std::vector<std::shared_ptr<ControlPeer>> peers_;
    std::vector<Subscription> subscriptions_;
    nlohmann::json sent_; // the state as the clients have it
    bool isTouched_ = false;
    std::uint64_t sequence_ = 0;
    Lifetime lifetime_;
};

} // namespace kova
