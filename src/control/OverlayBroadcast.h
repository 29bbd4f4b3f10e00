// Sends the overlay's contents to its subscribers, the clients that draw the overlay: first the whole contents, then
// the changes. All changes by one task of the main queue are sent as one numbered notification. Without subscribers
// nothing is computed. Main thread only.
#pragma once

#include "control/ControlHandling.h"
#include "control/OverlayContents.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kova {

class OverlayBroadcast {
  public:
    /// Adds to newly computed contents the data that only the socket's methods have.
    using Amend = std::function<void(OverlayContents&)>;
    /// `overlay` and `queue` outlive the broadcast. `clientDisconnected` is called after a subscriber has disconnected.
    OverlayBroadcast(OverlayServing& overlay, MainQueue& queue, Amend amend, std::function<void()> clientDisconnected) :
        overlay_(overlay), queue_(queue), amend_(std::move(amend)), clientDisconnected_(std::move(clientDisconnected)) {
    }
    ~OverlayBroadcast();
    OverlayBroadcast(const OverlayBroadcast&) = delete;
    OverlayBroadcast& operator=(const OverlayBroadcast&) = delete;

    /// Makes the client a subscriber. The result holds the whole contents and the number of the last notification.
    nlohmann::json subscribe(std::shared_ptr<ControlPeer> peer);
    /// Notifies the subscribers to open `what`, for example the menu; the notification has these parameters. Returns
    /// false if there are no subscribers.
    bool show(const std::string& what, nlohmann::json parameters = nlohmann::json::object());
    std::vector<std::weak_ptr<ControlPeer>> subscribers() { return {subscribers_.begin(), subscribers_.end()}; }

    /// True if a subscriber is connected. Removes disconnected subscribers; if none is left, stops watching the
    /// contents.
    bool hasSubscribers();
    bool isSubscriber(const std::shared_ptr<ControlPeer>& client) const;

  private:
    void add(std::shared_ptr<ControlPeer> peer);
    void update(OverlayContents& contents, OverlaySections sections);
    void noteChange(OverlaySections sections);
    void sendChanges();
    void send(const std::string& line);

    OverlayServing& overlay_;
    MainQueue& queue_;
    Amend amend_;
    std::function<void()> clientDisconnected_;
    std::vector<std::shared_ptr<ControlPeer>> subscribers_;
    OverlayContents sent_;        // as last sent to the subscribers
    OverlaySections touched_ = 0; // the sections that may have changed since then
    std::uint64_t sequence_ = 0;  // the number of the last notification
    Lifetime lifetime_;
};

} // namespace kova
