// The agent's socket: JSON-RPC 2.0, one message a line. A thread of its own, the control thread, reads the requests and
// writes what clients do not take at once. The main queue handles one request of each client at a time and never waits
// for a client. No client can block the agent or another client, whatever the client sends or leaves unread.
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
    std::size_t connections = 512;             // a further client gets an error and is disconnected
    std::size_t unsentBytes = 4 * 1024 * 1024; // of one client; a subscriber that leaves more unread is disconnected
    std::size_t totalUnsentBytes = 64 * 1024 * 1024;    // of all clients, see `UnsentBudget`
    std::size_t longestBatchResponse = 4 * 1024 * 1024; // in bytes; once exceeded, the rest of the batch is refused
    std::size_t unansweredRequests = 64;                // of one client; then reading pauses until some have responses
    std::optional<uid_t> onlyUser{};                    // the only user that may connect; absent: this process's user
};

class ControlServer {
  public:
    /// `queue` and `handling` outlive the server. Main thread, as for all functions of the server.
    ControlServer(AgentClaim claim, MainQueue& queue, ControlHandling& handling, ControlServerLimits limits = {});
    /// Closes every connection and removes the socket; output that the system has not accepted yet is lost. Waits for
    /// the control thread, which reads at most once more.
    ~ControlServer();
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

    /// Opens the socket. From now on clients can connect, but their requests wait for `serve`. Returns the error
    /// message on failure.
    std::optional<std::string> start();
    /// Begins to accept connections and to read requests. Call once, after `start`.
    void serve();

  private:
    class Listener;
    std::unique_ptr<Listener> listener_;
};

} // namespace kova
