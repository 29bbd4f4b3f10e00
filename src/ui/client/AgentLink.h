// The overlay's connection to the agent: keeps the contents as the agent last sent them. Main thread only.
#pragma once

#include "ui/client/AgentConnection.h"
#include "ui/client/OverlayMirror.h"

#include <optional>

namespace kova::ui {

class AgentLink {
  public:
    AgentLink(std::string socketPath, OverlayMirror::Listener listener);

    /// Connects now; after a failure, retries after 0.1, 0.2, 0.4, … s, at most 5 s.
    void start() { connection_.start(); }
    bool isConnected() const { return connection_.isConnected(); }
    const std::optional<OverlayContents>& contents() const { return mirror_.contents(); }

    /// Sends a request; `done` may be empty. Without a connection `done` is called at once, with an error.
    void call(const std::string& method, nlohmann::json parameters = nlohmann::json::object(),
              std::function<void(const Response&)> done = nullptr);

  private:
    OverlayMirror mirror_;
    AgentConnection connection_;
};

} // namespace kova::ui
