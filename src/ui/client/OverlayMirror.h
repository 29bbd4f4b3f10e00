// Keeps a copy of the overlay's contents up to date with the agent's numbered changes. Parses and builds messages, but
// does not use the socket. Main thread only.
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
struct Response {
    nlohmann::json result;
    std::string error; // empty if the request succeeded
};

class OverlayMirror {
  public:
    struct Listener {
        std::function<void()> contentsChanged;
        /// `parameters` are the parameters of the notification `show`.
        std::function<void(const std::string& what, const nlohmann::json& parameters)> showRequested;
        /// The agent has another version of the contract, or a message cannot be decoded. `reason` is a text for the
        /// user; it is also reported to the agent.
        std::function<void(const std::string& reason)> contentsRejected;
    };
    explicit OverlayMirror(Listener listener) : listener_(std::move(listener)) {}

    /// Call when a connection is established: resets the contents. Returns the line to send.
    std::string connected();
    /// Call when the connection has ended: resets the contents and calls `done` of pending requests with an error.
    void disconnected();
    /// Handles one line from the agent. Returns the line to send to the agent; usually empty.
    std::string receive(std::string_view line);
    /// Returns the line to send for a request; `done` is called with the response.
    std::string request(const std::string& method, nlohmann::json parameters,
                        std::function<void(const Response&)> done);

    /// Absent before the first state has arrived, and while there is no connection.
    const std::optional<OverlayContents>& contents() const { return contents_; }

  private:
    std::string subscribe();
    std::string receiveResponse(const nlohmann::json& message);
    std::string receiveState(const Response& response);
    std::string receiveChanges(const nlohmann::json& parameters);
    /// Drops the contents. Returns the line that reports the reason to the agent, which shows it in `doctor`.
    std::string rejectContents(const std::string& reason);

    Listener listener_;
    std::optional<OverlayContents> contents_;
    nlohmann::json sections_; // the JSON from which `contents_` was decoded
    std::uint64_t sequence_ = 0;
    std::uint64_t nextRequest_ = 1;
    std::uint64_t subscription_ = 0; // id of the pending request to subscribe; 0 if no such request is pending
    std::map<std::uint64_t, std::function<void(const Response&)>> pendingRequests_;
};

} // namespace kova::ui
