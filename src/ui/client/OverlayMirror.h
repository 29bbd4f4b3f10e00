// The overlay's contents updated by the agent's numbered changes. Parses and builds messages; does not use the socket.
// Main thread only.
#pragma once

#include "ui/client/Contents.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace kova::ui {

/// The result of a request, or its error.
struct Answer {
    nlohmann::json result;
    std::string error; // empty when it was carried out
};

class OverlayMirror {
  public:
    struct Listener {
        std::function<void()> contentsChanged;
        /// `parameters` are those of the notification.
        std::function<void(const std::string& what, const nlohmann::json& parameters)> showRequested;
        /// The agent has another version of the contract, or a message cannot be decoded. The text is for the user;
        /// the agent is told as well.
        std::function<void(const std::string& reason)> notUnderstood;
    };
    explicit OverlayMirror(Listener listener) : listener_(std::move(listener)) {}

    /// Resets the contents for a new connection. Returns the lines to send.
    std::string connected();
    /// The connection has ended: requests that wait get an error, contents are reset.
    void disconnected();
    /// Takes one line of the agent. Returns the lines to send in response; mostly none.
    std::string receive(std::string_view line);
    /// The line to send for a request; `done` is called with its answer.
    std::string request(const std::string& method, nlohmann::json parameters, std::function<void(const Answer&)> done);

    /// Absent before the first state, and without a connection, and while there is no connection.
    const std::optional<OverlayContents>& contents() const { return contents_; }

  private:
    std::string subscribe();
    std::string takeAnswer(const nlohmann::json& message);
    std::string takeState(const Answer& answer);
    std::string takeChanges(const nlohmann::json& parameters);
    /// Drops the contents. Returns the line that reports the reason to the agent, whose `doctor` says it.
    std::string refuse(const std::string& reason);

    Listener listener_;
    std::optional<OverlayContents> contents_;
    nlohmann::json sections_; // the sections that `contents_` was made of
    std::uint64_t sequence_ = 0;
    std::uint64_t nextRequest_ = 1;
    std::uint64_t subscription_ = 0; // the request whose answer is the state; 0: none is under way
    std::map<std::uint64_t, std::function<void(const Answer&)>> waiting_;
};

} // namespace kova::ui
