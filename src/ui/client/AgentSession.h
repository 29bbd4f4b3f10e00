// A connection to the agent for windows, beside the overlay's: errors are shown at the control that sent the request,
// not in the overlay's message. Connects again when the agent comes back. Main thread only.
#pragma once

#include "ui/client/OverlayMirror.h"

#include "control/client/ControlClient.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdint>
#include <map>
#include <memory>
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
    const std::string& socketPath() const { return socketPath_; }
    bool isConnected() const { return client_ != nullptr; }

  Q_SIGNALS:
    /// The sections of the state that have changed; all of them after a new connection.
    void changed(const std::set<std::string>& sections);
    /// Any other notification, such as `launched`.
    void notified(const std::string& method, const nlohmann::json& parameters);
    void connectionChanged();

  private:
    void connectNow();
    void read();
    void lose();
    void receive(const std::string& line);
    void take(const nlohmann::json& news);
    void subscribe(const std::string& topic);

    const std::string socketPath_;
    std::unique_ptr<ControlClient> client_;
    std::unique_ptr<QSocketNotifier> readable_;
    QTimer retry_;
    int attempts_ = 0;
    std::set<std::string> topics_; // subscribed; empty: the state of the workspace
    nlohmann::json state_ = nlohmann::json::object();
    std::uint64_t nextRequest_ = 1;
    std::map<std::uint64_t, std::function<void(const Answer&)>> waiting_;
};

} // namespace kova::ui
