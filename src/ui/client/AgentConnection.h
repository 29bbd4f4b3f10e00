// The connection to the agent, line by line: established again, after growing delays, whenever it is lost. Main thread
// only.
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

    /// Connects now; when that fails, after 0.1, 0.2, 0.4 … at most 5 s again.
    void start();
    bool isConnected() const { return client_ != nullptr; }
    const std::string& socketPath() const { return socketPath_; }
    /// Without a connection nothing is sent; an agent that does not take the lines counts as lost.
    void send(std::string lines);
    /// Ends the connection as if the agent had, if there is one.
    void lose();

  private:
    void read();
    void retry();

    const std::string socketPath_;
    const Handlers handlers_;
    std::unique_ptr<ControlClient> client_;
    std::unique_ptr<QSocketNotifier> readable_;
    QTimer retry_;
    int attempts_ = 0;
};

/// The pause before the attempt of that number, counted from 0.
std::chrono::milliseconds pauseBeforeAttempt(int attempts);

} // namespace kova::ui
