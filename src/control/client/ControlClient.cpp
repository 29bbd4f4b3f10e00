#include "control/client/ControlClient.h"

#include "control/client/ControlSocket.h"
#include "support/Quoted.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

namespace kova {

namespace {

#if defined(MSG_NOSIGNAL)
constexpr int kSendFlags = MSG_NOSIGNAL;
#else
constexpr int kSendFlags = 0;
#endif

} // namespace

Result<ControlClient, ConnectionFailure> ControlClient::connect(const std::string& socketPath) {
    const auto address = controlSocketAddress(socketPath);
    if (!address) {
        return ConnectionFailure{ConnectionFailure::Kind::noAgent,
                                 "There is no socket at " + quoted(socketPath) + ": the path is empty or too long"};
    }
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    if (descriptor < 0) return ConnectionFailure{ConnectionFailure::Kind::noAgent, std::strerror(errno)};
    ControlClient client(descriptor, socketPath);
#if defined(SO_NOSIGPIPE)
    const int yes = 1;
    setsockopt(descriptor, SOL_SOCKET, SO_NOSIGPIPE, &yes, sizeof yes);
#endif
    if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0) {
        const bool isMissing = errno == ENOENT || errno == ECONNREFUSED;
        const std::string why = std::strerror(errno);
        return ConnectionFailure{ConnectionFailure::Kind::noAgent,
                                 isMissing ? "No agent is running: no process listens at " + socketPath
                                           : "Cannot connect to the agent at " + socketPath + ": " + why};
    }
    if (peerUser(descriptor) != geteuid()) {
        return ConnectionFailure{ConnectionFailure::Kind::foreignAgent,
                                 "The program that listens at " + socketPath + " belongs to another user"};
    }
    return client;
}

ControlClient::~ControlClient() {
    if (socket_ >= 0) close(socket_);
}

void ControlClient::setTimeout(std::chrono::milliseconds timeout) {
    timeval limit{};
    limit.tv_sec = static_cast<decltype(limit.tv_sec)>(timeout.count() / 1000);
    limit.tv_usec = static_cast<decltype(limit.tv_usec)>(timeout.count() % 1000 * 1000);
    setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

std::optional<ConnectionFailure> ControlClient::send(std::string line) {
    line.push_back('\n');
    std::string_view unsent = line;
    while (!unsent.empty()) {
        const auto sent = ::send(socket_, unsent.data(), unsent.size(), kSendFlags);
        if (sent < 0 && errno == EINTR) continue;
        if (sent < 0 && hasUnreadLine()) return std::nullopt;
        if (sent < 0) return ConnectionFailure{ConnectionFailure::Kind::ended, "The agent at " + path_ + " has ended"};
        unsent.remove_prefix(static_cast<std::size_t>(sent));
    }
    return std::nullopt;
}

/// Reads what has arrived. True if it contains a line, such as the reason why the agent closed the connection.
bool ControlClient::hasUnreadLine() {
    std::array<char, 4096> piece;
    for (ssize_t length; (length = recv(socket_, piece.data(), piece.size(), MSG_DONTWAIT)) > 0;) {
        received_.append(piece.data(), static_cast<std::size_t>(length));
    }
    return received_.find('\n') != std::string::npos;
}

std::optional<std::string> ControlClient::takeLine(std::size_t searchedBytes) {
    const auto end = received_.find('\n', searchedBytes);
    if (end == std::string::npos) return std::nullopt;
    std::string line = received_.substr(0, end);
    received_.erase(0, end + 1);
    return line;
}

Result<std::optional<std::string>, ConnectionFailure> ControlClient::receiveAvailable() {
    std::array<char, 16 * 1024> piece;
    for (std::size_t searchedBytes = 0;;) {
        if (auto line = takeLine(searchedBytes)) return line;
        searchedBytes = received_.size();
        const auto length = recv(socket_, piece.data(), piece.size(), MSG_DONTWAIT);
        if (length > 0) {
            received_.append(piece.data(), static_cast<std::size_t>(length));
        } else if (length < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            return std::optional<std::string>{};
        } else if (length == 0 || errno != EINTR) {
            return ConnectionFailure{ConnectionFailure::Kind::ended, "The agent at " + path_ + " has ended"};
        }
    }
}

Result<std::string, ConnectionFailure> ControlClient::receive() {
    std::array<char, 16 * 1024> piece;
    for (std::size_t searchedBytes = 0;;) {
        if (auto line = takeLine(searchedBytes)) return *std::move(line);
        searchedBytes = received_.size();
        const auto length = recv(socket_, piece.data(), piece.size(), 0);
        if (length > 0) {
            received_.append(piece.data(), static_cast<std::size_t>(length));
        } else if (length < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            return ConnectionFailure{ConnectionFailure::Kind::silent, "The agent at " + path_ + " does not answer"};
        } else if (length == 0 || errno != EINTR) {
            return ConnectionFailure{ConnectionFailure::Kind::ended,
                                     "The agent at " + path_ + " ended before it answered"};
        }
    }
}

} // namespace kova
