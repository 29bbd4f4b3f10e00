// Gives each launched application its own systemd scope. Otherwise the application is in the agent's control group,
// and ends when a service manager stops the agent. Best effort: no-op without systemd's user manager.
#pragma once

#include "platform/linux/MessageBus.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace kova {

/// The scope's name in the usual form: "app-kova-org.example.Maps-4711.scope". Characters that are invalid in a unit
/// name, or that separate its parts, are escaped.
std::string scopeName(const std::string& applicationIdentifier, pid_t process);

/// Main thread only.
class ApplicationScopes {
  public:
    /// Connects to the session bus at the first call of `moveToOwnScope`.
    ApplicationScopes(std::string busAddress, EventLoop& loop);

    /// Requests that the user manager moves the process into a scope. Processes that are started by this process later
    /// belong to the same scope.
    void moveToOwnScope(pid_t process, const std::string& applicationIdentifier, const std::string& applicationName);

  private:
    struct Launched {
        pid_t process = 0;
        std::string identifier, name;
        Seconds launchedAt{}; // uptime
    };
    void requestScope(const Launched& launched);
    void connected();

    EventLoop& loop_;
    MessageBus bus_;
    bool isOpen_ = false;
    std::vector<Launched> pending_; // launches whose scope is requested once the bus is connected
};

} // namespace kova
