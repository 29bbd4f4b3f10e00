// The connection to the agent: made again, with growing pauses, whenever it is lost. Main thread only.
#pragma once

#include "ui/client/OverlayMirror.h"

#include "control/client/ControlClient.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>
#include <optional>

namespace kova::ui {

class AgentLink : public QObject {
  public:
    AgentLink(std::string socketPath, OverlayMirror::Listener listener);

    /// Connects now; when that fails, after 0.1, 0.2, 0.4 … at most 5 s again.
    void start();
    bool isConnected() const { return client_ != nullptr; }
    const std::optional<OverlayContents>& contents() const { return mirror_.contents(); }

    /// Asks the agent; `done` may be empty. Without a connection it is called at once, with an error.
    void call(const std::string& method, nlohmann::json parameters = nlohmann::json::object(),
              std::function<void(const Answer&)> done = nullptr);

  private:
    void connectNow();
    void read();
    void send(std::string lines);
    void lose();

    const std::string socketPath_;
    OverlayMirror mirror_;
    std::unique_ptr<ControlClient> client_;
    std::unique_ptr<QSocketNotifier> readable_;
    QTimer retry_;
    int attempts_ = 0;
};

/// The pause before the attempt of that number, counted from 0.
std::chrono::milliseconds pauseBeforeAttempt(int attempts);

} // namespace kova::ui
