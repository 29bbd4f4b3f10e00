// The agent's socket: JSON-RPC 2.0, one message a line. It reads and writes on a thread of its own; every request is
// handled on the main queue, one of each client at a time, and the main queue never waits for a client. No client can
// block the agent or another client, whatever it sends or leaves unread.
#pragma once

#include "control/AgentClaim.h"
#include "support/MainQueue.h"

#include <sys/types.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace kova {

class ControlHandling;

struct ControlServerLimits {
    std::size_t connections = 512;                   // a further client gets an error and is disconnected
    std::size_t unsentBytes = 4 * 1024 * 1024;       // of one client: a subscriber that leaves more unread is dropped
    std::size_t totalUnsentBytes = 64 * 1024 * 1024; // of all clients, see `UnsentBudget`
    std::size_t longestBatchResponse = 4 * 1024 * 1024; // in bytes: later requests of the batch are refused
    std::size_t unansweredRequests = 64;                // of one client; no more are read until some have responses
    std::optional<uid_t> onlyUser{};                    // the user that may connect; this process's own when absent
};

class ControlServer {
  public:
    /// The queue and the handling outlive the server. Main thread, as for all calls.
    ControlServer(AgentClaim claim, MainQueue& queue, ControlHandling& handling, ControlServerLimits limits = {});
    /// Passes earlier responses to the system, closes every connection and removes the socket. Waits for the control
    /// thread, which finishes at most one line.
    ~ControlServer();
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

    /// From now on clients can connect; they wait until `serve`. Absent on success, else the error for the user.
    std::optional<std::string> start();
    /// Begins to read requests. Call once, after `start`.
    void serve();

  private:
    class Listener;
    std::unique_ptr<Listener> listener_;
};

} // namespace kova
