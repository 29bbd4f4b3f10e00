// Alerts and file panels, shown by the program that draws the overlay. Without such a program every question counts
// as cancelled, and information becomes the status message. One alert is open at a time: a newer one replaces it. Main
// thread only.
#pragma once

#include "control/ControlHandling.h"
#include "control/DocumentExchangeControl.h"
#include "support/JsonDecoding.h"
#include "support/MainQueue.h"
#include "windowing/AlertServicing.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kova {

class UserInterfaceDialogs final : public AlertServicing, public DocumentExchangeControl {
  public:
    using Clients = std::vector<std::weak_ptr<ControlPeer>>;
    /// Sends requests to the clients that draw the overlay.
    struct Connection {
        std::function<Clients(const std::string& what, const nlohmann::json& parameters)>
            show; // returns the clients that got the request
        std::function<bool()> hasClients;
        std::function<void(const std::string& text)> setStatusMessage;
    };

    explicit UserInterfaceDialogs(MainQueue& queue) : queue_(queue) {}

    /// Absent: nothing is shown from now on.
    void connect(std::optional<Connection> connection) { connection_ = std::move(connection); }

    void inform(const Alert& alert) override;
    /// Passes the user's answer to `answer`; false also if all clients disconnect before the user has answered.
    void confirm(const Alert& alert, std::function<void(bool isConfirmed)> answer) override;
    /// The user's answer to the alert with "id"; the result says whether it was still open.
    ControlReply answer(const JsonCursor& parameters);

    /// Call after a client has disconnected: cancels the question if no other client shows it.
    void clientDisconnected();

    bool isQuestionOpen() const { return open_.has_value(); }

    bool canAsk() const override { return connection_ && connection_->hasClients(); }
    void exportDocument() override { show("exportDocument", nlohmann::json::object()); }
    void importDocument() override { show("importDocument", nlohmann::json::object()); }

  private:
    struct Question {
        std::uint64_t id = 0;
        Clients clients;
        std::function<void(bool)> answer;
    };
    Clients show(const std::string& what, const nlohmann::json& parameters);
    Clients showAlert(const Alert& alert, std::uint64_t id);
    void close(bool isConfirmed);

    MainQueue& queue_;
    std::optional<Connection> connection_;
    std::optional<Question> open_;
    std::uint64_t lastID_ = 0;
};

} // namespace kova
