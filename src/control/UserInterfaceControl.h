// Lets clients start and end the program that draws the overlay and the menu.
#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>

namespace kova {

class ControlPeer;

struct UserInterfaceStatus {
    bool isOn = false;                    // the user's preference
    std::optional<pid_t> process{};       // absent: the program does not run
    std::optional<std::string> problem{}; // for the user: why the program does not run or shows nothing
    bool operator==(const UserInterfaceStatus&) const = default;
};

/// Main thread only. No function waits.
class UserInterfaceControl {
  public:
    virtual ~UserInterfaceControl() = default;
    /// The reason why the program is not available; absent if it is available.
    virtual std::optional<std::string> unavailableReason() const = 0;
    virtual UserInterfaceStatus status() const = 0;
    /// Stores the preference, and starts or ends the program at once.
    virtual void setOn(bool isOn) = 0;
    /// Ends the program if it runs, and starts it, even after repeated crashes. Returns false if the program is
    /// switched off or the workspace is not started.
    virtual bool restart() = 0;
    /// Reports that the program cannot show the overlay. The report holds until the program is started again or
    /// `reporter`, the reporting client, disconnects.
    virtual void reportProblem(const std::string& problem, std::weak_ptr<ControlPeer> reporter) = 0;
};

} // namespace kova
