// An agent's socket for tests: it sends the messages that the test chooses, without a workspace and without a thread.
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

    /// Accepts connections and answers requests: `subscribe` with the state, all others with an empty result.
    void serve();
    void setState(nlohmann::json state) { state_ = std::move(state); }
    /// Changes a section of the state (of a list all elements) and sends the change under the next number plus
    /// `skipped`.
    void change(const std::string& section, nlohmann::json value, int skipped = 0);
    void tell(const nlohmann::json& message);
    void hangUp();

    int subscriptions() const { return subscriptions_; }
    /// Methods and parameters, without `subscribe` and `menu`.
    std::vector<std::pair<std::string, nlohmann::json>> calls() const { return calls_; }

  private:
    void answer(const std::string& line);

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
