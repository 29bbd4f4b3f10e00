// One client of the agent's socket. Its lines are read on the control thread and passed to the main queue one at a
// time, so that a client with many requests delays only itself. The sending thread writes output at once; output that
// the system does not accept is queued for the control thread, so that the main queue never waits for a client.
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

    /// `readBuffer` is shared by all connections of the thread: a silent client holds no buffer of its own. `received`
    /// is called on either thread, and for the next message only after `finishMessage`. `closed` is called on the
    /// control thread.
    ControlConnection(std::shared_ptr<asio::io_context> context, Socket socket, const ControlServerLimits& limits,
                      std::shared_ptr<UnsentBudget> budget, std::span<char> readBuffer, Received received,
                      Closed closed);

    // Control thread
    void start();
    void close();

    // Main thread
    void send(const std::string& line) override;
    void sendAfterResponse(const std::string& line) override;
    /// Adds the response to one request of a batch; no-op if the response is empty. The response counts as unread until
    /// the whole batch is sent.
    void addToBatch(std::string_view response);
    /// Sends the response to the received message (nothing if it is empty), for a batch together with the added
    /// responses. The next message is received once the client has read the output.
    void finishMessage(std::string response, bool isBatch);

    bool isConnected() const override;
    void whenDisconnected(std::function<void()> callback) override;

  private:
    void waitForInput();
    void readAvailable();
    void readInput();
    void take(std::string_view bytes);
    void takeMessage(jsonrpc::Message message, std::size_t bytes);
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
    void countUnread() KOVA_REQUIRES(lock_) { account_.hold(unsentBytes() + batchResponse_.size()); }
    void enqueue(std::string line) KOVA_REQUIRES(lock_);
    bool sendWhatFits() KOVA_REQUIRES(lock_); // false when the connection is broken

    const std::shared_ptr<asio::io_context> context_; // must outlive the socket
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
    bool isHandling_ KOVA_GUARDED_BY(lock_) = false;   // a message is on the main queue
    std::string batchResponse_ KOVA_GUARDED_BY(lock_); // the responses to that message so far, if it is a batch
    std::vector<std::string> afterResponse_ KOVA_GUARDED_BY(lock_); // lines to send after the response to that message
    std::deque<Pending> pending_ KOVA_GUARDED_BY(lock_);
    std::size_t pendingBytes_ KOVA_GUARDED_BY(lock_) = 0;
    std::string unsent_ KOVA_GUARDED_BY(lock_);
    std::size_t alreadySent_ KOVA_GUARDED_BY(lock_) = 0; // bytes at the beginning of `unsent_`
    const std::shared_ptr<UnsentBudget> budget_;
    UnsentBudget::Account account_;
};

} // namespace kova
