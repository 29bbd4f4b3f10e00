// Only one agent may manage an X server. The agent claims the server by owning a selection while it is connected; the
// server releases the selection when the agent ends, even if the agent is killed.
#pragma once

#include "platform/x11/ClientProcesses.h"

#include <optional>

namespace kova::x11 {

struct OtherAgent {
    std::optional<pid_t> process; // absent if the server does not know it
};

/// Claims the server and waits for its replies. If another agent has claimed it, waits up to three seconds for the end
/// of that agent: “kova quit” may return before the agent has ended. Returns the other agent; absent on success.
std::optional<OtherAgent> claimServer(const XConnection& connection, const ClientProcesses& processes);

} // namespace kova::x11
