// The agent's socket, and the user at the other end of a connection: only processes of the same user communicate.
#pragma once

#include <sys/types.h>
#include <sys/un.h>

#include <optional>
#include <string>

namespace kova {

/// A place for the socket. Its folder is the agent's own, unless the user named the socket by KOVA_SOCKET.
struct ControlSocketPlace {
    std::string path;
    bool isFolderOurs = true;
    std::string folder() const;
};

/// KOVA_SOCKET, else kova/agent.sock in $XDG_RUNTIME_DIR (without one: /tmp/kova-<user id>/agent.sock), on a Mac
/// agent.sock in the user's Application Support folder.
ControlSocketPlace controlSocketPlace();

/// Absent when the path is empty or too long for a socket.
std::optional<sockaddr_un> controlSocketAddress(const std::string& path);

/// The user at the other end of a connected socket; absent when the system does not say.
std::optional<uid_t> peerUser(int socket);

} // namespace kova
