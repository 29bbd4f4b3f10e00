// Where the agent's socket is, and which user is at the other end of a connection. Agent and clients belong to the same
// user.
#pragma once

#include <sys/types.h>
#include <sys/un.h>

#include <optional>
#include <string>

namespace kova {

struct ControlSocketPlace {
    std::string path;
    bool isFolderOurs = true; // false if the user chose the path with KOVA_SOCKET
    std::string folder() const;
};

/// The path in the environment variable KOVA_SOCKET, if that is set. Otherwise kova/agent.sock in $XDG_RUNTIME_DIR, or
/// /tmp/kova-<user id>/agent.sock without this variable; on a Mac KOVA/agent.sock in the user's Application Support
/// folder.
ControlSocketPlace controlSocketPlace();

/// The path as an address; absent if the path is empty or too long for a socket.
std::optional<sockaddr_un> controlSocketAddress(const std::string& path);

/// The user of the process at the other end of a connected socket; absent if the system does not tell.
std::optional<uid_t> peerUser(int socket);

} // namespace kova
