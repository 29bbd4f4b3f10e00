// One agent manages an X server. The claim is a selection that the agent owns for as long as it is connected, so that
// the server itself gives it up when the agent ends in any way.
#pragma once

#include "platform/x11/ClientProcesses.h"

#include <optional>

namespace kova::x11 {

struct OtherAgent {
    std::optional<pid_t> process; // absent when the server does not tell
};

/// Claims the server. Waits for it. The agent that has it already, or absent when the claim succeeded.
std::optional<OtherAgent> claimServer(const XConnection& connection, const ClientProcesses& processes);

} // namespace kova::x11
