// Carries out one message of a client on the main queue. The requests of a batch are carried out in order, each in a
// task of its own, so that a long batch delays no other client. A response may be sent after the request's task has
// ended. Main thread only.
#pragma once

#include "control/ControlConnection.h"
#include "control/ControlHandling.h"
#include "control/JsonRpc.h"

#include <cstddef>
#include <functional>
#include <memory>

namespace kova {

class ControlExchange : public std::enable_shared_from_this<ControlExchange> {
  public:
    /// Posts work to the main queue; no-op once the server has ended.
    using Post = std::function<void(std::function<void()>)>;

    /// Once the responses to a batch exceed `longestBatchResponse` bytes, the remaining requests of the batch are
    /// refused.
    ControlExchange(Post post, ControlHandling& handling, std::shared_ptr<ControlConnection> connection,
                    jsonrpc::Message message, std::size_t longestBatchResponse);

    /// Carries out the next request of the message, and the remaining requests in later tasks. Then sends the response
    /// to the client. Do not call after the server has ended.
    void carryOutNext();

  private:
    void carryOutWhenCurrent(const jsonrpc::Request& request);
    void carryOut(const jsonrpc::Request& request);
    void respond(const nlohmann::json* reply);

    const Post post_;
    ControlHandling& handling_;
    const std::shared_ptr<ControlConnection> connection_;
    const jsonrpc::Message message_;
    const std::size_t longestBatchResponse_;
    std::size_t nextEntry_ = 0;     // the index in `message_.entries`
    std::size_t responseBytes_ = 0; // of all responses so far
};

} // namespace kova
