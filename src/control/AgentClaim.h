// The claim to be the only agent of a session. It is a file lock, which the system releases when the process ends or
// crashes. While a process holds the claim, no other agent listens at the socket's path.
#pragma once

#include "control/client/ControlSocket.h"

#include <sys/types.h>

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace kova {

/// Why the claim failed, for the user.
struct AgentClaimRefusal {
    std::optional<pid_t> holder; // the agent that manages the session already, if that is the reason
    std::string message;
};

class AgentClaim {
  public:
    /// Creates the socket's folder if necessary and closes it to other users, unless the user chose the folder. Then
    /// locks a file beside the socket.
    static std::variant<AgentClaim, AgentClaimRefusal> take(const ControlSocketPlace& place);

    AgentClaim(AgentClaim&& other) noexcept :
        socketPath_(std::move(other.socketPath_)), lock_(std::exchange(other.lock_, -1)) {}
    AgentClaim& operator=(AgentClaim&&) = delete;
    ~AgentClaim();

    const std::string& socketPath() const { return socketPath_; }

  private:
    AgentClaim(std::string socketPath, int lock) : socketPath_(std::move(socketPath)), lock_(lock) {}

    std::string socketPath_;
    int lock_;
};

} // namespace kova
