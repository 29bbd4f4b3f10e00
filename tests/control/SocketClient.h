// A client of the agent's socket for tests: it sends any bytes, valid or not, and never blocks the thread that acts as
// the agent.
#pragma once

#include "control/client/ControlSocket.h"

#include <nlohmann/json.hpp>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

namespace kova {

/// Calls `runAgentOnce`, which lets the agent handle its pending events, until the condition holds; false after ten
/// seconds.
inline bool waitUntil(const std::function<void()>& runAgentOnce, const std::function<bool()>& holds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end) return false;
        runAgentOnce();
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    return true;
}

class SocketClient {
  public:
    SocketClient(const std::string& path, std::function<void()> runAgentOnce,
                 const std::function<void()>& beforeConnecting = {}) :
        runAgentOnce_(std::move(runAgentOnce)) {
        const auto address = controlSocketAddress(path);
        if (!address) throw std::runtime_error("no such path: " + path);
        socket_ = socket(AF_UNIX, SOCK_STREAM, 0);
        if (beforeConnecting) beforeConnecting();
        if (connect(socket_, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0) {
            close(socket_);
            throw std::runtime_error("cannot connect to " + path);
        }
    }
    ~SocketClient() {
        if (socket_ >= 0) close(socket_);
    }
    SocketClient(SocketClient&& other) noexcept :
        socket_(std::exchange(other.socket_, -1)), received_(std::move(other.received_)),
        runAgentOnce_(std::move(other.runAgentOnce_)) {}

    /// Sends all bytes unchanged. Stops early if the agent closes the connection.
    void send(std::string_view bytes) {
        waitUntil(runAgentOnce_, [&] {
            const auto sent = ::send(socket_, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
            if (sent > 0) bytes.remove_prefix(static_cast<std::size_t>(sent));
            return bytes.empty() || (sent < 0 && errno != EAGAIN);
        });
    }
    void endSending() { shutdown(socket_, SHUT_WR); }

    /// The next line; absent if the agent closes the connection, or sends nothing for ten seconds.
    std::optional<std::string> line() {
        std::optional<std::string> found;
        waitUntil(runAgentOnce_, [&] {
            receive();
            if (const auto end = received_.find('\n'); end != std::string::npos) {
                found = received_.substr(0, end);
                received_.erase(0, end + 1);
            }
            return found || hasEnded_;
        });
        return found;
    }
    /// The next line as JSON; a JSON string with the reason if there is none.
    nlohmann::json message() {
        const auto text = line();
        if (!text) return hasEnded_ ? "the agent closed the connection" : "no response";
        const auto parsed = nlohmann::json::parse(*text, nullptr, false);
        return parsed.is_discarded() ? nlohmann::json("not JSON: " + *text) : parsed;
    }
    nlohmann::json request(std::string_view text) {
        send(std::string(text) + "\n");
        return message();
    }
    /// Waits until the agent closes the connection; false after ten seconds.
    bool isClosedByAgent() {
        return waitUntil(runAgentOnce_, [&] {
            receive();
            return hasEnded_;
        });
    }

  private:
    void receive() {
        std::array<char, 64 * 1024> piece;
        const auto length = recv(socket_, piece.data(), piece.size(), MSG_DONTWAIT);
        if (length > 0) received_.append(piece.data(), static_cast<std::size_t>(length));
        if (length == 0 || (length < 0 && errno != EAGAIN && errno != EINTR)) hasEnded_ = true;
    }

    int socket_ = -1;
    std::string received_;
    bool hasEnded_ = false;
    std::function<void()> runAgentOnce_;
};

} // namespace kova
