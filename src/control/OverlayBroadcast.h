// Sends the overlay's contents to the clients that draw them: first all, then the changes. Changes made by one task of
// the main queue are sent as one numbered notification; without clients nothing is computed. Main thread only.
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
    /// Completes newly computed contents with data that only the methods have.
    using Amend = std::function<void(OverlayContents&)>;
    /// The contents outlive the broadcast. `clientDisconnected` is called after a client has disconnected.
    OverlayBroadcast(OverlayServing& overlay, MainQueue& queue, Amend amend, std::function<void()> clientDisconnected) :
        overlay_(overlay), queue_(queue), amend_(std::move(amend)), clientDisconnected_(std::move(clientDisconnected)) {
    }
    ~OverlayBroadcast();
    OverlayBroadcast(const OverlayBroadcast&) = delete;
    OverlayBroadcast& operator=(const OverlayBroadcast&) = delete;

    /// Sends changes to the client from now on; the result holds the whole contents and the number of the last change.
    nlohmann::json subscribe(std::shared_ptr<ControlPeer> peer);
    /// Notifies the clients to open something, such as the menu; `parameters` are those of the notification. False if
    /// there are no clients.
    bool show(const std::string& what, nlohmann::json parameters = nlohmann::json::object());
    /// The clients that draw the overlay.
    std::vector<std::weak_ptr<ControlPeer>> peers() { return {peers_.begin(), peers_.end()}; }

    /// Whether a client draws the overlay. Drops disconnected clients; if no client is left, stops watching
    /// the contents.
    bool hasPeers();
    bool isPeer(const std::shared_ptr<ControlPeer>& client) const;

  private:
    void add(std::shared_ptr<ControlPeer> peer);
    void update(OverlayContents& contents, OverlaySections sections);
    void touched(OverlaySections sections);
    void sendChanges();
    void send(const std::string& line);

    OverlayServing& overlay_;
    MainQueue& queue_;
    Amend amend_;
    std::function<void()> clientDisconnected_;
    std::vector<std::shared_ptr<ControlPeer>> peers_;
    OverlayContents sent_; // as last sent to the clients
    OverlaySections touched_ = 0;
    std::uint64_t sequence_ = 0;
    Lifetime lifetime_;
};

} // namespace kova
