// Interfaces between the agent's socket and the handling of its requests.
#pragma once

#include "support/Result.h"

#include <nlohmann/json.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kova {

struct ControlRequest {
    std::string method;
    nlohmann::json parameters; // an object; empty when the client sent none
};

/// Why a request was not carried out: a code of `controlCode`, and a message for the user.
struct ControlFailure {
    int code = 0;
    std::string message;
    nlohmann::json data; // details for the client program, or null
};

template <class Value>
using ControlResult = Result<Value, ControlFailure>;
using ControlReply = ControlResult<nlohmann::json>;
/// The value, or null when it is absent.
template <class Value>
nlohmann::json orNull(const std::optional<Value>& value) {
    return value ? nlohmann::json(*value) : nlohmann::json(nullptr);
}
/// The value as JSON, made by `encode`; null when the value is absent.
template <class Value>
nlohmann::json orNull(const std::optional<Value>& value, nlohmann::json (*encode)(const Value&)) {
    return value ? encode(*value) : nlohmann::json(nullptr);
}

/// Responds to one request. Call exactly once, on the main queue.
using ControlResponder = std::function<void(ControlReply)>;

/// One connected client.
class ControlPeer {
  public:
    virtual ~ControlPeer() = default;
    /// Sends a notification; `line` has no line break. Never waits: a client that leaves too much output unread is
    /// disconnected. Main thread.
    virtual void send(const std::string& line) = 0;
    /// Sends a notification. If a request of the client is being carried out, the notification follows the response to
    /// that request. Main thread.
    virtual void sendAfterResponse(const std::string& line) { send(line); }
    /// False once the client has disconnected. Any thread.
    virtual bool isConnected() const = 0;
    /// Calls `callback`, on any thread, when the client has disconnected; immediately if it has disconnected already.
    /// Any thread.
    virtual void whenDisconnected(std::function<void()> callback) = 0;
};

class ControlHandling {
  public:
    virtual ~ControlHandling() = default;
    /// Main thread. If the request needs a new poll, starts the poll and returns true; `ready` is called once after the
    /// poll, and the caller must not call `handle` before. Returns false if the request can be handled at once.
    [[nodiscard]] virtual bool deferUntilCurrent(const ControlRequest&, std::function<void()> /*ready*/) {
        return false;
    }
    /// Main thread. Responds at once or later; no other request of the client is handled before the response. May throw
    /// `DecodingError` for invalid parameters before it responds.
    virtual void handle(const ControlRequest& request, const std::shared_ptr<ControlPeer>& peer,
                        ControlResponder respond) = 0;
};

} // namespace kova
