#include "control/client/ControlSocket.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace kova {

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

std::string ControlSocketPlace::folder() const {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

ControlSocketPlace controlSocketPlace() {
    if (auto named = environment("KOVA_SOCKET"); !named.empty()) return {std::move(named), false};
#if defined(__APPLE__)
    return {environment("HOME") + "/Library/Application Support/KOVA/agent.sock", true};
#else
    // The XDG specification says that a relative path must be ignored.
    if (auto runtime = environment("XDG_RUNTIME_DIR"); runtime.starts_with('/')) {
        return {std::move(runtime) + "/kova/agent.sock", true};
    }
    return {"/tmp/kova-" + std::to_string(geteuid()) + "/agent.sock", true};
#endif
}

std::optional<sockaddr_un> controlSocketAddress(const std::string& path) {
    sockaddr_un address{};
    if (path.empty() || path.size() >= sizeof address.sun_path) return std::nullopt;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

std::optional<uid_t> peerUser(int socket) {
#if defined(__APPLE__)
    uid_t user = 0;
    gid_t group = 0;
    if (getpeereid(socket, &user, &group) != 0) return std::nullopt;
    return user;
#else
    ucred credentials{};
    socklen_t size = sizeof credentials;
    if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) return std::nullopt;
    return credentials.uid;
#endif
}

} // namespace kova
