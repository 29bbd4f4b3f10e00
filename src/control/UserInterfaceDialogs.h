// Alerts and file dialogs that the program that draws the overlay shows. While no such program is connected, every
// question counts as canceled, and the text of other alerts becomes the status message. A new alert replaces an open
// question. Main thread only.
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

    /// Sets the connection. If it is absent, nothing is shown from now on.
    void connect(std::optional<Connection> connection) { connection_ = std::move(connection); }

    void inform(const Alert& alert) override;
    /// Asks the user and passes the reply to `answer`. Passes false, too, if another alert replaces the question or all
    /// clients disconnect.
    void confirm(const Alert& alert, std::function<void(bool isConfirmed)> answer) override;
    /// Receives the user's reply to the question with this "id". The result says whether the question was still open.
    ControlReply answer(const JsonCursor& parameters);

    /// Call after a client has disconnected. Cancels the open question if no other client shows it.
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
    std::uint64_t lastID_ = 0; // of alerts
};

} // namespace kova
