// Why the workspace did not do what was asked.
#pragma once

#include "control/ControlHandling.h"
#include "workspace/WorkspaceController.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kova {

ControlFailure refusal(std::string message);

/// Why nothing can be done for want of the permission; absent when there is no want of it.
std::optional<ControlFailure> withoutPermission(const WorkspaceController& controller);

/// Listens to what the controller says from here on: a message of before has nothing to do with the operation at hand.
class Listening {
  public:
    explicit Listening(const WorkspaceController& controller) :
        controller_(controller), before_(controller.messagesShown()) {}

    /// The newest message since; absent when nothing was said.
    std::optional<std::string> heard() const;
    /// The missing permission, else what was said, else the given reason.
    ControlFailure refusalOr(std::string reason) const;

  private:
    const WorkspaceController& controller_;
    std::uint64_t before_;
};

} // namespace kova
