// A connection to the agent for windows, beside the overlay's: errors are shown at the control that sent the request,
// not in the overlay's message. Connects again when the agent comes back. Main thread only.
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

    /// Sends a request. `done` may be empty; it is called once, with an error when there is no connection or the
    /// connection ends, and not at all when `context` has been destroyed by then.
    void call(const QObject* context, const std::string& method, nlohmann::json parameters = nlohmann::json::object(),
              std::function<void(const Answer&)> done = nullptr);
    /// Subscribes to the topic, or without one to the state of the workspace, now and after each new connection.
    void follow(const std::string& topic = {});
    /// The sections of all subscriptions; an empty object until they have arrived.
    const nlohmann::json& state() const { return state_; }
    const std::string& socketPath() const { return connection_.socketPath(); }
    bool isConnected() const { return connection_.isConnected(); }

  Q_SIGNALS:
    /// The sections of the state that have changed; all of them after a new connection.
    void changed(const std::set<std::string>& sections);
    /// Any other notification, such as `launched`.
    void notified(const std::string& method, const nlohmann::json& parameters);
    void connectionChanged();

  private:
    void connected();
    void lost();
    void receive(const std::string& line);
    void take(const nlohmann::json& news);
    void subscribe(const std::string& topic);

    AgentConnection connection_;
    std::set<std::string> topics_; // subscribed; empty: the state of the workspace
    nlohmann::json state_ = nlohmann::json::object();
    std::uint64_t nextRequest_ = 1;
    std::map<std::uint64_t, std::function<void(const Answer&)>> waiting_;
};

} // namespace kova::ui
