// A connection to the agent for the windows of kova-ui. The overlay has a connection of its own (`AgentLink`), so that
// an error appears at the control that sent the request and not in the overlay's message. Reconnects after the agent
// has restarted. Main thread only.
#pragma once

#include "ui/client/AgentConnection.h"
#include "ui/client/OverlayMirror.h"

#include <QObject>

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace kova::ui {

class AgentSession : public QObject {
    Q_OBJECT

  public:
    explicit AgentSession(std::string socketPath, QObject* parent = nullptr);
    ~AgentSession() override;

    /// Sends a request. `done` may be empty. It is called once: with the response, or with an error if there is no
    /// connection or the connection ends first. It is not called if `context` has been destroyed by then.
    void call(const QObject* context, const std::string& method, nlohmann::json parameters = nlohmann::json::object(),
              std::function<void(const Response&)> done = nullptr);
    /// Subscribes to the topic now and after each reconnection. An empty topic stands for the state of the workspace.
    void follow(const std::string& topic = {});
    /// The sections of all subscribed topics; an empty object until the first state has arrived.
    const nlohmann::json& state() const { return state_; }
    const std::string& socketPath() const { return connection_.socketPath(); }
    bool isConnected() const { return connection_.isConnected(); }

  Q_SIGNALS:
    /// The sections of the state that have changed; after a reconnection, all of them.
    void changed(const std::set<std::string>& sections);
    /// A notification other than `changed`, for example `launched`.
    void notified(const std::string& method, const nlohmann::json& parameters);
    void connectionChanged();

  private:
    void connected();
    void lost();
    void receive(const std::string& line);
    void applyChanges(const nlohmann::json& changes);
    void subscribe(const std::string& topic);

    AgentConnection connection_;
    std::set<std::string> topics_; // the followed topics; an empty text stands for the state of the workspace
    nlohmann::json state_ = nlohmann::json::object();
    std::uint64_t nextRequest_ = 1;
    std::map<std::uint64_t, std::function<void(const Response&)>> pendingRequests_;
};

} // namespace kova::ui
