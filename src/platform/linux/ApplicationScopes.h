// Gives each launched application a systemd scope of its own. Without one it stays in the control group of the agent,
// and ends with it when a service manager stops the agent. Best effort: without systemd's user manager nothing happens.
#pragma once

#include "platform/linux/MessageBus.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace kova {

/// The scope's name as desktops name theirs: "app-kova-org.example.Maps-4711.scope", with every character escaped that
/// a unit's name or this pattern gives another meaning.
std::string scopeName(const std::string& applicationIdentifier, pid_t process);

/// Main thread only.
class ApplicationScopes {
  public:
    /// Connects to the session bus with the first application, not before.
    ApplicationScopes(std::string busAddress, EventLoop& loop);

    /// Asks the user manager to move the process into a scope. What the process starts later follows it.
    void separate(pid_t process, const std::string& applicationIdentifier, const std::string& applicationName);

  private:
    struct Launched {
        pid_t process = 0;
        std::string identifier, name;
        Seconds since{}; // uptime
    };
    void ask(const Launched& launched);
    void connected();

    EventLoop& loop_;
    MessageBus bus_;
    bool isOpen_ = false;
    std::vector<Launched> waiting_; // for the connection
};

} // namespace kova
