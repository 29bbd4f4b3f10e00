// The agent's socket: JSON-RPC 2.0, one message a line. It reads and writes on a thread of its own; every request is
// handled on the main queue, one after the other, and the main queue never waits for a client. Nothing that a client
// sends, or leaves unsent, stops the agent or another client.
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
    std::size_t connections = 512;             // further ones are closed at once
    std::size_t unsentBytes = 4 * 1024 * 1024; // a subscriber that lets more than this pile up is dropped
    std::size_t unansweredRequests = 64;       // of one client; what it sends beyond that is not read yet
    std::optional<uid_t> onlyUser{};           // who may connect; this process's own user when absent
};

class ControlServer {
  public:
    /// The queue and the handling outlive the server. Main thread, as for all calls.
    ControlServer(AgentClaim claim, MainQueue& queue, ControlHandling& handling, ControlServerLimits limits = {});
    /// Closes every connection and removes the socket. Replies that were given before are with the system by then.
    ~ControlServer();
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

    /// From now on clients can connect; they wait until `serve`. Absent when it listens; else what is in the way, in
    /// words for a person.
    std::optional<std::string> start();
    /// Begins to read what they send. Once, after `start`.
    void serve();

  private:
    class Listener;
    std::unique_ptr<Listener> listener_;
};

} // namespace kova
