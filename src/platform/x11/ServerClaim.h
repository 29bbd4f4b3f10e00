// One agent manages an X server. The claim is a selection that the agent owns while it is connected; the server
// releases it however the agent ends.
#pragma once

#include "platform/x11/ClientProcesses.h"

#include <optional>

namespace kova::x11 {

struct OtherAgent {
    std::optional<pid_t> process; // absent if the server does not know it
};

/// Claims the server; waits for it. Returns the agent that owns the claim already, or absent on success.
std::optional<OtherAgent> claimServer(const XConnection& connection, const ClientProcesses& processes);

} // namespace kova::x11
