// An agent's socket for tests: sends the messages that the test chooses. It has neither a workspace nor a thread.
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace kova::ui::testing {

class FakeAgent {
  public:
    explicit FakeAgent(std::string path);
    ~FakeAgent();
    FakeAgent(const FakeAgent&) = delete;
    FakeAgent& operator=(const FakeAgent&) = delete;

    /// Accepts connections and responds to requests: to `subscribe` with the state, to others with an empty result.
    void serve();
    void setState(nlohmann::json state) { state_ = std::move(state); }
    /// Replaces a section of the state and sends the change, whose sequence number is `skipped` higher than the next
    /// one. For a list, the change contains all elements.
    void change(const std::string& section, nlohmann::json value, int skipped = 0);
    void sendMessage(const nlohmann::json& message);
    void disconnect();

    int subscriptions() const { return subscriptions_; }
    /// The methods and parameters of the requests, except `subscribe`, `menu` and `ui.status`.
    std::vector<std::pair<std::string, nlohmann::json>> calls() const { return calls_; }

  private:
    void respond(const std::string& line);

    std::string path_;
    int listener_ = -1;
    int client_ = -1;
    std::string received_;
    nlohmann::json state_;
    int sequence_ = 0;
    int subscriptions_ = 0;
    std::vector<std::pair<std::string, nlohmann::json>> calls_;
};

} // namespace kova::ui::testing
