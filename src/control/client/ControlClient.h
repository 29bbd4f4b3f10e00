// A client's connection to the agent, on which it sends and receives lines.
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
    /// Fails if no agent of this user listens at the path.
    static Result<ControlClient, ConnectionFailure> connect(const std::string& socketPath);

    ControlClient(ControlClient&& other) noexcept :
        socket_(std::exchange(other.socket_, -1)), received_(std::move(other.received_)),
        path_(std::move(other.path_)) {}
    ControlClient& operator=(ControlClient&&) = delete;
    ~ControlClient();

    /// Sets the timeout of `receive`. Zero, the default, means no timeout.
    void setTimeout(std::chrono::milliseconds timeout);
    /// Sends `line`, which has no line break; waits until the system accepts it. Returns a failure if the line was not
    /// sent. But if the agent has closed the connection and a line from the agent is still unread, `send` returns no
    /// failure: `receive` then returns that line, and at its next call the failure.
    std::optional<ConnectionFailure> send(std::string line);
    /// Waits for the next line and returns it without its line break.
    Result<std::string, ConnectionFailure> receive();

    /// For event loops. The descriptor becomes readable when input arrives or the agent closes the connection.
    int descriptor() const { return socket_; }
    /// As `receive`, but does not wait; absent if no complete line has arrived yet.
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
