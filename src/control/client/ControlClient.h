// A blocking connection to the agent: one line out, one line back.
#pragma once

#include "support/Result.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kova {

struct ConnectionFailure {
    enum class Kind {
        noAgent,      // no process listens at the socket
        foreignAgent, // the listening process belongs to another user
        silent,       // connected, but no response within the timeout
        ended,        // the agent closed the connection
    };
    Kind kind = Kind::noAgent;
    std::string message; // for the user
};

class ControlClient {
  public:
    static Result<ControlClient, ConnectionFailure> connect(const std::string& socketPath);

    ControlClient(ControlClient&& other) noexcept :
        socket_(std::exchange(other.socket_, -1)), received_(std::move(other.received_)),
        path_(std::move(other.path_)) {}
    ControlClient& operator=(ControlClient&&) = delete;
    ~ControlClient();

    /// Sets the timeout of `receive`; zero (the default): no timeout.
    void setTimeout(std::chrono::milliseconds timeout);
    /// Sends one line; `line` has no line break. Returns a failure if the line was not sent. Exception:
    /// if the agent has closed the connection but a line from the agent is still unread, `send` returns none; `receive`
    /// then returns that line first and the failure after it.
    std::optional<ConnectionFailure> send(std::string line);
    /// The next line, without its line break.
    Result<std::string, ConnectionFailure> receive();

    /// For event loops: readable when there is input or the agent has closed the connection.
    int descriptor() const { return socket_; }
    /// As `receive`, but absent instead of waiting if there is no complete line yet.
    Result<std::optional<std::string>, ConnectionFailure> receiveAvailable();

  private:
    std::optional<std::string> takeLine(std::size_t searchedBytes);
    bool hasUnreadLine();

    ControlClient(int socket, std::string path) : socket_(socket), path_(std::move(path)) {}

    int socket_;
    std::string received_;
    std::string path_;
};

} // namespace kova
