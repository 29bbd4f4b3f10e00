// The connection to the agent; it sends and receives lines. It reconnects after the connection was lost; the delay
// grows with each failed attempt. Main thread only.
#pragma once

#include "control/client/ControlClient.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace kova::ui {

class AgentConnection : public QObject {
  public:
    struct Handlers {
        std::function<void()> connected;
        std::function<void(const std::string& line)> received;
        std::function<void()> lost;
    };
    AgentConnection(std::string socketPath, Handlers handlers);

    /// Connects now; after a failure, retries after 0.1, 0.2, 0.4, … s, at most 5 s.
    void start();
    bool isConnected() const { return client_ != nullptr; }
    const std::string& socketPath() const { return socketPath_; }
    /// Does nothing without a connection. Closes the connection if sending fails, for example because the agent does
    /// not read.
    void send(std::string lines);
    /// Closes the connection, if there is one: calls `lost`, and connects again later.
    void closeConnection();

  private:
    void read();
    void retry();

    const std::string socketPath_;
    const Handlers handlers_;
    std::unique_ptr<ControlClient> client_;
    std::unique_ptr<QSocketNotifier> readable_;
    QTimer retry_;
    int failedAttempts_ = 0;
};

/// The delay before the next attempt to connect, after `failedAttempts` failed ones.
std::chrono::milliseconds delayBeforeAttempt(int failedAttempts);

} // namespace kova::ui
