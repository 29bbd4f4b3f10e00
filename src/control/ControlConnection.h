// The connection of one client to the agent's socket. The control thread reads lines and passes their messages to the
// main queue one at a time, so that a client with many requests delays only itself. The main thread writes output at
// once and leaves what the system does not accept yet to the control thread, so that the main queue never waits for a
// client.
#pragma once

#include "control/ControlHandling.h"
#include "control/ControlServer.h"
#include "control/JsonRpc.h"
#include "control/LineBuffer.h"
#include "control/UnsentBudget.h"
#include "support/Mutex.h"

#include <asio/io_context.hpp>
#include <asio/local/stream_protocol.hpp>
#include <sys/socket.h>

#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

#if defined(MSG_NOSIGNAL)
inline constexpr int kControlSendFlags = MSG_DONTWAIT | MSG_NOSIGNAL;
#else
inline constexpr int kControlSendFlags = MSG_DONTWAIT;
#endif

class ControlConnection final : public ControlPeer, public std::enable_shared_from_this<ControlConnection> {
  public:
    using Socket = asio::local::stream_protocol::socket;
    using Received = std::function<void(const std::shared_ptr<ControlConnection>&, jsonrpc::Message)>;
    using Closed = std::function<void(const std::shared_ptr<ControlConnection>&)>;

    /// All connections share `readBuffer`, so that a client that sends nothing uses no memory for input. `received` is
    /// called for each message, on the control thread or the main thread, and for the next message only after
    /// `finishMessage`. `closed` is called on the control thread.
    ControlConnection(std::shared_ptr<asio::io_context> context, Socket socket, const ControlServerLimits& limits,
                      std::shared_ptr<UnsentBudget> budget, std::span<char> readBuffer, Received received,
                      Closed closed);

    // Control thread
    void start();
    void close();

    // Main thread
    void send(const std::string& line) override;
    void sendAfterResponse(const std::string& line) override;
    /// Adds the response to one request of a batch, to be sent by `finishMessage`; no-op if the response is empty.
    /// Until then the response counts as unread output.
    void addToBatch(std::string_view response);
    /// Sends the response to the received message, nothing if `response` is empty. For a batch, `response` is that to
    /// its last request and is sent together with the added responses. `received` gets the next message once the client
    /// has read the output.
    void finishMessage(std::string response, bool isBatch);

    bool isConnected() const override;
    void whenDisconnected(std::function<void()> callback) override;

  private:
    void waitForInput();
    void readAvailable();
    void readInput();
    void splitIntoMessages(std::string_view bytes);
    void queueMessage(jsonrpc::Message message, std::size_t bytes);
    void deliverNext();
    void endInput();
    void closeSoon();
    void resumeInput();
    void waitForRoom();
    void sendQueued();
    bool hasRespondedAndFlushed() const KOVA_REQUIRES(lock_);
    bool hasRoomForInput(std::size_t unansweredAllowed) const KOVA_REQUIRES(lock_);
    std::size_t unsentBytes() const KOVA_REQUIRES(lock_) { return unsent_.size() - alreadySent_; }
    void appendToBatch(std::string_view response) KOVA_REQUIRES(lock_);
    void countUnread() KOVA_REQUIRES(lock_) { account_.setUnread(unsentBytes() + batchResponse_.size()); }
    void enqueue(std::string line) KOVA_REQUIRES(lock_);
    bool sendWhatFits() KOVA_REQUIRES(lock_); // false when the connection is broken

    const std::shared_ptr<asio::io_context> context_; // shared, since it must outlive the socket
    // Control thread only
    Socket socket_;
    const int descriptor_;
    const ControlServerLimits limits_;
    std::span<char> readBuffer_;
    Received received_;
    Closed closed_;
    LineBuffer lines_;

    struct Pending {
        jsonrpc::Message message;
        std::size_t bytes; // of the line that contained the message
    };

    // Shared by both threads
    mutable Mutex lock_;
    bool isOpen_ KOVA_GUARDED_BY(lock_) = true;
    std::vector<std::function<void()>> whenDisconnected_ KOVA_GUARDED_BY(lock_);
    bool hasInputEnded_ KOVA_GUARDED_BY(lock_) = false;
    bool isInputPaused_ KOVA_GUARDED_BY(lock_) = false;
    bool isHandling_ KOVA_GUARDED_BY(lock_) = false;   // the main queue handles a message
    std::string batchResponse_ KOVA_GUARDED_BY(lock_); // if that message is a batch: the responses added so far
    std::vector<std::string> afterResponse_ KOVA_GUARDED_BY(lock_); // lines to send after the response to that message
    std::deque<Pending> pending_ KOVA_GUARDED_BY(lock_);            // messages to handle after that message
    std::size_t pendingBytes_ KOVA_GUARDED_BY(lock_) = 0;
    std::string unsent_ KOVA_GUARDED_BY(lock_);
    std::size_t alreadySent_ KOVA_GUARDED_BY(lock_) = 0; // so many bytes at the beginning of `unsent_` were sent
    const std::shared_ptr<UnsentBudget> budget_;
    UnsentBudget::Account account_;
};

} // namespace kova
