#include "control/ControlServer.h"

#include "control/ControlConnection.h"
#include "control/ControlExchange.h"
#include "control/client/ControlCodes.h"
#include "support/Lifetime.h"

#include <asio/executor_work_guard.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <set>
#include <system_error>
#include <thread>
#include <utility>

namespace kova {

namespace {

using Local = asio::local::stream_protocol;

constexpr auto kPauseWithoutDescriptors = std::chrono::milliseconds(200);
constexpr int kBacklog = 128;

/// Makes the socket non-blocking, so that no client can block the thread, and keeps launched programs from inheriting
/// it. Returns false on failure.
bool prepareSocket(int socket) {
#if defined(SO_NOSIGPIPE)
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_NOSIGPIPE, &yes, sizeof yes);
#endif
    return fcntl(socket, F_SETFD, FD_CLOEXEC) == 0 && fcntl(socket, F_SETFL, O_NONBLOCK) == 0;
}

/// Returns the connection of the next client; a negative number, with errno set, if no client waits or accepting fails.
int acceptFrom(int listening) {
#if defined(SOCK_CLOEXEC)
    return accept4(listening, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
#else
    const int accepted = accept(listening, nullptr, nullptr);
    if (accepted >= 0) prepareSocket(accepted);
    return accepted;
#endif
}

bool isLackOfResources(int error) {
    return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}

/// Returns a socket that listens at the path and that only this user may connect to; a negative number, with errno set,
/// on failure.
int listenAt(const std::string& path) {
    const auto address = controlSocketAddress(path);
    if (!address) return errno = ENAMETOOLONG, -1;
    const int listening = socket(AF_UNIX, SOCK_STREAM, 0);
    if (listening < 0) return -1;
    // This process holds the claim, so an existing socket belongs to an agent that has exited. The mode is set before
    // listen(), since other users could connect afterwards.
    unlink(path.c_str());
    const bool isReady = prepareSocket(listening) &&
                         bind(listening, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) == 0 &&
                         chmod(path.c_str(), S_IRUSR | S_IWUSR) == 0 && listen(listening, kBacklog) == 0;
    if (isReady) return listening;
    const int error = errno;
    close(listening);
    return errno = error, -1;
}

} // namespace

class ControlServer::Listener {
  public:
    Listener(AgentClaim claim, MainQueue& queue, ControlHandling& handling, ControlServerLimits limits) :
        claim_(std::move(claim)), queue_(queue), handling_(handling), limits_(limits) {}

    ~Listener() {
        if (acceptor_.is_open()) unlink(claim_.socketPath().c_str());
        if (!thread_.joinable()) return;
        context_->stop(); // pending input of clients is dropped
        thread_.join();
        asio::error_code ignored;
        acceptor_.close(ignored);
        retry_.cancel();
        for (const auto& connection : std::set(connections_)) connection->close();
        // Queued handlers own connections, and connections own the context. Running the handlers ends this cycle.
        work_.reset();
        context_->restart();
        context_->poll();
    }

    std::optional<std::string> start() {
        const int listening = listenAt(claim_.socketPath());
        if (listening < 0) return "Cannot listen at " + claim_.socketPath() + ": " + std::strerror(errno);
        asio::error_code error;
        acceptor_.assign(Local(), listening, error);
        if (error) return "Cannot listen at " + claim_.socketPath() + ": " + error.message();
        try {
            thread_ = std::thread([this] { run(); });
        } catch (const std::system_error& failure) {
            return std::string("Cannot start the control thread: ") + failure.what();
        }
        return std::nullopt;
    }

    void serve() {
        asio::post(*context_, [this] { accept(); });
    }

  private:
    void run() {
        for (;;) {
            try {
                context_->run();
                return;
            } catch (const std::exception&) {
                // There was not enough memory for one client. The other clients are still served.
            }
        }
    }

    void accept() {
        acceptor_.async_wait(Local::acceptor::wait_read, [this](const asio::error_code& error) {
            if (error || !acceptor_.is_open()) return;
            const int accepted = acceptFrom(acceptor_.native_handle());
            if (accepted < 0 && isLackOfResources(errno)) return acceptLater();
            accept();
            if (accepted >= 0) addConnection(accepted);
        });
    }

    /// Accepts after a pause. While no descriptor is free, accepting fails at once, and trying without pauses would use
    /// the processor.
    void acceptLater() {
        retry_.expires_after(kPauseWithoutDescriptors);
        retry_.async_wait([this](const asio::error_code& error) {
            if (!error && acceptor_.is_open()) accept();
        });
    }

    void addConnection(int accepted) {
        Local::socket socket(*context_);
        asio::error_code error;
        socket.assign(Local(), accepted, error);
        if (error) {
            close(accepted);
            return;
        }
        const bool isAllowed = peerUser(accepted) == limits_.onlyUser.value_or(geteuid());
        if (!isAllowed) return;
        if (connections_.size() >= limits_.connections) return refuseConnection(accepted);
        auto connection = std::make_shared<ControlConnection>(
            context_, std::move(socket), limits_, unsent_, std::span<char>(readBuffer_),
            [this](const auto& from, jsonrpc::Message message) { deliver(from, std::move(message)); },
            [this](const auto& closed) { connections_.erase(closed); });
        connections_.insert(connection);
        connection->start();
    }

    void refuseConnection(int descriptor) const {
        const ControlFailure full{controlCode::refused,
                                  "The agent serves " + std::to_string(limits_.connections) +
                                      " clients already and takes no more; end some of them and try again",
                                  nullptr};
        const std::string line = jsonrpc::line(jsonrpc::failureReply(nullptr, full)) + "\n";
        (void)::send(descriptor, line.data(), line.size(), kControlSendFlags);
    }

    void deliver(const std::shared_ptr<ControlConnection>& from, jsonrpc::Message message) {
        const ControlExchange::Post post =
            lifetime_.guard([this](std::function<void()> work) { queue_.post(lifetime_.guard(std::move(work))); });
        const auto exchange =
            std::make_shared<ControlExchange>(post, handling_, from, std::move(message), limits_.longestBatchResponse);
        queue_.post(lifetime_.guard([exchange] { exchange->carryOutNext(); }));
    }

    AgentClaim claim_;
    MainQueue& queue_;
    ControlHandling& handling_;
    const ControlServerLimits limits_;

    // Control thread only, once it runs
    std::shared_ptr<asio::io_context> context_ = std::make_shared<asio::io_context>(1);
    asio::executor_work_guard<asio::io_context::executor_type> work_{context_->get_executor()};
    Local::acceptor acceptor_{*context_};
    asio::steady_timer retry_{*context_};
    std::set<std::shared_ptr<ControlConnection>> connections_;
    std::array<char, 64 * 1024> readBuffer_;

    const std::shared_ptr<UnsentBudget> unsent_ = std::make_shared<UnsentBudget>(limits_.totalUnsentBytes);

    std::thread thread_;
    Lifetime lifetime_;
};

ControlServer::ControlServer(AgentClaim claim, MainQueue& queue, ControlHandling& handling,
                             ControlServerLimits limits) :
    listener_(std::make_unique<Listener>(std::move(claim), queue, handling, limits)) {}

ControlServer::~ControlServer() = default;

std::optional<std::string> ControlServer::start() {
    return listener_->start();
}

void ControlServer::serve() {
    listener_->serve();
}

} // namespace kova
